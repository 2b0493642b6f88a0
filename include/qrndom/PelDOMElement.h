// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMNode.h>

class PelDOMElementImp;

/// A handle to one element: its tag name, attributes, text and descendants.
///
/// Owns     one implementation object, or none; the tree is shared with every handle into it.
/// Lives    as long as the caller likes; the tree outlives the document handle it came from.
/// Threads  one thread at a time for all handles into one tree; separate trees are independent.
/// Errors   codes of PelDOM::Error; the engine's DOM exceptions pass through from names that XML
///          forbids.
/// Cost     an attribute is found by binary search; getChildTextValue makes temporary handles.
class QRNDOM_API PelDOMElement : public PelDOMNode {
public:
    /// Takes ownership of `implementation`; a null handle without one.
    explicit PelDOMElement(PelDOMNodeImp* implementation = nullptr);

    /// A second handle to the same node.
    PelDOMElement(const PelDOMElement& orig);

    /// A handle to the node of `node` as an element, after its type was found to be ELEMENT_NODE.
    /// Where it is of another kind, the operations below answer as those of a null handle do.
    explicit PelDOMElement(const PelDOMNode& node);

    /// Takes the node over and leaves `orig` a null handle.
    PelDOMElement(PelDOMElement&& orig) noexcept;

    /// The same from a node handle, with the kinds that fit as above.
    explicit PelDOMElement(PelDOMNode&& node) noexcept;

    /// Lets go of the node; the tree goes with the last handle into it.
    ~PelDOMElement() override;

    /// As PelDOMNode's: the value of the expression is `rhs`.
    PelDOMElement& operator=(PelDOMElement& rhs);

    /// The same for const handles and temporaries.
    const PelDOMElement& operator=(const PelDOMElement& rhs);

    /// The same from a node handle, as by the conversion above: `element = node`.
    PelDOMNode& operator=(PelDOMNode& rhs);

    /// The same for const handles and temporaries.
    const PelDOMNode& operator=(const PelDOMNode& rhs);

    /// Takes the node of `rhs` over and leaves `rhs` a null handle. The value is this handle.
    PelDOMElement& operator=(PelDOMElement&& rhs) noexcept;

    /// The same from a node handle.
    PelDOMElement& operator=(PelDOMNode&& rhs) noexcept;

    /// Removes an attribute; one that is not there is no error. INVALID_VALUE for an empty name and
    /// for a null handle.
    virtual PelDOM::Error removeAttribute(const PelString& name);

    /// Sets an attribute, replacing its earlier value. INVALID_VALUE for an empty name or value,
    /// NULL_NODE for a null handle.
    virtual PelDOM::Error setAttribute(const PelString& name, const PelString& value);

    /// Adds a last child element `name` whose only child is the text `text`. INVALID_VALUE for an
    /// empty name or text, NULL_NODE for a null handle.
    virtual PelDOM::Error appendTextElement(const PelString& name, const PelString& text);

    /// The number of attributes, those that a document type declaration adds included; 0 for a null
    /// handle.
    long getNumAttributes() const;

    /// The value of the attribute at a position from 0 to getNumAttributes() - 1, in the order of
    /// the names; empty for any other position and for a null handle.
    PelString getAttributeValueAt(long index) const;

    /// The name of the attribute at a position, in the same way.
    PelString getAttributeNameAt(long index) const;

    /// The name as written, prefix included; empty for a null handle.
    PelString getTagName() const;

    /// Gives the element another name, in place. Attributes that a document type adds for its name
    /// change with it. INVALID_VALUE for a name that XML forbids, NULL_NODE for a null handle.
    PelDOM::Error setTagName(const PelString& name);

    /// The value of an attribute; empty when it is not there and for a null handle.
    PelString getAttribute(const PelString& name) const;

    /// The same into `value`; always SUCCESS.
    PelDOM::Error getAttribute(const PelString& name, PelString& value) const;

    /// Reads a whole decimal number from the start of an attribute: white space before it is
    /// skipped, what follows it is ignored ("12abc" gives 12), and a number out of range gives the
    /// nearest `long`. INVALID_VALUE, with `value` unchanged, when there is none.
    PelDOM::Error getAttribute(const PelString& name, long& value) const;

    /// Reads a real number in the same way, with a full stop as its decimal point: "2.5", "1e3",
    /// "0x1p3", "inf" and "nan" are numbers; "1.5em" and "12EUR" give 1.5 and 12. INVALID_VALUE,
    /// with `value` unchanged, when there is none.
    PelDOM::Error getAttribute(const PelString& name, double& value) const;

    /// Reads the text of an element whose only child is a text node. INVALID_VALUE, with `value`
    /// unchanged, for any other element and for a null handle.
    PelDOM::Error getChildTextValue(PelString& value) const;

    /// Makes `out` the live list of this element's descendants with a tag name ("*": all), in
    /// document order, and gives its length. 0, with `out` unchanged, for a null handle.
    int getElementsByTagName(const PelString& name, PelDOMNodeList& out) const;

    /// The same list as the result; an empty handle for a null handle.
    PelDOMNodeList getElementsByTagName(const PelString& name) const;

    /// The first child that is an element with a tag name ("*": any). A null handle where there is
    /// none, here and below.
    PelDOMElement getChildElement(const PelString& name = u"*") const;

    /// The next sibling that is such an element.
    PelDOMElement getNextElement(const PelString& name = u"*") const;

    /// The nearest sibling before this one that is such an element.
    PelDOMElement getPreviousElement(const PelString& name = u"*") const;

private:
    template <class Number>
    PelDOM::Error getNumber(const PelString& name, Number& value) const;

    PelDOMElementImp* imp() const;
};
