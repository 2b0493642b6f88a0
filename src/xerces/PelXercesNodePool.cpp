// SPDX-License-Identifier: MIT
#include "xerces/PelXercesNodePool.h"

#include "xerces/PelXercesLinks.h"

#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMCDATASectionImpl.hpp>
#include <xercesc/dom/impl/DOMCommentImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentTypeImpl.hpp>
#include <xercesc/dom/impl/DOMNodeVector.hpp>
#include <xercesc/dom/impl/DOMProcessingInstructionImpl.hpp>
#include <xercesc/util/XMLString.hpp>

#include <utility>

using xercesc::DOMAttrImpl;
using xercesc::DOMAttrMapImpl;
using xercesc::DOMBuffer;
using xercesc::DOMElementImpl;
using xercesc::DOMNode;
using xercesc::DOMTextImpl;
using xercesc::XMLString;

namespace {

constexpr std::size_t unitsOfANode = 128; // of data, that take the memory of a node

// What the engine keeps to its own classes.
struct OpenedMap : DOMAttrMapImpl {
    static auto nodes() { return &OpenedMap::fNodes; }
};
struct OpenedSection : xercesc::DOMCDATASectionImpl {
    static auto data() { return &OpenedSection::fCharacterData; }
};
struct OpenedInstruction : xercesc::DOMProcessingInstructionImpl {
    static auto data() { return &OpenedInstruction::fCharacterData; }
    static auto target() { return &OpenedInstruction::fTarget; }
    static auto base() { return &OpenedInstruction::fBaseURI; }
};

DOMBuffer*& bufferOf(DOMNode& node) {
    switch (node.getNodeType()) {
    case DOMNode::CDATA_SECTION_NODE:
        return (static_cast<xercesc::DOMCDATASectionImpl&>(node).*OpenedSection::data()).fDataBuf;
    case DOMNode::COMMENT_NODE:
        return static_cast<xercesc::DOMCommentImpl&>(node).fCharacterData.fDataBuf;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
        return (static_cast<xercesc::DOMProcessingInstructionImpl&>(node).*
                OpenedInstruction::data())
            .fDataBuf;
    default:
        return static_cast<DOMTextImpl&>(node).fCharacterData.fDataBuf;
    }
}

} // namespace

PelXercesNodePool::PelXercesNodePool(xercesc::DOMDocument& ownDocument)
    : document(static_cast<xercesc::DOMDocumentImpl&>(ownDocument)) {
}

DOMElementImpl& PelXercesNodePool::makeElement(const XMLCh* name) {
    ++made;
    if (elements == nullptr)
        return *static_cast<DOMElementImpl*>(document.createElementNoCheck(name));
    const XMLCh* const ownName = document.getPooledString(name);
    auto& element = *static_cast<DOMElementImpl*>(elements);
    elements = std::exchange(element.fChild.nextSibling, nullptr);
    element.fName = ownName;
    try {
        addDefaults(element);
    } catch (...) {
        takeElement(element);
        throw;
    }
    return element;
}

// As the engine does it when it makes an element.
void PelXercesNodePool::addDefaults(DOMElementImpl& element) {
    auto* const type = static_cast<xercesc::DOMDocumentTypeImpl*>(document.getDoctype());
    const DOMNode* const declared =
        type != nullptr ? type->getElements()->getNamedItem(element.fName) : nullptr;
    const xercesc::DOMNamedNodeMap* const defaults =
        declared != nullptr ? declared->getAttributes() : nullptr;
    if (defaults == nullptr || defaults->getLength() == 0)
        return;
    for (DOMAttrMapImpl* const map : {element.fDefaultAttributes, element.fAttributes}) {
        map->reserve(defaults->getLength());
        for (XMLSize_t i = 0; i < defaults->getLength(); ++i)
            addCopy(*map, *defaults->item(i));
    }
    element.fAttributes->hasDefaults(true);
}

void PelXercesNodePool::addCopy(DOMAttrMapImpl& map, const DOMNode& attribute) {
    DOMAttrImpl& copy = makeAttribute(attribute.getNodeName(), PelXercesLinks::valueOf(attribute),
                                      static_cast<const DOMAttrImpl&>(attribute).getSpecified());
    try {
        map.setNamedItemFast(&copy);
    } catch (...) {
        takeBack(copy);
        throw;
    }
}

DOMAttrImpl& PelXercesNodePool::makeAttribute(const XMLCh* name, const XMLCh* value,
                                              bool isSpecified) {
    DOMAttrImpl& attribute = makeBareAttribute(name);
    if (!PelXercesLinks::areKnown) {
        attribute.setValueFast(value);
        attribute.setSpecified(isSpecified);
        return attribute;
    }
    try {
        PelXercesLinks::append(attribute, makeText(value));
    } catch (...) {
        takeBack(attribute);
        throw;
    }
    attribute.setSpecified(isSpecified);
    return attribute;
}

DOMAttrImpl& PelXercesNodePool::makeBareAttribute(const XMLCh* name) {
    ++made;
    if (attributes == nullptr)
        return *new (&document, xercesc::DOMMemoryManager::ATTR_OBJECT)
            DOMAttrImpl(&document, name);
    const XMLCh* const ownName = document.getPooledString(name);
    DOMAttrImpl& attribute = *attributes;
    attributes = static_cast<DOMAttrImpl*>(std::exchange(attribute.fNode.fOwnerNode, &document));
    attribute.fName = ownName;
    return attribute;
}

DOMTextImpl& PelXercesNodePool::makeText(const XMLCh* data) {
    return static_cast<DOMTextImpl&>(
        makeCharacters(text, data, [&] { return document.createTextNode(data); }));
}

