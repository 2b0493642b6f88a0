// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesOrder.h"

using xercesc::DOMNode;

namespace {

// Of two siblings, looked for from both in both directions.
PelXercesOrder::Side sideOfSibling(const DOMNode* one, const DOMNode* other, std::size_t& reach) {
    const DOMNode* oneAhead = one;
    const DOMNode* oneBack = one;
    const DOMNode* otherAhead = other;
    const DOMNode* otherBack = other;
    for (; reach > 0; --reach) {
        oneAhead = oneAhead->getNextSibling();
        oneBack = oneBack->getPreviousSibling();
        otherAhead = otherAhead->getNextSibling();
        otherBack = otherBack->getPreviousSibling();
        if (oneAhead == other || oneBack == nullptr || otherBack == one || otherAhead == nullptr)
            return PelXercesOrder::IN_FRONT;
        if (oneBack == other || oneAhead == nullptr || otherAhead == one || otherBack == nullptr)
            return PelXercesOrder::BEHIND;
    }
    return PelXercesOrder::UNKNOWN;
}

} // namespace

std::size_t PelXercesOrder::depthBelow(const DOMNode& root, const DOMNode* node) {
    std::size_t depth = 0;
    for (; node != &root; node = node->getParentNode(), ++depth)
        if (node == nullptr)
            return nowhere;
    return depth;
}

PelXercesOrder::Side PelXercesOrder::sideOf(Place place, Place other, const DOMNode& root,
                                            std::size_t& reach) {
    if (place.parent == other.next)
        return BEHIND;
    if (place.next == other.parent)
        return IN_FRONT;
    const auto goUp = [](Place& from) {
        from.next = from.parent;
        from.parent = from.parent->getParentNode();
    };
    const DOMNode* const start = place.parent;
    if (place.parent != other.parent) {
        std::size_t depth = depthBelow(root, place.parent);
        std::size_t otherDepth = depthBelow(root, other.parent);
        for (; depth > otherDepth; --depth)
            goUp(place);
        for (; otherDepth > depth; --otherDepth)
            goUp(other);
        for (; place.parent != other.parent; goUp(other))
            goUp(place);
    }
    // One may be in front of the node that the other is in.
    if (place.next == other.next)
        return place.parent == start ? IN_FRONT : BEHIND;
    if (place.next == nullptr || other.next == nullptr)
        return place.next == nullptr ? BEHIND : IN_FRONT;
    return sideOfSibling(place.next, other.next, reach);
}
