// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesKeptSource.h"

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelSourceMarkup.h"

#include <algorithm>

using Fields = PelXercesFields;
using xercesc::DOMNode;

namespace {

// Null where numbers are kept in a table.
xercesc::DOMNodeImpl* innerOf(const DOMNode& node) {
    if (!Fields::areNumbered())
        return nullptr;
    auto& changing = const_cast<DOMNode&>(node);
    switch (PelXercesLinks::typeOf(node)) {
    case DOMNode::ELEMENT_NODE:
        return &Fields::nodeOf(static_cast<xercesc::DOMElementImpl&>(changing));
    case DOMNode::TEXT_NODE:
        return &Fields::nodeOf(static_cast<xercesc::DOMTextImpl&>(changing));
    case DOMNode::ATTRIBUTE_NODE:
        return &Fields::nodeOf(static_cast<xercesc::DOMAttrImpl&>(changing));
    case DOMNode::DOCUMENT_NODE:
        return &Fields::nodeOf(static_cast<xercesc::DOMDocumentImpl&>(changing));
    default:
        return &Fields::nodeOf(changing);
    }
}

} // namespace

const PelXercesKeptSource::Place* PelXercesKeptSource::placeOf(const DOMNode& node) const {
    const std::size_t number = numberOf(node);
    return number != 0 ? &places[number - 1] : nullptr;
}

void PelXercesKeptSource::noteChange(DOMNode& node) {
    mark(node, changed);
    auto* const owner = node.getNodeType() == DOMNode::ATTRIBUTE_NODE
                            ? static_cast<xercesc::DOMAttr&>(node).getOwnerElement()
                            : node.getParentNode();
    if (owner != nullptr)
        markUpFrom(*owner);
}

void PelXercesKeptSource::noteChildren(DOMNode& parent) {
    mark(parent, otherChildren);
    markUpFrom(parent);
}

// What is above a node that is marked already is marked too, unless the node was moved since.
void PelXercesKeptSource::markUpFrom(DOMNode& lowest) {
    isAnyChanged = true;
    for (DOMNode* node = &lowest; node != nullptr && !hasMark(*node, changedBelow);
         node = node->getParentNode())
        mark(*node, changedBelow);
}

bool PelXercesKeptSource::standsAlone(const DOMNode& node) const {
    const std::size_t number = numberOf(node);
    if (number == 0)
        return false;
    const std::size_t begin = places[number - 1].begin;
    if (node.getNodeType() != DOMNode::TEXT_NODE)
        return text[begin] == '<';
    return (number == 1 || places[number - 2].begin != begin) &&
           (number == places.size() || places[number].begin != begin);
}

std::pair<unsigned long, unsigned long> PelXercesKeptSource::positionOf(const DOMNode& node) const {
    const std::size_t number = numberOf(node);
    const Place place = places[number - 1];
    const bool isFirst = number == 1 || places[number - 2].begin != place.begin;
    const std::size_t byte = isFirst || standsAlone(node)
                                 ? place.begin
                                 : PelSourceMarkup::findReference(text, place.begin, place.end);
    if (lineStarts.empty()) {
        lineStarts.push_back(0);
        for (std::size_t at = 0; (at = text.find_first_of("\r\n", at)) != text.npos;) {
            at += text.compare(at, 2, "\r\n") == 0 ? 2 : 1;
            lineStarts.push_back(static_cast<std::uint32_t>(at));
        }
    }
    const auto line = std::upper_bound(lineStarts.begin(), lineStarts.end(), byte);
    const auto first = text.begin() + *(line - 1);
    const auto characters = std::count_if(first, text.begin() + static_cast<long>(byte),
                                          [](char unit) { return (unit & 0xC0) != 0x80; });
    const bool hasMark = line - 1 == lineStarts.begin() && text.compare(0, 3, "\xEF\xBB\xBF") == 0;
    return {static_cast<unsigned long>(line - lineStarts.begin()),
            static_cast<unsigned long>(characters + (hasMark ? 0 : 1))};
}

PelXercesKeptSource::Known PelXercesKeptSource::knownOf(const DOMNode& node) const {
    if (auto* const inner = innerOf(node))
        return {Fields::numberOf(*inner), Fields::marksOf(*inner)};
    const auto found = withoutFields.find(&node);
    return found != withoutFields.end() ? found->second : Known();
}

void PelXercesKeptSource::setKnown(const DOMNode& node, Known known) {
    if (auto* const inner = innerOf(node)) {
        Fields::numberOf(*inner) = known.number;
        Fields::marksOf(*inner) = known.marks;
    } else {
        withoutFields[&node] = known;
    }
}

bool PelXercesKeptSource::hasMark(const DOMNode& node, Mark mark) const {
    return (knownOf(node).marks & mark) != 0;
}

void PelXercesKeptSource::mark(DOMNode& node, Mark mark) {
    Known known = knownOf(node);
    known.marks = static_cast<std::uint16_t>(known.marks | mark);
    setKnown(node, known);
    isAnyChanged = true;
}