DOMNode& PelXercesNodePool::makeCDATASection(const XMLCh* data) {
    return makeCharacters(cdataSection, data, [&] { return document.createCDATASection(data); });
}

DOMNode& PelXercesNodePool::makeComment(const XMLCh* data) {
    return makeCharacters(comment, data, [&] { return document.createComment(data); });
}

// The engine copies the target of each new one; one that is used again takes it from the names.
DOMNode& PelXercesNodePool::makeInstruction(const XMLCh* target, const XMLCh* data) {
    auto* const ownTarget = const_cast<XMLCh*>(document.getPooledString(target));
    DOMNode& node = makeCharacters(
        instruction, data, [&] { return document.createProcessingInstruction(target, data); });
    auto& own = static_cast<xercesc::DOMProcessingInstructionImpl&>(node);
    own.*OpenedInstruction::target() = ownTarget;
    own.*OpenedInstruction::base() = nullptr;
    return node;
}

template <class Make>
DOMNode& PelXercesNodePool::makeCharacters(Kind kind, const XMLCh* data, Make make) {
    const XMLSize_t length = XMLString::stringLen(data);
    made += 1 + length / unitsOfANode;
    if (characters[kind] == nullptr)
        return *make();
    DOMBuffer& buffer = buffers.make(document, data, length);
    DOMNode& node = *characters[kind];
    characters[kind] = std::exchange(PelXercesLinks::linksOf(&node).nextSibling, nullptr);
    bufferOf(node) = &buffer;
    return node;
}

void PelXercesNodePool::setData(DOMNode& node, const XMLCh* data) {
    if (!PelXercesLinks::areKnown || PelXercesLinks::implOf(&node).isReadOnly()) {
        node.setNodeValue(data);
        return;
    }
    const XMLSize_t length = XMLString::stringLen(data);
    DOMBuffer*& buffer = bufferOf(node);
    if (length < buffer->getCapacity()) {
        buffer->set(data, length);
        return;
    }
    made += length / unitsOfANode;
    buffers.takeBack(*std::exchange(buffer, &buffers.make(document, data, length)));
}

// The children of each node go to the front of those that are left, so no place needs remembering.
void PelXercesNodePool::takeBack(DOMNode& root) noexcept {
    if (!PelXercesLinks::areKnown)
        return;
    for (DOMNode* left = &root; left != nullptr;) {
        DOMNode& node = *left;
        left = PelXercesLinks::linksOf(&node).nextSibling;
        switch (node.getNodeType()) {
        case DOMNode::ELEMENT_NODE: {
            auto& element = static_cast<DOMElementImpl&>(node);
            if (DOMNode* const first = std::exchange(element.fParent.fFirstChild, nullptr)) {
                DOMNode* const last = PelXercesLinks::linksOf(first).previousSibling;
                PelXercesLinks::linksOf(last).nextSibling = left;
                left = first;
            }
            takeElement(element);
            break;
        }
        case DOMNode::TEXT_NODE:
            takeCharacters(text, node);
            break;
        case DOMNode::CDATA_SECTION_NODE:
            takeCharacters(cdataSection, node);
            break;
        case DOMNode::COMMENT_NODE:
            takeCharacters(comment, node);
            break;
        case DOMNode::PROCESSING_INSTRUCTION_NODE:
            takeCharacters(instruction, node);
            break;
        default: // stays in the document's memory
            break;
        }
    }
}

// The root of a created document is of another class, of which no other element is made.
void PelXercesNodePool::takeElement(DOMElementImpl& element) noexcept {
    takeAttributes(*element.fAttributes);
    takeAttributes(*element.fDefaultAttributes);
    if (element.getLocalName() != nullptr)
        return;
    clear(element.fNode);
    element.fChild.previousSibling = nullptr;
    element.fChild.nextSibling = std::exchange(elements, &element);
}

void PelXercesNodePool::takeAttributes(DOMAttrMapImpl& map) noexcept {
    map.hasDefaults(false);
    for (XMLSize_t i = map.getLength(); i-- > 0;)
        takeBack(*static_cast<DOMAttrImpl*>(map.item(i)));
    if (map.getLength() > 0)
        (map.*OpenedMap::nodes())->reset();
}

// The engine's table of IDs may go on naming it: nothing asks that, and it stays an attribute.
void PelXercesNodePool::takeBack(DOMAttrImpl& attribute) noexcept {
    if (!PelXercesLinks::areKnown)
        return;
    if (DOMNode* const first = std::exchange(attribute.fParent.fFirstChild, nullptr))
        takeBack(*first);
    clear(attribute.fNode);
    attribute.fNode.isIdAttr(false);
    attribute.setSchemaTypeInfo(nullptr);
    attribute.fNode.fOwnerNode = std::exchange(attributes, &attribute);
}

void PelXercesNodePool::takeCharacters(Kind kind, DOMNode& node) noexcept {
    clear(PelXercesLinks::implOf(&node));
    buffers.takeBack(*std::exchange(bufferOf(node), nullptr));
    xercesc::DOMChildNode& links = PelXercesLinks::linksOf(&node);
    links.previousSibling = nullptr;
    links.nextSibling = std::exchange(characters[kind], &node);
}

void PelXercesNodePool::clear(xercesc::DOMNodeImpl& node) noexcept {
    node.fOwnerNode = &document;
    node.isOwned(false);
    node.isFirstChild(false);
    node.ignorableWhitespace(false);
    PelXercesLinks::setMark(node, PelXercesLinks::isLoose, false);
}

void PelXercesNodePool::requireName(const XMLCh* name) {
    if (!document.isXMLName(name))
        document.createAttribute(name);
}
