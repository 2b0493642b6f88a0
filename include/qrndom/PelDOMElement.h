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
/// Cost     an attribute is found by binary search.
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
    PelDOMElement(const PelDOMElement& orig);     ///< A second handle to the same node.
    PelDOMElement(PelDOMElement&& orig) noexcept; ///< Leaves `orig` a null handle.

    /// A handle to the node of `node` as an element. Where it is of another kind than ELEMENT_NODE,
    /// the operations below answer as those of a null handle do.
    explicit PelDOMElement(const PelDOMNode& node);
    explicit PelDOMElement(PelDOMNode&& node) noexcept; ///< The same; leaves `node` a null handle.

    /// A null handle. The library's own calls pass an object, which the handle then owns.
    explicit PelDOMElement(PelDOMNodeImp* implementation = nullptr);

    /// Lets go of the node; the tree goes with the last handle into it.
    ~PelDOMElement() override;

    /// As PelDOMNode's: the value of the expression is `rhs`, of a move this handle. From a node
    /// handle as by the constructor above: `element = node`.
    PelDOMElement& operator=(PelDOMElement& rhs);
    const PelDOMElement& operator=(const PelDOMElement& rhs); ///< For const handles.
    PelDOMNode& operator=(PelDOMNode& rhs);                   ///< From a node handle.
    const PelDOMNode& operator=(const PelDOMNode& rhs);       ///< From a const node handle.
    PelDOMElement& operator=(PelDOMElement&& rhs) noexcept;   ///< Leaves `rhs` a null handle.
    PelDOMElement& operator=(PelDOMNode&& rhs) noexcept;      ///< The same from a node handle.

    /// Removes an attribute; one that is not there is no error. INVALID_VALUE for an empty name and
    /// for a null handle.
    virtual PelDOM::Error removeAttribute(const PelString& name);

    /// Sets an attribute, replacing its earlier value. INVALID_VALUE for an empty name or value,
    /// NULL_NODE for a null handle. Name and value end at their first U+0000, and what follows is
    /// lost with SUCCESS; putAttribute refuses it.
    virtual PelDOM::Error setAttribute(const PelString& name, const PelString& value);

    /// The same with a number or truth value: `true` or `false`, or the shortest text that reads
    /// back as the same number, whatever the locale (0.1 as "0.1"). Answers as putAttribute.
    template <class Value, IfValue<Value> = 0>
    PelDOM::Error setAttribute(const PelString& name, Value value) {
        return putAttribute(name, textOf(static_cast<Widest<Value>>(value)));
    }

    /// The same, with the empty value allowed and nothing thrown: INVALID_VALUE, and nothing
    /// changed, for a name or a character that XML forbids; NULL_NODE for a null handle.
    PelDOM::Error putAttribute(const PelString& name, const PelString& value);

    /// Adds a last child element `name` whose only child is the text `text`. INVALID_VALUE for an
    /// empty name or text, NULL_NODE for a null handle. Both end at their first U+0000.
    virtual PelDOM::Error appendTextElement(const PelString& name, const PelString& text);

    /// The number of attributes, those that a document type declaration adds included; 0 for a null
    /// handle.
    long getNumAttributes() const;

    /// The value of the attribute at a position from 0 to getNumAttributes() - 1, in the order of
    /// the names; empty for any other position and for a null handle.
    PelString getAttributeValueAt(long index) const;
    PelString getAttributeNameAt(long index) const; ///< Its name, in the same way.

    /// Copies of all attributes, in the order of their names, as they are now.
    std::vector<PelDOMAttribute> getAttributes() const;

    /// The name as written, prefix included; empty for a null handle.
    PelString getTagName() const;

    /// Gives the element another name, in place. Attributes that a document type adds for its name
    /// change with it. INVALID_VALUE for a name that XML forbids, NULL_NODE for a null handle.
    PelDOM::Error setTagName(const PelString& name);

    /// The value of an attribute; empty when it is not there and for a null handle.
    PelString getAttribute(const PelString& name) const;
    PelDOM::Error getAttribute(const PelString& name, PelString& value) const; ///< Always SUCCESS.
    bool hasAttribute(const PelString& name) const; ///< Also an empty one; false for a null handle.

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

    PelDOM::Error getChildTextValue(long& value) const;   ///< As a number, as of an attribute.
    PelDOM::Error getChildTextValue(double& value) const; ///< As a real number likewise.

    /// Makes `out` the live list of this element's descendants with a tag name ("*": all), in
    /// document order, and gives its length. 0, with `out` unchanged, for a null handle.
    int getElementsByTagName(const PelString& name, PelDOMNodeList& out) const;

    /// The same list as the result; an empty handle for a null handle.
    PelDOMNodeList getElementsByTagName(const PelString& name) const;

    /// All children that are elements with a tag name ("*": any), for a loop.
    PelDOMElementRange getChildElements(const PelString& name = u"*") const;

    /// The first of them, and the nearest such sibling after or before this element; a null handle
    /// where there is none. Looks at each node on the way, and makes one implementation object.
    PelDOMElement getChildElement(const PelString& name = u"*") const;
    PelDOMElement getNextElement(const PelString& name = u"*") const;     ///< After it.
    PelDOMElement getPreviousElement(const PelString& name = u"*") const; ///< Before it.

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
