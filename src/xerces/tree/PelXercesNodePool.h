// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesFields.h"

#include <array>
#include <cstddef>

/// The buffers for the data of a document's texts: made, taken back and used again. They are kept
/// by their capacity, four classes to each doubling, so that one that fits is found at once.
class PelXercesBuffers {
public:
    /// A buffer with that data.
    xercesc::DOMBuffer& make(xercesc::DOMDocumentImpl& document, const XMLCh* data,
                             std::size_t length);

    /// Takes back what no node uses any more.
    void takeBack(xercesc::DOMBuffer& buffer) noexcept;

private:
    static constexpr std::size_t classes = 120; // up to 2^33 units

    static std::size_t capacityOf(std::size_t index);
    static std::size_t classOf(std::size_t capacity);

    xercesc::DOMBuffer* take(std::size_t index) noexcept;

    std::array<xercesc::DOMBuffer*, classes> spare{};
};

/// Makes the nodes of a document, and takes back those that nobody needs any more, of which it
/// makes others. The engine's own way loses the attribute maps of an element, searches all spare
/// buffers for a text and walks down by recursion.
///
/// Names are used as they are, unchecked. When no memory is left, the engine's exception finds the
/// document as it was.
class PelXercesNodePool {
public:
    explicit PelXercesNodePool(xercesc::DOMDocument& ownDocument);

    /// With the attributes that the document's type adds.
    xercesc::DOMElementImpl& makeElement(const XMLCh* name);
    xercesc::DOMAttrImpl& makeAttribute(const XMLCh* name, const XMLCh* value, bool isSpecified);
    xercesc::DOMTextImpl& makeText(const XMLCh* data);
    xercesc::DOMNode& makeCDATASection(const XMLCh* data);
    xercesc::DOMNode& makeComment(const XMLCh* data);
    xercesc::DOMNode& makeInstruction(const XMLCh* target, const XMLCh* data);

    /// Replaces the data of a text, CDATA section, comment or instruction.
    void setData(xercesc::DOMNode& node, const XMLCh* data);

    /// Takes back a node that has no parent, with all below it.
    void takeBack(xercesc::DOMNode& root) noexcept;

    /// Takes back an attribute that no element has.
    void takeBack(xercesc::DOMAttrImpl& attribute) noexcept;

    /// Throws the engine's exception for a name that XML forbids.
    void requireName(const XMLCh* name);

    /// A name may be about to come into the document's table of them, which the engine never makes
    /// larger. Those of the nodes that are made here are known.
    void expectName() {
        if (namesLeft == 0)
            growNameTable();
        --namesLeft;
    }

    /// How much was made so far: one for each node, and for each such amount of data.
    std::size_t getMade() const noexcept { return made; }

private:
    template <class Make>
    xercesc::DOMNode& makeCharacters(xercesc::DOMNode::NodeType type, const XMLCh* data, Make make);
    xercesc::DOMAttrImpl& makeBareAttribute(const XMLCh* name);
    void addDefaults(xercesc::DOMElementImpl& element);
    void addCopy(xercesc::DOMAttrMapImpl& map, const xercesc::DOMNode& attribute);

    static void setDataByEngine(xercesc::DOMNode& node, const XMLCh* data);
    static void release(xercesc::DOMAttrImpl& attribute) noexcept;
    void takeElement(xercesc::DOMElementImpl& element) noexcept;
    void takeAttributes(xercesc::DOMAttrMapImpl& attributes) noexcept;
    void takeCharacters(xercesc::DOMNode::NodeType type, xercesc::DOMNode& node) noexcept;
    void clear(xercesc::DOMNodeImpl& node) noexcept;
    void growNameTable();

    xercesc::DOMDocumentImpl& document;
    std::size_t made = 0;
    std::size_t namesLeft; // to come before they are counted
    // Nodes to be used again, each leading to the next by the link to a next sibling, attributes by
    // that to an owner.
    xercesc::DOMNode* elements = nullptr;
    xercesc::DOMAttrImpl* attributes = nullptr;
    std::array<xercesc::DOMNode*, xercesc::DOMNode::COMMENT_NODE + 1> characters{}; // by type
    PelXercesBuffers buffers;
};
