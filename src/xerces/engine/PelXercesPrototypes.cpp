// SPDX-License-Identifier: MIT
#include "xerces/engine/PelXercesPrototypes.h"

#include "xerces/engine/PelXercesLinks.h"

#include <xercesc/dom/DOMImplementation.hpp>

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

using Fields = PelXercesFields;
using xercesc::DOMAttrImpl;
using xercesc::DOMAttrMapImpl;
using xercesc::DOMBuffer;
using xercesc::DOMDocumentImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMMemoryManager;
using xercesc::DOMNode;
using xercesc::DOMNodeVector;
using xercesc::DOMTextImpl;

namespace {

// What takes more than this part of a block of the document's memory gets one of its own. The
// engine gives one to all that is longer than 256 bytes.
constexpr std::size_t partOfBlock = 16;

// Up to here sorting by insertion is faster.
constexpr std::size_t fewAttributes = 12;

// In the order in which the engine keeps attributes.
bool isBefore(const DOMAttrImpl* one, const DOMAttrImpl* two) {
    const XMLCh* unit = Fields::nameOf(*one);
    const XMLCh* other = Fields::nameOf(*two);
    while (*unit != 0 && *unit == *other) {
        ++unit;
        ++other;
    }
    return *unit < *other;
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

DOMDocumentImpl& PelXercesZeroedDocument::get() const {
    return static_cast<DOMDocumentImpl&>(*document);
}

std::size_t PelXercesZeroedDocument::sizeFrom(const void* place) const {
    const auto* const byte = static_cast<const char*>(place);
    for (const Memory::Block& block : memory.blocks)
        if (!std::less<>()(byte, block.begin) && std::less<>()(byte, block.begin + block.size))
            return static_cast<std::size_t>(block.begin + block.size - byte);
    return 0;
}

// The bytes of a node.
template <class Node>
class PelXercesPrototypes::Mould {
public:
    explicit Mould(const Node& node) {
        std::memcpy(bytes, static_cast<const void*>(&node), sizeof bytes);
    }

    bool isSameAs(const Node& node) const {
        return std::memcmp(bytes, static_cast<const void*>(&node), sizeof bytes) == 0;
    }

    Node& copyTo(void* place) const {
        std::memcpy(place, bytes, sizeof bytes);
        return *static_cast<Node*>(place);
    }

private:
    alignas(Node) unsigned char bytes[sizeof(Node)];
};

struct PelXercesPrototypes::Prototypes {
    // Of nodes that the engine makes.
    explicit Prototypes(DOMDocumentImpl& owner)
        : Prototypes(owner, *new (&owner, DOMMemoryManager::ELEMENT_OBJECT)
                                DOMElementImpl(&owner, nullptr)) {}
    Prototypes(DOMDocumentImpl& owner, const DOMElementImpl& engines)
        : element(engines), map(*Fields::attributesOf(engines)),
          attribute(*new (&owner, DOMMemoryManager::ATTR_OBJECT) DOMAttrImpl(&owner, nullptr)),
          text(*new (&owner, DOMMemoryManager::TEXT_OBJECT) DOMTextImpl(&owner, u"")) {}

    DOMAttrMapImpl* makeMap(void* place, DOMElementImpl& holder) const {
        DOMAttrMapImpl& made = map.copyTo(place);
        Fields::ownerOf(made) = &holder;
        return &made;
    }

    DOMElementImpl& makeElement(DOMDocumentImpl& owner, void* place, void* attributes,
                                void* defaults) const {
        DOMElementImpl& made = element.copyTo(place);
        Fields::makeOwnParent(made, owner);
        Fields::attributesOf(made) = makeMap(attributes, made);
        Fields::defaultsOf(made) = makeMap(defaults, made);
        return made;
    }

    DOMAttrImpl& makeAttribute(DOMDocumentImpl& owner, void* place) const {
        DOMAttrImpl& made = attribute.copyTo(place);
        Fields::makeOwnParent(made, owner);
        return made;
    }

    DOMTextImpl& makeText(DOMDocumentImpl& owner, void* place, void* buffer) const {
        DOMTextImpl& made = text.copyTo(place);
        Fields::makeOwn(made, owner);
        Fields::documentOf(made) = &owner;
        Fields::bufferOf(made) = static_cast<DOMBuffer*>(buffer);
        return made;
    }

    Mould<DOMElementImpl> element;
    Mould<DOMAttrMapImpl> map;
    Mould<DOMAttrImpl> attribute;
    Mould<DOMTextImpl> text;
};

PelXercesPrototypes::PelXercesPrototypes(DOMDocumentImpl& ownDocument)
    : document(ownDocument), known(prototypes()), freeBegin(Fields::freeBeginOf(document)),
      freeSize(Fields::freeSizeOf(document)) {
}

const PelXercesPrototypes::Prototypes& PelXercesPrototypes::prototypes() {
    static const Prototypes prototypes(PelXercesZeroedDocument().get());
    return prototypes;
}

bool PelXercesPrototypes::areRight(DOMDocumentImpl& owner, DOMElementImpl& element,
                                   DOMAttrImpl& attribute, DOMTextImpl& text) {
    DOMAttrMapImpl& attributes = *Fields::attributesOf(element);
    DOMAttrMapImpl& defaults = *Fields::defaultsOf(element);
    const Mould elementBefore(element);
    const Mould attributesBefore(attributes);
    const Mould defaultsBefore(defaults);
    const Mould attributeBefore(attribute);
    const Mould textBefore(text);
    const XMLCh* const name = Fields::nameOf(element);
    Fields::nameOf(prototypes().makeElement(owner, &element, &attributes, &defaults)) = name;
    Fields::nameOf(prototypes().makeAttribute(owner, &attribute)) = name;
    prototypes().makeText(owner, &text, Fields::bufferOf(text));
    return elementBefore.isSameAs(element) && attributesBefore.isSameAs(attributes) &&
           defaultsBefore.isSameAs(defaults) && attributeBefore.isSameAs(attribute) &&
           textBefore.isSameAs(text);
}

DOMElementImpl& PelXercesPrototypes::makeElement(const XMLCh* name) {
    constexpr std::size_t mapBegin = Fields::aligned(sizeof(DOMElementImpl));
    constexpr std::size_t mapSize = Fields::aligned(sizeof(DOMAttrMapImpl));
    auto* const place = static_cast<char*>(take(mapBegin + 2 * mapSize));
    DOMElementImpl& element =
        known.makeElement(document, place, place + mapBegin, place + mapBegin + mapSize);
    Fields::nameOf(element) = name;
    return element;
}

DOMTextImpl& PelXercesPrototypes::makeText(const XMLCh* units, std::size_t size) {
    constexpr std::size_t bufferBegin = Fields::aligned(sizeof(DOMTextImpl));
    auto* const place = static_cast<char*>(take(bufferBegin + sizeof(DOMBuffer)));
    auto* const copy = static_cast<XMLCh*>(take((size + 1) * sizeof(XMLCh)));
    std::memcpy(copy, units, size * sizeof(XMLCh));
    copy[size] = 0;
    new (place + bufferBegin) Fields::Buffer{copy, size, size, &document};
    return known.makeText(document, place, place + bufferBegin);
}

DOMAttrImpl& PelXercesPrototypes::addAttribute(DOMElementImpl& element, const XMLCh* name,
                                               DOMTextImpl& value) {
    DOMAttrImpl& attribute = known.makeAttribute(document, take(sizeof(DOMAttrImpl)));
    Fields::nameOf(attribute) = name;
    xercesc::DOMNodeImpl& node = Fields::nodeOf(attribute);
    Fields::ownerOf(node) = &element;
    node.isOwned(true);
    PelXercesLinks::append(attribute, value);
    added.push_back(&attribute);
    if (Fields::hasNumbers()) // which say in which order attributes were written
        Fields::numberOf(node) = static_cast<std::uint32_t>(added.size());
    return attribute;
}

bool PelXercesPrototypes::endAttributes(DOMAttrMapImpl& map) {
    if (added.empty())
        return true;
    if (added.size() > fewAttributes)
        std::sort(added.begin(), added.end(), isBefore);
    else
        for (auto next = added.begin() + 1; next < added.end(); ++next)
            for (auto at = next; at != added.begin() && isBefore(*at, *(at - 1)); --at)
                std::swap(*at, *(at - 1));
    auto* const place = take(sizeof(DOMNodeVector));
    auto** const nodes = static_cast<DOMNode**>(take(added.size() * sizeof(DOMNode*)));
    new (place) Fields::List{nodes, added.size(), added.size()};
    Fields::listOf(map) = static_cast<DOMNodeVector*>(place);
    std::copy(added.begin(), added.end(), nodes);
    const bool areDifferent =
        std::adjacent_find(added.begin(), added.end(), [](const auto* one, const auto* two) {
            return Fields::nameOf(*one) == Fields::nameOf(*two);
        }) == added.end();
    added.clear();
    return areDifferent;
}

// As the document's own allocate, which fills the same blocks.
void* PelXercesPrototypes::take(std::size_t size) {
    size = Fields::aligned(size);
    if (size > freeSize) {
        if (size > Fields::nextSizeOf(document) / partOfBlock)
            return document.allocate(size);
        freeSize = 0;
        document.allocate(sizeof(void*)); // begins a block
    }
    freeSize -= size;
    return std::exchange(freeBegin, freeBegin + size);
}
