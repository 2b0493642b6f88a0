// SPDX-License-Identifier: MIT
#include "xerces/engine/PelXercesLayoutCheck.h"

#include "xerces/engine/PelXercesLinks.h"

#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <cstring>
#include <initializer_list>

using Fields = PelXercesFields;
using xercesc::DOMNode;
using xercesc::DOMNodeImpl;

namespace {

constexpr const XMLCh* name = u"n";
constexpr const XMLCh* data = u"four";
constexpr std::size_t dataSize = 4;

constexpr std::uint16_t allMarks = 0xFFFF;
constexpr std::uint32_t largestNumber = 0xFFFFFFFF;

// Whether a part of the document's memory ends where the next begins. What may be no pointer is
// compared as a number.
bool endsAt(const void* part, std::size_t size, const void* next) {
    return reinterpret_cast<std::uintptr_t>(part) + Fields::aligned(size) ==
           reinterpret_cast<std::uintptr_t>(next);
}

template <class Node>
Node* as(DOMNode* node) {
    return static_cast<Node*>(node);
}

int usedFlags() {
    return DOMNodeImpl::READONLY | DOMNodeImpl::SYNCDATA | DOMNodeImpl::SYNCCHILDREN |
           DOMNodeImpl::OWNED | DOMNodeImpl::FIRSTCHILD | DOMNodeImpl::SPECIFIED |
           DOMNodeImpl::IGNORABLEWS | DOMNodeImpl::SETVALUE | DOMNodeImpl::ID_ATTR |
           DOMNodeImpl::USERDATA | DOMNodeImpl::LEAFNODETYPE | DOMNodeImpl::CHILDNODE |
           DOMNodeImpl::TOBERELEASED;
}

// The room behind a node's flags, which the engine leaves as it is and does not copy.
bool hasRoom(DOMNodeImpl& node, std::uint16_t marks, std::uint32_t number) {
    return Fields::marksOf(node) == marks &&
           (!Fields::hasNumbers() || Fields::numberOf(node) == number);
}
void setRoom(DOMNodeImpl& node) {
    Fields::marksOf(node) = allMarks;
    if (Fields::hasNumbers())
        Fields::numberOf(node) = largestNumber;
}

} // namespace

void PelXercesLayoutCheck::run() {
    static bool isDone = false;
    if (Fields::isKnownRelease && !isDone)
        Fields::areChecked = PelXercesLayoutCheck().succeeds();
    isDone = true;
}

PelXercesLayoutCheck::PelXercesLayoutCheck()
    : document(owner.get()), parent(as<xercesc::DOMElementImpl>(document.createElement(name))),
      element(as<xercesc::DOMElementImpl>(document.createElement(name))),
      attribute(as<xercesc::DOMAttrImpl>(document.createAttribute(name))),
      text(as<xercesc::DOMTextImpl>(document.createTextNode(data))),
      comment(as<xercesc::DOMCommentImpl>(document.createComment(data))),
      section(as<xercesc::DOMCDATASectionImpl>(document.createCDATASection(data))),
      instruction(as<xercesc::DOMProcessingInstructionImpl>(
          document.createProcessingInstruction(name, data))),
      type(as<xercesc::DOMDocumentTypeImpl>(document.createDocumentType(name))) {
}

// The tree comes last: what it is made with, and asked through, is known by then.
bool PelXercesLayoutCheck::succeeds() {
    return areSizesKnown() &&
           PelXercesPrototypes::areRight(document, *element, *attribute, *text) &&
           areNamesKnown() && isHeapKnown() && isTreeKnown();
}

// Without a call of the engine, which may not be the one that these nodes are for.
bool PelXercesLayoutCheck::areSizesKnown() const {
    return owner.sizeFrom(&document) == sizeof document && owner.holds(parent, sizeof *parent) &&
           owner.holds(element, sizeof *element) &&
           endsAt(element, sizeof *element, Fields::defaultsOf(*element)) &&
           endsAt(Fields::defaultsOf(*element), sizeof(xercesc::DOMAttrMapImpl),
                  Fields::attributesOf(*element)) &&
           endsAt(Fields::attributesOf(*element), sizeof(xercesc::DOMAttrMapImpl), attribute) &&
           endsAt(attribute, sizeof *attribute, text) && isDataKnown(*text, comment) &&
           isDataKnown(*comment, section) && isDataKnown(*section, instruction) &&
           owner.holds(instruction, sizeof *instruction) &&
           isDataKnown(*instruction, Fields::targetOf(*instruction)) &&
           owner.holds(type, sizeof *type);
}

