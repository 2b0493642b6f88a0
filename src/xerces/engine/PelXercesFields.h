// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMCDATASectionImpl.hpp>
#include <xercesc/dom/impl/DOMCasts.hpp>
#include <xercesc/dom/impl/DOMCommentImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentTypeImpl.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>
#include <xercesc/dom/impl/DOMEntityImpl.hpp>
#include <xercesc/dom/impl/DOMNodeVector.hpp>
#include <xercesc/dom/impl/DOMNotationImpl.hpp>
#include <xercesc/dom/impl/DOMProcessingInstructionImpl.hpp>
#include <xercesc/dom/impl/DOMStringPool.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>
#include <xercesc/util/XercesVersion.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

/// The fields of the engine's own nodes and documents: the one place that names them. Reaching into
/// them saves most of the time that the engine takes to build and change a tree, and all of the
/// memory that it never gives back.
///
/// They are known of some releases only, and PelXercesLayoutCheck holds them against the engine
/// that runs before the first tree is made. Nothing here may be used unless areKnown; there is a
/// way through the engine's interface for each use.
class PelXercesFields {
    // Reaches what the engine keeps to its own classes.
    template <class Node>
    struct Opened : Node {
        static auto node() { return &Opened::fNode; }
        static auto links() { return &Opened::fChild; }
        static auto list() { return &Opened::fNodes; }
        static auto owner() { return &Opened::fOwnerNode; }
        static auto characters() { return &Opened::fCharacterData; }
        static auto target() { return &Opened::fTarget; }
        static auto base() { return &Opened::fBaseURI; }
        static auto names() { return &Opened::fNameTable; }
        static auto namePlaces() { return &Opened::fNameTableSize; }
        static auto freeBegin() { return &Opened::fFreePtr; }
        static auto freeSize() { return &Opened::fFreeBytesRemaining; }
        static auto nextSize() { return &Opened::fHeapAllocSize; }
    };

public:
    /// Whether this is a release on which the library was tried, and reaching in is wanted.
#ifdef QRNDOM_ENGINE_FIELDS
    static constexpr bool isKnownRelease =
        _XERCES_VERSION == 30204 || _XERCES_VERSION == 30205 || _XERCES_VERSION == 30300;
#else
    static constexpr bool isKnownRelease = false;
#endif

    /// Whether the engine's nodes consist of what is expected here.
    static bool areKnown() noexcept {
        return isKnownRelease && areChecked;
    }

    // What a node has in common with all others, and with all that can be children.
    template <class Node>
    static xercesc::DOMNodeImpl& nodeOf(Node& node) {
        return node.*Opened<Node>::node();
    }
    template <class Node>
    static xercesc::DOMChildNode& linksOf(Node& node) {
        return node.*Opened<Node>::links();
    }

    /// The same of a node of any kind that can be a child. The engine's own way is a run-time cast,
    /// which takes long, and fails where a library is to compare types by their addresses.
    static xercesc::DOMNodeImpl& nodeOf(xercesc::DOMNode& child) {
        return withType<xercesc::DOMNodeImpl>(
            child, [](auto& node) -> auto& { return nodeOf(node); });
    }
    static xercesc::DOMChildNode& linksOf(xercesc::DOMNode& child) {
        return withType<xercesc::DOMChildNode>(
            child, [](auto& node) -> auto& { return linksOf(node); });
    }

    /// The parent of a child, the element of an attribute, else the document.
    static xercesc::DOMNode*& ownerOf(xercesc::DOMNodeImpl& node) {
        return node.fOwnerNode;
    }

    /// The part that has children.
    template <class Node>
    static xercesc::DOMParentNode& parentOf(Node& node) {
        return node.fParent;
    }

    /// The first child's link to a previous sibling leads to the last child.
    template <class Node>
    static auto& firstChildOf(Node& node) {
        return node.fParent.fFirstChild;
    }

    /// The name of an element or attribute, which lies in the document's table of names.
    template <class Node>
    static auto& nameOf(Node& node) {
        return node.fName;
    }

    // The maps of an element's attributes, and of those that it has by default.
    template <class Node>
    static auto& attributesOf(Node& element) {
        return element.fAttributes;
    }
    template <class Node>
    static auto& defaultsOf(Node& element) {
        return element.fDefaultAttributes;
    }

    /// The list behind a map of attributes, in the order of their names; null: never had any.
    static auto& listOf(xercesc::DOMAttrMapImpl& map) {
        return map.*Opened<xercesc::DOMAttrMapImpl>::list();
    }
    static auto& ownerOf(xercesc::DOMAttrMapImpl& map) {
        return map.*Opened<xercesc::DOMAttrMapImpl>::owner();
    }

    /// The data of a text, CDATA section, comment or instruction, and its document.
    template <class Node>
    static xercesc::DOMBuffer*& bufferOf(Node& node) {
        return (node.*Opened<Node>::characters()).fDataBuf;
    }
    template <class Node>
    static xercesc::DOMDocumentImpl*& documentOf(Node& node) {
        return (node.*Opened<Node>::characters()).fDoc;
    }
    static xercesc::DOMBuffer*& bufferOf(xercesc::DOMNode& node) {
        switch (node.getNodeType()) {
        case xercesc::DOMNode::CDATA_SECTION_NODE:
            return bufferOf(static_cast<xercesc::DOMCDATASectionImpl&>(node));
        case xercesc::DOMNode::COMMENT_NODE:
            return bufferOf(static_cast<xercesc::DOMCommentImpl&>(node));
        case xercesc::DOMNode::PROCESSING_INSTRUCTION_NODE:
            return bufferOf(static_cast<xercesc::DOMProcessingInstructionImpl&>(node));
        default:
            return bufferOf(static_cast<xercesc::DOMTextImpl&>(node));
        }
    }
    static auto& targetOf(xercesc::DOMProcessingInstructionImpl& node) {
        return node.*Opened<xercesc::DOMProcessingInstructionImpl>::target();
    }
    static auto& baseOf(xercesc::DOMProcessingInstructionImpl& node) {
        return node.*Opened<xercesc::DOMProcessingInstructionImpl>::base();
    }

