// SPDX-License-Identifier: MIT
#include "xerces/engine/PelXercesLayoutCheck.h"

#include "xerces/engine/PelXercesPrototypes.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/util/XMLString.hpp>

#include <cstring>
#include <functional>

using Fields = PelXercesFields;
using xercesc::DOMNode;
using xercesc::DOMNodeImpl;

namespace {

constexpr const XMLCh* name = u"n";
constexpr const XMLCh* data = u"four";

// Whether a node, or a part of one, ends where the next begins that the engine has made.
template <class Node>
bool endsAt(const Node* node, const void* next) {
    const void* const end = reinterpret_cast<const char*>(node) + Fields::aligned(sizeof(Node));
    return end == next;
}

template <class Parts, class Object>
Parts partsOf(const Object& object) {
    static_assert(sizeof(Parts) == sizeof(Object));
    const void* const bytes = &object;
    Parts parts;
    std::memcpy(&parts, bytes, sizeof parts);
    return parts;
}

template <class Node>
Node* as(DOMNode* node) {
    return static_cast<Node*>(node);
}

} // namespace

void* PelXercesZeroedDocument::Memory::allocate(XMLSize_t size) {
    void* const place = std::memset(PelXercesMemory::allocate(size), 0, size);
    for (Block& block : blocks)
        if (block.begin == nullptr) {
            block = {static_cast<char*>(place), size};
            break;
        }
    return place;
}

PelXercesZeroedDocument::PelXercesZeroedDocument()
    : document(xercesc::DOMImplementation::getImplementation()->createDocument(&memory)) {
}

xercesc::DOMDocumentImpl& PelXercesZeroedDocument::get() const {
    return static_cast<xercesc::DOMDocumentImpl&>(*document);
}

std::size_t PelXercesZeroedDocument::sizeFrom(const void* place) const {
    const auto* const byte = static_cast<const char*>(place);
    for (const Memory::Block& block : memory.blocks)
        if (!std::less<>()(byte, block.begin) && std::less<>()(byte, block.begin + block.size))
            return static_cast<std::size_t>(block.begin + block.size - byte);
    return 0;
}

PelXercesLayoutCheck::PelXercesLayoutCheck() : document(owner.get()) {
    parent = as<xercesc::DOMElementImpl>(document.createElement(name));
    element = as<xercesc::DOMElementImpl>(document.createElement(name));
    attribute = as<xercesc::DOMAttrImpl>(document.createAttribute(name));
    text = as<xercesc::DOMTextImpl>(document.createTextNode(data));
    comment = as<xercesc::DOMCommentImpl>(document.createComment(data));
    section = as<xercesc::DOMCDATASectionImpl>(document.createCDATASection(data));
    instruction =
        as<xercesc::DOMProcessingInstructionImpl>(document.createProcessingInstruction(name, data));
    removed = as<xercesc::DOMElementImpl>(document.createElement(name));
    type = as<xercesc::DOMDocumentTypeImpl>(document.createDocumentType(name));
    attribute->setValue(data);
    parent->setAttributeNode(attribute);
    for (DOMNode* const child :
         std::initializer_list<DOMNode*>{removed, element, text, comment, section, instruction})
        parent->appendChild(child);
    parent->removeChild(removed);
}

bool PelXercesLayoutCheck::succeeds() const {
    return areSizesKnown() && areLinksKnown() && areAttributesKnown() && areDataKnown() &&
           areNamesKnown() && isHeapKnown() && PelXercesPrototypes::areRight(document);
}

// Nodes lie one behind the other, but for what belongs to them.
bool PelXercesLayoutCheck::areSizesKnown() const {
    return owner.sizeFrom(&document) == sizeof document && owner.holds(parent, sizeof *parent) &&
           owner.holds(removed, sizeof *removed) && owner.holds(element, sizeof *element) &&
           endsAt(element, Fields::defaultsOf(*element)) &&
           endsAt(Fields::defaultsOf(*element), Fields::attributesOf(*element)) &&
           endsAt(Fields::attributesOf(*element), attribute) && endsAt(attribute, text) &&
           owner.holds(text, sizeof *text) && endsAt(text, Fields::bufferOf(*text)) &&
           owner.holds(comment, sizeof *comment) && endsAt(comment, Fields::bufferOf(*comment)) &&
           owner.holds(section, sizeof *section) && endsAt(section, Fields::bufferOf(*section)) &&
           owner.holds(instruction, sizeof *instruction) &&
           endsAt(instruction, Fields::bufferOf(*instruction));
}

template <class Node>
bool PelXercesLayoutCheck::isChildKnown(Node& node, DOMNode* previous, DOMNode* next) const {
    DOMNodeImpl& impl = Fields::nodeOf(node);
    const xercesc::DOMChildNode& links = Fields::linksOf(node);
    return &impl == node.getNodeImpl() && &links == node.getChildNodeImpl() &&
           Fields::ownerOf(impl) == parent && impl.isOwned() &&
           impl.isFirstChild() == (next == text) && links.previousSibling == previous &&
           links.nextSibling == next;
}

