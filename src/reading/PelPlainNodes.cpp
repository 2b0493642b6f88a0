// SPDX-License-Identifier: MIT
#include "reading/PelPlainNodes.h"

#include "xerces/PelXercesMemory.h"
#include "xerces/PelXercesTree.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/impl/DOMStringPool.hpp>

#include <cstring>
#include <new>
#include <utility>

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

// The document's block of memory that is being filled, and the size of the next.
struct Heap : DOMDocumentImpl {
    static char*& freeBeginOf(DOMDocumentImpl& document) { return document.*(&Heap::fFreePtr); }
    static XMLSize_t& freeSizeOf(DOMDocumentImpl& document) {
        return document.*(&Heap::fFreeBytesRemaining);
    }
    static XMLSize_t nextSizeOf(const DOMDocumentImpl& document) {
        return document.*(&Heap::fHeapAllocSize);
    }
};

struct Map : DOMAttrMapImpl {
    static DOMNodeVector*& listOf(DOMAttrMapImpl& map) { return map.*(&Map::fNodes); }
    static DOMNode*& ownerOf(DOMAttrMapImpl& map) { return map.*(&Map::fOwnerNode); }
};

struct ChildList : xercesc::DOMNodeListImpl {
    static void setParent(DOMNodeListImpl& list, xercesc::DOMParentNode& parent) {
        list.*(&ChildList::fNode) = &parent;
    }
};

// What a DOMBuffer and a DOMNodeVector consist of.
struct Buffer {
    XMLCh* units;
    XMLSize_t size;
    XMLSize_t capacity;
    DOMDocumentImpl* document;
};
struct List {
    DOMNode** nodes;
    XMLSize_t capacity;
    XMLSize_t size;
};

template <class Node>
const void* bytesOf(const Node& node) {
    return &node;
}

template <class Node>
class Mould {
public:
    explicit Mould(const Node& node) { std::memcpy(bytes, bytesOf(node), sizeof bytes); }

    Node& copyTo(void* place) const {
        std::memcpy(place, bytes, sizeof bytes);
        return *static_cast<Node*>(place);
    }

private:
    alignas(Node) unsigned char bytes[sizeof(Node)];
};

template <class Node>
void setOwn(Node& node, DOMDocumentImpl& document) {
    node.fNode.fContainingNode = &node;
    node.fNode.fOwnerNode = &document;
}

template <class Parent>
void setParts(Parent& node, DOMDocumentImpl& document) {
    setOwn(node, document);
    node.fParent.fContainingNode = &node;
    node.fParent.fOwnerDocument = &document;
    ChildList::setParent(node.fParent.fChildNodeList, node.fParent);
}

constexpr std::size_t aligned(std::size_t size) {
    return (size + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*);
}

// So that what lies between members is the same in all nodes.
class ZeroedMemory final : public PelXercesMemory {
public:
    void* allocate(XMLSize_t size) override {
        return std::memset(PelXercesMemory::allocate(size), 0, size);
    }
};

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

template <class Fields, class Node>
Fields fieldsOf(const Node& node) {
    static_assert(sizeof(Fields) == sizeof(Node));
    Fields fields;
    std::memcpy(&fields, bytesOf(node), sizeof fields);
    return fields;
}

PelXercesDocumentPtr zeroedDocument() {
    static ZeroedMemory memory;
    return PelXercesDocumentPtr(
        xercesc::DOMImplementation::getImplementation()->createDocument(&memory));
}

DOMDocumentImpl& implementationOf(const PelXercesDocumentPtr& document) {
    return static_cast<DOMDocumentImpl&>(*document);
}

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

struct PelPlainNodes::Moulds {
    explicit Moulds(DOMDocumentImpl& owner) : Moulds(owner, enginesElement(owner)) {}
    Moulds(DOMDocumentImpl& owner, const DOMElementImpl& engines)
        : element(engines), map(*engines.fAttributes), attribute(enginesAttribute(owner)),
          text(enginesText(owner, u"")) {}

    DOMAttrMapImpl* makeMap(void* place, DOMElementImpl& holder) const {
        DOMAttrMapImpl& made = map.copyTo(place);
        Map::ownerOf(made) = &holder;
        return &made;
    }

    DOMElementImpl& makeElement(DOMDocumentImpl& owner, void* place, void* attributes,
                                void* defaults) const {
        DOMElementImpl& made = element.copyTo(place);
        setParts(made, owner);
        made.fAttributes = makeMap(attributes, made);
        made.fDefaultAttributes = makeMap(defaults, made);
        return made;
    }

    DOMAttrImpl& makeAttribute(DOMDocumentImpl& owner, void* place) const {
        DOMAttrImpl& made = attribute.copyTo(place);
        setParts(made, owner);
        return made;
    }