    /// Bits of a node's flags that the engine leaves free.
    enum Mark : unsigned short { isOrphan = 1U << 14U, isHeld = 1U << 15U };

    static bool hasMark(const xercesc::DOMNodeImpl& node, Mark mark) {
        return (node.flags & mark) != 0;
    }
    static void setMark(xercesc::DOMNodeImpl& node, Mark mark, bool isSet) {
        node.flags = static_cast<unsigned short>(isSet ? node.flags | mark : node.flags & ~mark);
    }

    /// The bytes behind a node's flags, which the engine leaves alone: 16 marks and, where nodes
    /// have room for it, a number. They are zero in copies of the prototypes and anything in nodes
    /// that the engine makes.
    static constexpr bool hasNumbers() {
        return sizeof(xercesc::DOMNodeImpl) >= numberPlace + sizeof(std::uint32_t);
    }

    /// Whether a node's number can be used.
    static bool areNumbered() noexcept {
        return hasNumbers() && areKnown();
    }
    static std::uint16_t& marksOf(xercesc::DOMNodeImpl& node) {
        return reinterpret_cast<std::uint16_t&>(reinterpret_cast<char*>(&node)[marksPlace]);
    }
    static void clearNumber(xercesc::DOMNodeImpl& node) {
        if (!hasNumbers())
            return;
        marksOf(node) = 0;
        numberOf(node) = 0;
    }
    static std::uint32_t& numberOf(xercesc::DOMNodeImpl& node) {
        return reinterpret_cast<std::uint32_t&>(reinterpret_cast<char*>(&node)[numberPlace]);
    }

    // The document's table of names, a chain for each place, and its number of places.
    using Document = xercesc::DOMDocumentImpl;
    using Name = xercesc::DOMStringPoolEntry;
    static Name**& namesOf(Document& document) {
        return document.*Opened<Document>::names();
    }
    static std::size_t& namePlacesOf(Document& document) {
        return document.*Opened<Document>::namePlaces();
    }

    /// Puts a name into the table that is known not to be there.
    static const XMLCh* addName(Document& document, const std::u16string& name);

    /// A name of the table; null where it is not there.
    static const XMLCh* findName(Document& document, const std::u16string& name);

    static std::size_t countNames(Document& document);

    /// Gives the table of names twice as many places, or three times as many: how many is not to be
    /// foreseen, since with the engine's hash, names can be made to share a place.
    static void growNameTable(Document& document);

    /// What the document's memory makes of a size: a multiple of what a pointer and a double take.
    static constexpr std::size_t aligned(std::size_t size) {
        constexpr std::size_t unit = std::max(sizeof(void*), sizeof(double));
        return (size + unit - 1) / unit * unit;
    }

    // The document's block of memory that is being filled, and the size of the next.
    static char*& freeBeginOf(Document& document) {
        return document.*Opened<Document>::freeBegin();
    }
    static std::size_t& freeSizeOf(Document& document) {
        return document.*Opened<Document>::freeSize();
    }
    static std::size_t& nextSizeOf(Document& document) {
        return document.*Opened<Document>::nextSize();
    }

    // What a DOMBuffer and a DOMNodeVector consist of.
    struct Buffer {
        XMLCh* units;
        XMLSize_t size;
        XMLSize_t capacity;
        Document* document;
    };
    struct List {
        xercesc::DOMNode** nodes;
        XMLSize_t capacity;
        XMLSize_t size;
    };

    // Sets what a copy of a node has to have of its own, without a parent.
    template <class Node>
    static void makeOwn(Node& node, Document& document) {
        nodeOf(node).fContainingNode = &node;
        nodeOf(node).fOwnerNode = &document;
    }
    template <class Node>
    static void makeOwnParent(Node& node, Document& document) {
        makeOwn(node, document);
        xercesc::DOMParentNode& part = parentOf(node);
        part.fContainingNode = &node;
        part.fOwnerDocument = &document;
        part.fChildNodeList.*Opened<xercesc::DOMNodeListImpl>::node() = &part;
    }

private:
    friend class PelXercesLayoutCheck;

    static constexpr std::size_t marksPlace =
        offsetof(xercesc::DOMNodeImpl, flags) + sizeof(xercesc::DOMNodeImpl::flags);
    static constexpr std::size_t numberPlace = marksPlace + sizeof(std::uint16_t);

    template <class Part, class Use>
    static Part& withType(xercesc::DOMNode& node, Use use) {
        switch (node.getNodeType()) {
        case xercesc::DOMNode::ELEMENT_NODE:
            return use(static_cast<xercesc::DOMElementImpl&>(node));
        case xercesc::DOMNode::TEXT_NODE:
            return use(static_cast<xercesc::DOMTextImpl&>(node));
        case xercesc::DOMNode::CDATA_SECTION_NODE:
            return use(static_cast<xercesc::DOMCDATASectionImpl&>(node));
        case xercesc::DOMNode::COMMENT_NODE:
            return use(static_cast<xercesc::DOMCommentImpl&>(node));
        case xercesc::DOMNode::PROCESSING_INSTRUCTION_NODE:
            return use(static_cast<xercesc::DOMProcessingInstructionImpl&>(node));
        default:
            return use(static_cast<xercesc::DOMDocumentTypeImpl&>(node));
        }
    }

    static inline bool areChecked = false;
};