// The node, its buffer and the units in that lie one behind the other.
template <class Node>
bool PelXercesLayoutCheck::isDataKnown(Node& node, const void* next) const {
    if (!owner.holds(&node, sizeof node))
        return false;
    const void* const buffer = Fields::bufferOf(node);
    Fields::Buffer parts;
    if (!endsAt(&node, sizeof node, buffer) || !owner.holds(buffer, sizeof parts))
        return false;
    static_assert(sizeof parts == sizeof(xercesc::DOMBuffer));
    std::memcpy(&parts, buffer, sizeof parts);
    return Fields::documentOf(node) == &document && parts.document == &document &&
           endsAt(buffer, sizeof parts, parts.units) && parts.size == dataSize &&
           owner.holds(parts.units, sizeof u"four") &&
           endsAt(parts.units, (parts.capacity + 1) * sizeof(XMLCh), next) &&
           std::memcmp(parts.units, data, sizeof u"four") == 0;
}

// The engine finds names, those that are added here too, once the table is larger. All nodes share
// one name.
bool PelXercesLayoutCheck::areNamesKnown() const {
    const std::size_t places = Fields::namePlacesOf(document);
    Fields::Name** const names = Fields::namesOf(document);
    if (places == 0 || owner.sizeFrom(names) / sizeof(void*) < places)
        return false;
    const Fields::Name* const first = names[xercesc::XMLString::hash(name, places)];
    if (!owner.holds(first, sizeof *first) || first->fNext != nullptr ||
        first->fString != Fields::nameOf(*attribute))
        return false;
    const XMLCh* const other = Fields::addName(document, u"other");
    Fields::growNameTable(document);
    return document.getPooledString(u"other") == other &&
           document.getPooledString(name) == first->fString && Fields::countNames(document) == 2;
}

bool PelXercesLayoutCheck::isHeapKnown() const {
    char* const begin = Fields::freeBeginOf(document);
    const std::size_t size = Fields::freeSizeOf(document);
    constexpr std::size_t least = Fields::aligned(1);
    return owner.sizeFrom(begin) == size && document.allocate(1) == begin &&
           Fields::freeBeginOf(document) == begin + least &&
           Fields::freeSizeOf(document) == size - least && Fields::nextSizeOf(document) > size;
}

// What is linked here, the engine finds, and goes on with.
bool PelXercesLayoutCheck::isTreeKnown() const {
    if (Fields::firstChildOf(*parent) != nullptr || &Fields::nodeOf(*type) != type->getNodeImpl() ||
        &Fields::linksOf(*type) != type->getChildNodeImpl() ||
        &Fields::parentOf(document) != document.getParentNodeImpl() ||
        (usedFlags() & (Fields::isOrphan | Fields::isHeld)) != 0)
        return false;

    PelXercesPrototypes nodes(document);
    const XMLCh* const pooled = document.getPooledString(name);
    xercesc::DOMElementImpl& removed = nodes.makeElement(pooled);
    const xercesc::DOMAttrImpl& own =
        nodes.addAttribute(removed, pooled, nodes.makeText(data, dataSize));
    nodes.endAttributes(*Fields::attributesOf(removed));
    const xercesc::DOMNamedNodeMap& map = *removed.getAttributes();
    if (map.getLength() != 1 || map.item(0) != &own || own.getOwnerElement() != &removed ||
        !own.getSpecified() || !xercesc::XMLString::equals(removed.getAttribute(name), data))
        return false;

    const std::initializer_list<DOMNode*> children{element, text, comment, section, instruction};
    for (DOMNode* const child : children)
        setRoom(Fields::nodeOf(*child));
    PelXercesLinks::append(*parent, *text);
    PelXercesLinks::append(*parent, *section);
    PelXercesLinks::insert(*parent, removed, text);
    PelXercesLinks::insert(*parent, *element, text);
    PelXercesLinks::insert(*parent, *comment, section);
    PelXercesLinks::insert(*parent, *instruction, nullptr);
    PelXercesLinks::remove(*parent, removed);
    const DOMNode* previous = nullptr;
    const DOMNode* next = parent->getFirstChild();
    for (DOMNode* const child : children) {
        if (next != child || child->getPreviousSibling() != previous ||
            child->getParentNode() != parent)
            return false;
        previous = child;
        next = child->getNextSibling();
    }
    if (next != nullptr || removed.getParentNode() != nullptr)
        return false;
    parent->appendChild(element);
    Fields::baseOf(*instruction) = data;
    return element->getPreviousSibling() == instruction && parent->getFirstChild() == text &&
           Fields::linksOf(*text).previousSibling == element &&
           instruction->getTarget() == Fields::targetOf(*instruction) &&
           instruction->getBaseURI() == data &&
           std::all_of(children.begin(), children.end(), [](DOMNode* child) {
               return hasRoom(Fields::nodeOf(*child->cloneNode(false)), 0, 0) &&
                      hasRoom(Fields::nodeOf(*child), allMarks, largestNumber);
           });
}