    DOMTextImpl& makeText(DOMDocumentImpl& owner, void* place, void* buffer) const {
        DOMTextImpl& made = text.copyTo(place);
        setOwn(made, owner);
        made.fCharacterData.fDoc = &owner;
        made.fCharacterData.fDataBuf = static_cast<DOMBuffer*>(buffer);
        return made;
    }

    Mould<DOMElementImpl> element;
    Mould<DOMAttrMapImpl> map;
    Mould<DOMAttrImpl> attribute;
    Mould<DOMTextImpl> text;
};

PelPlainNodes::PelPlainNodes(DOMDocumentImpl& ownDocument)
    : document(ownDocument), known(moulds()), freeBegin(Heap::freeBeginOf(document)),
      freeSize(Heap::freeSizeOf(document)) {
}

const PelPlainNodes::Moulds& PelPlainNodes::moulds() {
    static const Moulds moulds(implementationOf(zeroedDocument()));
    return moulds;
}

bool PelPlainNodes::areKnown() {
    static const bool isProven = [] {
        const PelXercesDocumentPtr sample = zeroedDocument();
        DOMDocumentImpl& owner = implementationOf(sample);
        DOMElementImpl& element = enginesElement(owner);
        DOMAttrImpl& attribute = enginesAttribute(owner);
        DOMTextImpl& text = enginesText(owner, u"four");
        const Before elementBefore(element);
        const Before mapBefore(*element.fAttributes);
        const Before defaultsBefore(*element.fDefaultAttributes);
        const Before attributeBefore(attribute);
        const Before textBefore(text);
        moulds().makeElement(owner, &element, element.fAttributes, element.fDefaultAttributes);
        moulds().makeAttribute(owner, &attribute);
        moulds().makeText(owner, &text, text.fCharacterData.fDataBuf);
        const DOMBuffer& buffer = *text.fCharacterData.fDataBuf;
        const auto bufferFields = fieldsOf<Buffer>(buffer);
        DOMNodeVector list(&owner, 2);
        list.addElement(&element);
        const auto listFields = fieldsOf<List>(list);
        return elementBefore.isAsNow() && mapBefore.isAsNow() && defaultsBefore.isAsNow() &&
               attributeBefore.isAsNow() && textBefore.isAsNow() &&
               bufferFields.units == buffer.getRawBuffer() && bufferFields.size == 4 &&
               bufferFields.capacity == buffer.getCapacity() && bufferFields.document == &owner &&
               listFields.nodes[0] == &element && listFields.capacity == 2 && listFields.size == 1;
    }();
    return isProven;
}

DOMElementImpl& PelPlainNodes::makeElement() {
    constexpr std::size_t mapBegin = aligned(sizeof(DOMElementImpl));
    constexpr std::size_t mapSize = aligned(sizeof(DOMAttrMapImpl));
    auto* const place = static_cast<char*>(take(mapBegin + 2 * mapSize));
    return known.makeElement(document, place, place + mapBegin, place + mapBegin + mapSize);
}

DOMAttrImpl& PelPlainNodes::makeAttribute() {
    return known.makeAttribute(document, take(sizeof(DOMAttrImpl)));
}

DOMTextImpl& PelPlainNodes::makeText(const XMLCh* units, std::size_t size) {
    constexpr std::size_t bufferBegin = aligned(sizeof(DOMTextImpl));
    auto* const place = static_cast<char*>(take(bufferBegin + sizeof(DOMBuffer)));
    auto* const copy = static_cast<XMLCh*>(take((size + 1) * sizeof(XMLCh)));
    std::memcpy(copy, units, size * sizeof(XMLCh));
    copy[size] = 0;
    new (place + bufferBegin) Buffer{copy, size, size, &document};
    return known.makeText(document, place, place + bufferBegin);
}

DOMNode** PelPlainNodes::makeAttributeList(DOMAttrMapImpl& map, std::size_t size) {
    auto* const place = take(sizeof(DOMNodeVector));
    auto** const nodes = static_cast<DOMNode**>(take(size * sizeof(DOMNode*)));
    new (place) List{nodes, size, size};
    Map::listOf(map) = static_cast<DOMNodeVector*>(place);
    return nodes;
}

// As the document's own allocate, which fills the same blocks.
void* PelPlainNodes::take(std::size_t size) {
    size = aligned(size);
    if (size > freeSize) {
        if (size > Heap::nextSizeOf(document) / partOfBlock)
            return document.allocate(size);
        freeSize = 0;
        document.allocate(sizeof(void*)); // begins a block
    }
    freeSize -= size;
    return std::exchange(freeBegin, freeBegin + size);
}
