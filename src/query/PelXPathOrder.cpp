// SPDX-License-Identifier: MIT
#include "query/PelXPathOrder.h"

#include "xerces/tree/PelXercesAttributeOrder.h"

#include <xercesc/dom/DOMAttr.hpp>

#include <algorithm>
#include <utility>

using Links = PelXercesLinks;
using Node = PelXPathTree::Node;

void PelXPathOrder::sort(std::vector<Node*>& nodes) {
    if (nodes.size() < 2 || sortFew(nodes))
        return;
    tree.count(nodes.size());
    std::vector<std::pair<std::uint64_t, Node*>> keyed;
    keyed.reserve(nodes.size());
    for (Node* const node : nodes)
        keyed.emplace_back(keyOf(*node), node);
    if (!std::is_sorted(keyed.begin(), keyed.end()))
        std::sort(keyed.begin(), keyed.end());
    keyed.erase(std::unique(keyed.begin(), keyed.end()), keyed.end());
    nodes.resize(keyed.size());
    for (std::size_t i = 0; i < nodes.size(); ++i)
        nodes[i] = keyed[i].second;
}

// False, with the nodes in any order, where there are too many or they lie too far apart.
bool PelXPathOrder::sortFew(std::vector<Node*>& nodes) {
    constexpr std::size_t few = 16;
    if (nodes.size() > few)
        return false;
    for (std::size_t i = 1; i < nodes.size(); ++i)
        for (std::size_t k = i; k > 0 && isBefore(nodes[k], nodes[k - 1]); --k)
            std::swap(nodes[k], nodes[k - 1]);
    if (patience == 0)
        return false;
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    return true;
}

std::size_t PelXPathOrder::depthOf(const Node& node) {
    std::size_t depth = 0;
    for (const Node* above = PelXPathTree::parentOf(node); above != nullptr && patience > 0;
         above = PelXPathTree::parentOf(*above), --patience)
        ++depth;
    return depth;
}

// Means nothing once patience is at its end.
bool PelXPathOrder::isBefore(Node* one, Node* other) {
    std::size_t depth = depthOf(*one);
    const std::size_t otherDepth = depthOf(*other);
    const bool isAbove = depth < otherDepth;
    for (std::size_t i = otherDepth; i > depth; --i)
        other = PelXPathTree::parentOf(*other);
    for (; depth > otherDepth; --depth)
        one = PelXPathTree::parentOf(*one);
    if (patience == 0 || one == other)
        return isAbove;
    for (;;) {
        Node* const above = PelXPathTree::parentOf(*one);
        Node* const otherAbove = PelXPathTree::parentOf(*other);
        if (above == nullptr) // the document, and the top of a tree that was taken from it
            return one->getNodeType() == Node::DOCUMENT_NODE;
        if (above == otherAbove)
            return isBeforeSibling(one, other);
        one = above;
        other = otherAbove;
    }
}

bool PelXPathOrder::isBeforeSibling(Node* one, Node* other) {
    const bool isAttribute = PelXPathTree::isAttribute(*one);
    if (isAttribute != PelXPathTree::isAttribute(*other))
        return isAttribute;
    if (isAttribute)
        return placeOf(*one) < placeOf(*other);
    const Node* behind = one;
    const Node* behindOther = other;
    for (; patience > 0 && behind != nullptr && behindOther != nullptr; --patience) {
        behind = behind->getNextSibling();
        behindOther = behindOther->getNextSibling();
        if (behind == other || behindOther == one)
            return behind == other;
    }
    return behindOther == nullptr;
}

// An element's attributes come behind it and before all that is in it.
std::uint64_t PelXPathOrder::keyOf(Node& node) {
    constexpr unsigned placeBits = 32;
    const bool isAttribute = PelXPathTree::isAttribute(node);
    Node& numbered = isAttribute ? *PelXPathTree::parentOf(node) : node;
    const std::uint32_t* number = numbers.find(&numbered);
    if (number == nullptr) {
        numberTree(numbered);
        number = numbers.find(&numbered);
    }
    const std::uint64_t key = std::uint64_t{*number} << placeBits;
    return isAttribute ? key + placeOf(node) : key;
}

void PelXPathOrder::numberTree(Node& member) {
    Node* top = &member;
    while (Node* const above = Links::parentOf(*top))
        top = above;
    for (Node* node = top; node != nullptr;) {
        tree.count();
        numbers.add(node, ++lastNumber);
        Node* next = Links::firstChildOf(*node);
        for (; next == nullptr && node != top; node = Links::parentOf(*node)) {
            next = Links::nextOf(*node);
            if (next != nullptr)
                break;
        }
        node = next;
    }
}

// From 1.
std::uint32_t PelXPathOrder::placeOf(Node& attribute) {
    if (const std::uint32_t* const known = numbers.find(&attribute))
        return *known;
    std::vector<xercesc::DOMAttr*> attributes;
    PelXercesAttributeOrder::list(*PelXPathTree::parentOf(attribute), attributes);
    tree.count(attributes.size());
    std::uint32_t place = 0;
    for (const xercesc::DOMAttr* const listed : attributes)
        numbers.add(listed, ++place);
    return *numbers.find(&attribute);
}
