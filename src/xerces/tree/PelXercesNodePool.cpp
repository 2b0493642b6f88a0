// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesNodePool.h"

#include "xerces/engine/PelXercesAllocations.h"
#include "xerces/engine/PelXercesLinks.h"

#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

using Fields = PelXercesFields;
using xercesc::DOMAttrImpl;
using xercesc::DOMAttrMapImpl;
using xercesc::DOMBuffer;
using xercesc::DOMElementImpl;
using xercesc::DOMNode;
using xercesc::DOMTextImpl;
using xercesc::XMLString;

namespace {

constexpr std::size_t smallestBuffer = 8; // units, in which the link to the next spare one has room
constexpr std::size_t steps = 4;          // classes to each doubling

static_assert(sizeof(DOMBuffer*) <= smallestBuffer * sizeof(XMLCh));

constexpr std::size_t unitsOfANode = 128; // of data, that take the memory of a node

// A node that the engine has made has anything for a number.
template <class Node>
Node& withoutNumber(Node& node) {
    if (Fields::areKnown())
        Fields::clearNumber(Fields::nodeOf(node));
    return node;
}

} // namespace

std::size_t PelXercesBuffers::capacityOf(std::size_t index) {
    return (steps + index % steps) * (smallestBuffer / steps) << index / steps;
}

// The last class whose capacity is not above.
std::size_t PelXercesBuffers::classOf(std::size_t capacity) {
    std::size_t doublings = 0;
    while (capacity >> doublings >= 2 * smallestBuffer)
        ++doublings;
    return doublings * steps + (capacity >> doublings) / (smallestBuffer / steps) - steps;
}

DOMBuffer& PelXercesBuffers::make(xercesc::DOMDocumentImpl& document, const XMLCh* data,
                                  std::size_t length) {
    const std::size_t needed = std::max(length + 1, smallestBuffer);
    std::size_t index = classOf(needed);
    if (capacityOf(index) < needed)
        ++index;
    const std::size_t beyond = std::min(index + steps + 1, classes); // up to twice the size
    DOMBuffer* buffer = nullptr;
    for (std::size_t i = index; i < beyond && buffer == nullptr; ++i)
        buffer = take(i);
    if (buffer == nullptr)
        buffer = new (&document) DOMBuffer(&document, capacityOf(index));
    buffer->set(data, length);
    return *buffer;
}

// The link lies in the buffer's own memory; the buffer counts as full, as reading one ends its
// text.
DOMBuffer* PelXercesBuffers::take(std::size_t index) noexcept {
    DOMBuffer* const taken = spare[index];
    if (taken != nullptr)
        std::memcpy(&spare[index], taken->getRawBuffer(), sizeof(DOMBuffer*));
    return taken;
}

void PelXercesBuffers::takeBack(DOMBuffer& buffer) noexcept {
    if (buffer.getCapacity() < smallestBuffer)
        return;
    const std::size_t index = classOf(buffer.getCapacity());
    if (index >= classes)
        return;
    buffer.chop(buffer.getCapacity());
    std::memcpy(const_cast<XMLCh*>(buffer.getRawBuffer()), &spare[index], sizeof(DOMBuffer*));
    spare[index] = &buffer;
}

PelXercesNodePool::PelXercesNodePool(xercesc::DOMDocument& ownDocument)
    : document(static_cast<xercesc::DOMDocumentImpl&>(ownDocument)),
      namesLeft(Fields::areKnown() ? PelXercesAllocations::treeNames.places - 1 : SIZE_MAX) {
}