bool PelXercesLayoutCheck::areLinksKnown() const {
    constexpr int marks = Fields::isOrphan | Fields::isHeld;
    constexpr DOMNode* none = nullptr;
    DOMNodeImpl& orphans = Fields::nodeOf(*removed);
    const xercesc::DOMChildNode& links = Fields::linksOf(*removed);
    return &Fields::parentOf(*parent) == parent->getParentNodeImpl() &&
           &Fields::parentOf(document) == document.getParentNodeImpl() &&
           owner.holds(type, sizeof *type) && &Fields::nodeOf(*type) == type->getNodeImpl() &&
           &Fields::linksOf(*type) == type->getChildNodeImpl() &&
           Fields::firstChildOf(*parent) == element && isChildKnown(*element, instruction, text) &&
           isChildKnown(*text, element, comment) && isChildKnown(*comment, text, section) &&
           isChildKnown(*section, comment, instruction) &&
           isChildKnown(*instruction, section, none) && Fields::ownerOf(orphans) == &document &&
           !orphans.isOwned() && !orphans.isFirstChild() && links.previousSibling == none &&
           links.nextSibling == none &&
           ((DOMNodeImpl::READONLY | DOMNodeImpl::SYNCDATA | DOMNodeImpl::SYNCCHILDREN |
             DOMNodeImpl::OWNED | DOMNodeImpl::FIRSTCHILD | DOMNodeImpl::SPECIFIED |
             DOMNodeImpl::IGNORABLEWS | DOMNodeImpl::SETVALUE | DOMNodeImpl::ID_ATTR |
             DOMNodeImpl::USERDATA | DOMNodeImpl::LEAFNODETYPE | DOMNodeImpl::CHILDNODE |
             DOMNodeImpl::TOBERELEASED) &
            marks) == 0;
}

bool PelXercesLayoutCheck::areAttributesKnown() const {
    xercesc::DOMAttrMapImpl* const map = Fields::attributesOf(*parent);
    xercesc::DOMAttrMapImpl* const defaults = Fields::defaultsOf(*parent);
    if (map != parent->getAttributes() || defaults != parent->getDefaultAttributes() ||
        map->hasDefaults() || Fields::ownerOf(*map) != parent ||
        Fields::listOf(*defaults) != nullptr)
        return false;
    xercesc::DOMNodeVector* const list = Fields::listOf(*map);
    if (!owner.holds(list, sizeof *list))
        return false;
    const auto parts = partsOf<Fields::List>(*list);
    DOMNode* const value = Fields::firstChildOf(*attribute);
    DOMNodeImpl& node = Fields::nodeOf(*attribute);
    return endsAt(list, parts.nodes) && parts.nodes[0] == attribute && parts.size == 1 &&
           parts.capacity > 1 && owner.holds(parts.nodes, parts.capacity * sizeof(void*)) &&
           &node == attribute->getNodeImpl() &&
           &Fields::parentOf(*attribute) == attribute->getParentNodeImpl() &&
           Fields::ownerOf(node) == parent && node.isOwned() && node.isSpecified() &&
           value == attribute->getFirstChild() && owner.holds(value, sizeof *text) &&
           value->getNodeType() == DOMNode::TEXT_NODE &&
           isDataKnown(*as<xercesc::DOMTextImpl>(value));
}

template <class Node>
bool PelXercesLayoutCheck::isDataKnown(Node& node) const {
    xercesc::DOMBuffer* const buffer = Fields::bufferOf(node);
    if (!endsAt(&node, buffer) || !owner.holds(buffer, sizeof *buffer))
        return false;
    const auto parts = partsOf<Fields::Buffer>(*buffer);
    return Fields::documentOf(node) == &document && parts.document == &document &&
           endsAt(buffer, parts.units) && parts.units == node.getNodeValue() && parts.size == 4 &&
           parts.capacity >= parts.size &&
           owner.holds(parts.units, (parts.capacity + 1) * sizeof *parts.units);
}

bool PelXercesLayoutCheck::areDataKnown() const {
    return isDataKnown(*text) && isDataKnown(*comment) && isDataKnown(*section) &&
           isDataKnown(*instruction) &&
           Fields::targetOf(*instruction) == instruction->getTarget() &&
           Fields::baseOf(*instruction) == nullptr;
}

// The three nodes that have the one name share it, and it is the only one.
bool PelXercesLayoutCheck::areNamesKnown() const {
    const std::size_t places = Fields::namePlacesOf(document);
    Fields::Name** const names = Fields::namesOf(document);
    const XMLCh* const known = parent->getNodeName();
    if (places == 0 || owner.sizeFrom(names) / sizeof(void*) < places)
        return false;
    const Fields::Name* const first = names[xercesc::XMLString::hash(name, places)];
    return owner.holds(first, sizeof *first) && first->fNext == nullptr && first->fLength == 1 &&
           first->fString == known && Fields::nameOf(*parent) == known &&
           Fields::nameOf(*element) == known && Fields::nameOf(*attribute) == known;
}

bool PelXercesLayoutCheck::isHeapKnown() const {
    char* const begin = Fields::freeBeginOf(document);
    const std::size_t size = Fields::freeSizeOf(document);
    constexpr std::size_t least = Fields::aligned(1);
    return owner.sizeFrom(begin) == size && document.allocate(1) == begin &&
           Fields::freeBeginOf(document) == begin + least &&
           Fields::freeSizeOf(document) == size - least && Fields::nextSizeOf(document) > size;
}
