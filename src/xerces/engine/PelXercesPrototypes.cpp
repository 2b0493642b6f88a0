// SPDX-License-Identifier: MIT
#include "xerces/engine/PelXercesPrototypes.h"

#include "xerces/engine/PelXercesLayoutCheck.h"

#include <cstring>
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

template <class Node>
const void* bytesOf(const Node& node) {
    return &node;
}

// What a node was before it was made anew at its place, to compare it with.
template <class Node>
class Before {
public:
    explicit Before(const Node& node) : place(bytesOf(node)) {
        std::memcpy(bytes, place, sizeof bytes);
    }
    bool isAsNow() const { return std::memcmp(bytes, place, sizeof bytes) == 0; }

private:
    const void* place;
    unsigned char bytes[sizeof(Node)];
};

// The engine's own way to make a node.
DOMElementImpl& enginesElement(DOMDocumentImpl& document) {
    return *new (&document, DOMMemoryManager::ELEMENT_OBJECT) DOMElementImpl(&document, nullptr);
}
DOMAttrImpl& enginesAttribute(DOMDocumentImpl& document) {
    return *new (&document, DOMMemoryManager::ATTR_OBJECT) DOMAttrImpl(&document, nullptr);
}
DOMTextImpl& enginesText(DOMDocumentImpl& document, const XMLCh* units) {
    return *new (&document, DOMMemoryManager::TEXT_OBJECT) DOMTextImpl(&document, units);
}

} // namespace

template <class Node>
class PelXercesPrototypes::Mould {
public:
    explicit Mould(const Node& node) { std::memcpy(bytes, bytesOf(node), sizeof bytes); }

    Node& copyTo(void* place) const {
        std::memcpy(place, bytes, sizeof bytes);
        return *static_cast<Node*>(place);
    }

private:
    alignas(Node) unsigned char bytes[sizeof(Node)];
};

struct PelXercesPrototypes::Prototypes {
    explicit Prototypes(DOMDocumentImpl& owner) : Prototypes(owner, enginesElement(owner)) {}
    Prototypes(DOMDocumentImpl& owner, const DOMElementImpl& engines)
        : element(engines), map(*Fields::attributesOf(engines)), attribute(enginesAttribute(owner)),
          text(enginesText(owner, u"")) {}

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

bool PelXercesPrototypes::areRight(DOMDocumentImpl& owner) {
    DOMElementImpl& element = enginesElement(owner);
    DOMAttrImpl& attribute = enginesAttribute(owner);
    DOMTextImpl& text = enginesText(owner, u"four");
    DOMAttrMapImpl& attributes = *Fields::attributesOf(element);
    DOMAttrMapImpl& defaults = *Fields::defaultsOf(element);
    const Before elementBefore(element);
    const Before attributesBefore(attributes);
    const Before defaultsBefore(defaults);
    const Before attributeBefore(attribute);
    const Before textBefore(text);
    prototypes().makeElement(owner, &element, &attributes, &defaults);
    prototypes().makeAttribute(owner, &attribute);
    prototypes().makeText(owner, &text, Fields::bufferOf(text));
    return elementBefore.isAsNow() && attributesBefore.isAsNow() && defaultsBefore.isAsNow() &&
           attributeBefore.isAsNow() && textBefore.isAsNow();
}

DOMElementImpl& PelXercesPrototypes::makeElement() {
    constexpr std::size_t mapBegin = Fields::aligned(sizeof(DOMElementImpl));
    constexpr std::size_t mapSize = Fields::aligned(sizeof(DOMAttrMapImpl));
    auto* const place = static_cast<char*>(take(mapBegin + 2 * mapSize));
    return known.makeElement(document, place, place + mapBegin, place + mapBegin + mapSize);
}

DOMAttrImpl& PelXercesPrototypes::makeAttribute() {
    return known.makeAttribute(document, take(sizeof(DOMAttrImpl)));
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

DOMNode** PelXercesPrototypes::makeAttributeList(DOMAttrMapImpl& map, std::size_t size) {
    auto* const place = take(sizeof(DOMNodeVector));
    auto** const nodes = static_cast<DOMNode**>(take(size * sizeof(DOMNode*)));
    new (place) Fields::List{nodes, size, size};
    Fields::listOf(map) = static_cast<DOMNodeVector*>(place);
    return nodes;
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
