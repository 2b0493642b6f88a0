// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMRanges.h>

#include <type_traits>
#include <vector>

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
    template <class Value, class... Kinds>
    static constexpr bool isOneOf = (std::is_same_v<Value, Kinds> || ...);

    // Truth values and numbers: no characters, and nothing that only converts to one.
    template <class Value>
    using IfValue = std::enable_if_t<
        isOneOf<Value, bool, signed char, unsigned char, short, unsigned short, int, unsigned int,
                long, unsigned long, long long, unsigned long long, float, double, long double>,
        int>;

    template <class Value>
    using Widest = std::conditional_t<
        std::is_floating_point_v<Value> || std::is_same_v<Value, bool>, Value,
        std::conditional_t<std::is_signed_v<Value>, long long, unsigned long long>>;

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

    /// Sets an attribute to a number or truth value: `true` or `false`, or the shortest text that
    /// reads back as the same number, whatever the locale (0.1 as "0.1"). Answers as putAttribute.
    template <class Value, IfValue<Value> = 0>
    PelDOM::Error setAttribute(const PelString& name, Value value) {
        return putAttribute(name, textOf(static_cast<Widest<Value>>(value)));
    }

    /// Sets an attribute as setAttribute does, with the empty value allowed and nothing thrown.
    /// INVALID_VALUE, and nothing changed, for a name that XML forbids and for a value with a
    /// character that it forbids; NULL_NODE for a null handle.
    PelDOM::Error putAttribute(const PelString& name, const PelString& value);

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

    /// Copies of all attributes, in the order of their names, as they are now.
    std::vector<PelDOMAttribute> getAttributes() const;

    /// The name as written, prefix included; empty for a null handle.
    PelString getTagName() const;

    /// Gives the element another name, in place. Attributes that a document type adds for its name
    /// change with it. INVALID_VALUE for a name that XML forbids, NULL_NODE for a null handle.
    PelDOM::Error setTagName(const PelString& name);

    /// The value of an attribute; empty when it is not there and for a null handle.
    PelString getAttribute(const PelString& name) const;

    /// The same into `value`; always SUCCESS.
    PelDOM::Error getAttribute(const PelString& name, PelString& value) const;

    /// Whether there is such an attribute, were it empty; false for a null handle.
    bool hasAttribute(const PelString& name) const;

    /// The value of an attribute, `fallback` when it is not there and for a null handle.
    PelString getAttributeOr(const PelString& name, const PelString& fallback) const;

    /// The number or truth value (`true`, `false`, 1, 0) that an attribute is as a whole, apart
    /// from white space around it. `fallback` when the attribute is not there, holds anything else
    /// or a number that the type of `fallback` does not hold, and for a null handle.
    template <class Value, IfValue<Value> = 0>
    Value getAttributeOr(const PelString& name, Value fallback) const {
        Widest<Value> value{};
        if (!readWhole(name, value))
            return fallback;
        const auto found = static_cast<Value>(value);
        return std::is_floating_point_v<Value> || found == value ? found : fallback;
    }

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

    /// Reads the text of such an element as a whole number, by the rules of attributes.
    PelDOM::Error getChildTextValue(long& value) const;

    /// Reads it as a real number.
    PelDOM::Error getChildTextValue(double& value) const;

    /// Makes `out` the live list of this element's descendants with a tag name ("*": all), in
    /// document order, and gives its length. 0, with `out` unchanged, for a null handle.
    int getElementsByTagName(const PelString& name, PelDOMNodeList& out) const;

    /// The same list as the result; an empty handle for a null handle.
    PelDOMNodeList getElementsByTagName(const PelString& name) const;

    /// The first child that is an element with a tag name ("*": any). A null handle where there is
    /// none, here and below.
    PelDOMElement getChildElement(const PelString& name = u"*") const;

    /// All children that are such elements, for a loop.
    PelDOMElementRange getChildElements(const PelString& name = u"*") const;

    /// The next sibling that is such an element.
    PelDOMElement getNextElement(const PelString& name = u"*") const;

    /// The nearest sibling before this one that is such an element.
    PelDOMElement getPreviousElement(const PelString& name = u"*") const;

    /// The part of the tag name before its colon, and the part after it. A name that is not of two
    /// parts has no prefix. Both are empty for a null handle.
    PelString getPrefix() const;
    PelString getLocalName() const; ///< See getPrefix.

    /// What a prefix stands for here, by the nearest attribute `xmlns:prefix` of this element or
    /// one above it; by `xmlns` for an empty prefix. Empty when it stands for nothing and for a
    /// null handle.
    PelString lookupNamespaceURI(const PelString& prefix) const;

private:
    static PelString textOf(bool value);
    static PelString textOf(long long value);
    static PelString textOf(unsigned long long value);
    static PelString textOf(float value);
    static PelString textOf(double value);
    static PelString textOf(long double value);

    bool readWhole(const PelString& name, bool& value) const;
    bool readWhole(const PelString& name, long long& value) const;
    bool readWhole(const PelString& name, unsigned long long& value) const;
    bool readWhole(const PelString& name, float& value) const;
    bool readWhole(const PelString& name, double& value) const;
    bool readWhole(const PelString& name, long double& value) const;

    PelDOMElementImp* imp() const;
};