DOMElementImpl& PelXercesNodePool::makeElement(const XMLCh* name) {
    ++made;
    expectName();
    if (elements == nullptr)
        return withoutNumber(*static_cast<DOMElementImpl*>(document.createElementNoCheck(name)));
    const XMLCh* const ownName = document.getPooledString(name);
    auto& element = *static_cast<DOMElementImpl*>(elements);
    elements = std::exchange(Fields::linksOf(element).nextSibling, nullptr);
    Fields::nameOf(element) = ownName;
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
        type != nullptr ? type->getElements()->getNamedItem(element.getTagName()) : nullptr;
    const xercesc::DOMNamedNodeMap* const defaults =
        declared != nullptr ? declared->getAttributes() : nullptr;
    if (defaults == nullptr || defaults->getLength() == 0)
        return;
    for (DOMAttrMapImpl* const map : {Fields::defaultsOf(element), Fields::attributesOf(element)}) {
        map->reserve(defaults->getLength());
        for (XMLSize_t i = 0; i < defaults->getLength(); ++i)
            addCopy(*map, *defaults->item(i));
    }
    Fields::attributesOf(element)->hasDefaults(true);
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
    if (!Fields::areKnown()) {
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
    expectName();
    if (attributes == nullptr)
        return withoutNumber(*new (&document, xercesc::DOMMemoryManager::ATTR_OBJECT)
                                 DOMAttrImpl(&document, name));
    const XMLCh* const ownName = document.getPooledString(name);
    DOMAttrImpl& attribute = *attributes;
    DOMNode*& owner = Fields::ownerOf(Fields::nodeOf(attribute));
    attributes = static_cast<DOMAttrImpl*>(std::exchange(owner, &document));
    Fields::nameOf(attribute) = ownName;
    return attribute;
}

DOMTextImpl& PelXercesNodePool::makeText(const XMLCh* data) {
    return static_cast<DOMTextImpl&>(makeCharacters(DOMNode::TEXT_NODE, data, [&] {
        return static_cast<DOMTextImpl*>(document.createTextNode(data));
    }));
}

DOMNode& PelXercesNodePool::makeCDATASection(const XMLCh* data) {
    return makeCharacters(DOMNode::CDATA_SECTION_NODE, data, [&] {
        return static_cast<xercesc::DOMCDATASectionImpl*>(document.createCDATASection(data));
    });
}

DOMNode& PelXercesNodePool::makeComment(const XMLCh* data) {
    return makeCharacters(DOMNode::COMMENT_NODE, data, [&] {
        return static_cast<xercesc::DOMCommentImpl*>(document.createComment(data));
    });
}

// The engine's document refuses targets that its parser accepts, with characters beyond the basic
// plane. A node copies its target; one that is used again takes it from the names.
DOMNode& PelXercesNodePool::makeInstruction(const XMLCh* target, const XMLCh* data) {
    using Instruction = xercesc::DOMProcessingInstructionImpl;
    constexpr auto type = DOMNode::PROCESSING_INSTRUCTION_NODE;
    const auto make = [&] {
        return new (&document, xercesc::DOMMemoryManager::PROCESSING_INSTRUCTION_OBJECT)
            Instruction(&document, target, data);
    };
    if (!Fields::areKnown())
        return makeCharacters(type, data, make);
    expectName();
    auto* const ownTarget = const_cast<XMLCh*>(document.getPooledString(target));
    DOMNode& node = makeCharacters(type, data, make);
    auto& own = static_cast<Instruction&>(node);
    Fields::targetOf(own) = ownTarget;
    Fields::baseOf(own) = nullptr;
    return node;
}

template <class Make>
DOMNode& PelXercesNodePool::makeCharacters(DOMNode::NodeType type, const XMLCh* data, Make make) {
    const XMLSize_t length = XMLString::stringLen(data);
    made += 1 + length / unitsOfANode;
    if (characters[type] == nullptr)
        return withoutNumber(*make());
    DOMBuffer& buffer = buffers.make(document, data, length);
    DOMNode& node = *characters[type];
    characters[type] = std::exchange(Fields::linksOf(node).nextSibling, nullptr);
    Fields::bufferOf(node) = &buffer;
    return node;
}

void PelXercesNodePool::setData(DOMNode& node, const XMLCh* data) {
    if (!Fields::areKnown() || Fields::nodeOf(node).isReadOnly()) {
        setDataByEngine(node, data);
        return;
    }
    const XMLSize_t length = XMLString::stringLen(data);
    DOMBuffer*& buffer = Fields::bufferOf(node);
    if (length < buffer->getCapacity()) {
        buffer->set(data, length);
        return;
    }
    made += length / unitsOfANode;
    buffers.takeBack(*std::exchange(buffer, &buffers.make(document, data, length)));
}

// The engine forgets what there was before it asks for more memory. There is room for that.
void PelXercesNodePool::setDataByEngine(DOMNode& node, const XMLCh* data) {
    const std::u16string former = node.getNodeValue();
    try {
        node.setNodeValue(data);
    } catch (...) {
        node.setNodeValue(former.c_str());
        throw;
    }
}

// The children of each node go to the front of those that are left, so no place needs remembering.
void PelXercesNodePool::takeBack(DOMNode& root) noexcept {
    if (!Fields::areKnown())
        return;
    for (DOMNode* left = &root; left != nullptr;) {
        DOMNode& node = *left;
        left = Fields::linksOf(node).nextSibling;
        const DOMNode::NodeType type = node.getNodeType();
        switch (type) {
        case DOMNode::ELEMENT_NODE: {
            auto& element = static_cast<DOMElementImpl&>(node);
            if (DOMNode* const first = std::exchange(Fields::firstChildOf(element), nullptr)) {
                DOMNode* const last = Fields::linksOf(*first).previousSibling;
                Fields::linksOf(*last).nextSibling = left;
                left = first;
            }
            takeElement(element);
            break;
        }
        case DOMNode::TEXT_NODE:
        case DOMNode::CDATA_SECTION_NODE:
        case DOMNode::COMMENT_NODE:
        case DOMNode::PROCESSING_INSTRUCTION_NODE:
            takeCharacters(type, node);
            break;
        default: // stays in the document's memory
            break;
        }
    }
}

// The root of a created document is of another class, of which no other element is made.
void PelXercesNodePool::takeElement(DOMElementImpl& element) noexcept {
    takeAttributes(*Fields::attributesOf(element));
    takeAttributes(*Fields::defaultsOf(element));
    if (element.getLocalName() != nullptr)
        return;
    clear(Fields::nodeOf(element));
    Fields::linksOf(element).previousSibling = nullptr;
    Fields::linksOf(element).nextSibling = std::exchange(elements, &element);
}

void PelXercesNodePool::takeAttributes(DOMAttrMapImpl& map) noexcept {
    map.hasDefaults(false);
    for (XMLSize_t i = map.getLength(); i-- > 0;)
        takeBack(*static_cast<DOMAttrImpl*>(map.item(i)));
    if (map.getLength() > 0)
        Fields::listOf(map)->reset();
}

// The engine's table of IDs may go on naming it: nothing asks that, and it stays an attribute.
void PelXercesNodePool::takeBack(DOMAttrImpl& attribute) noexcept {
    if (!Fields::areKnown()) {
        release(attribute);
        return;
    }
    if (DOMNode* const first = std::exchange(Fields::firstChildOf(attribute), nullptr))
        takeBack(*first);
    xercesc::DOMNodeImpl& node = Fields::nodeOf(attribute);
    clear(node);
    node.isIdAttr(false);
    attribute.setSchemaTypeInfo(nullptr);
    Fields::ownerOf(node) = std::exchange(attributes, &attribute);
}

// The engine uses it again, unless there is no memory left to note it.
void PelXercesNodePool::release(DOMAttrImpl& attribute) noexcept {
    try {
        attribute.release();
    } catch (...) {
    }
}

void PelXercesNodePool::takeCharacters(DOMNode::NodeType type, DOMNode& node) noexcept {
    clear(Fields::nodeOf(node));
    buffers.takeBack(*std::exchange(Fields::bufferOf(node), nullptr));
    xercesc::DOMChildNode& links = Fields::linksOf(node);
    links.previousSibling = nullptr;
    links.nextSibling = std::exchange(characters[type], &node);
}

void PelXercesNodePool::clear(xercesc::DOMNodeImpl& node) noexcept {
    Fields::ownerOf(node) = &document;
    Fields::clearNumber(node);
    node.isOwned(false);
    node.isFirstChild(false);
    node.ignorableWhitespace(false);
    Fields::setMark(node, Fields::isOrphan, false);
}

// There may be as many names to come as there are places, so each is looked at a few times for each
// of them.
void PelXercesNodePool::growNameTable() {
    if (Fields::countNames(document) > Fields::namePlacesOf(document))
        Fields::growNameTable(document);
    namesLeft = Fields::namePlacesOf(document);
}

void PelXercesNodePool::requireName(const XMLCh* name) {
    if (!document.isXMLName(name))
        document.createAttribute(name);
}
