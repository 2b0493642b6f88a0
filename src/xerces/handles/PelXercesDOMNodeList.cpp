// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMNodeList.h"

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelXercesWalk.h"

#include <qrndom/PelDOMNode.h>

#include <algorithm>

using xercesc::DOMNode;

namespace {

// Children to fetch ahead for: beyond these, what is fetched is evicted before it is used.
constexpr std::size_t fewChildren = 64;

// Steps that every list may spend on changes, and on finding their side.
constexpr std::size_t fewSteps = 64;

enum Side { IN_FRONT, BEHIND, UNKNOWN };

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

/// In front of `next`, a child of `parent`, or behind the last child when that is null.
struct Place {
    const DOMNode* parent;
    const DOMNode* next;
};

// How deep a node is below another one, 0 for that itself; `nowhere` if it is not there.
std::size_t depthBelow(const DOMNode& root, const DOMNode* node) {
    std::size_t depth = 0;
    for (; node != &root; node = node->getParentNode(), ++depth)
        if (node == nullptr)
            return nowhere;
    return depth;
}

// The side of a sibling seen from another one, searched from both in both directions.
Side sideOfSibling(const DOMNode* one, const DOMNode* other, std::size_t& reach) {
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
            return IN_FRONT;
        if (oneBack == other || oneAhead == nullptr || otherAhead == one || otherBack == nullptr)
            return BEHIND;
    }
    return UNKNOWN;
}

// The side of a place, seen from another one below the same root; the same place counts as in
// front. Takes the steps from sibling to sibling from `reach`; unknown when these do not suffice.
Side sideOf(Place place, Place other, const DOMNode& root, std::size_t& reach) {
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

} // namespace

PelXercesListPlace::PelXercesListPlace(const PelXercesSelected& listed,
                                       const PelXercesListPlace& other)
    : selected(listed), pooledName(other.pooledName), isFollowing(other.isFollowing),
      knownCount(other.knownCount), spent(other.spent), allowance(other.allowance),
      above(other.above), next(other.next), placeIndex(other.placeIndex), reach(other.reach) {
    if (isFollowing)
        selected.root.getTree().changes.add(*this);
}

std::size_t PelXercesListPlace::count() {
    spent = 0;
    if (isFollowing)
        return knownCount;
    allowance = countNodes() + fewSteps;
    isFollowing = true;
    selected.root.getTree().changes.add(*this);
    return knownCount;
}

// Returns how many nodes were looked at.
std::size_t PelXercesListPlace::countNodes() {
    const DOMNode& root = *selected.root.getNode();
    std::size_t seen = 0;
    if (!isOfChildren()) {
        knownCount = 0;
        for (DOMNode* node = root.getFirstChild(); node != nullptr;
             node = PelXercesWalk::nextInTree(root, node), ++seen)
            if (matches(*node))
                ++knownCount;
        return seen;
    }
    seen = selected.root.getTree().knownChildCount(root);
    if (seen == 0)
        for (DOMNode* node = root.getFirstChild(); node != nullptr;
             node = PelXercesLinks::nextOf(*node)) {
            if (seen - 1 < fewChildren)
                PelXercesLinks::fetchBehind(*node);
            ++seen;
        }
    knownCount = seen;
    return seen;
}

DOMNode* PelXercesListPlace::nodeAt(std::size_t index) {
    if (above == nullptr || index < placeIndex / 2)
        beginAt(selected.root->getFirstChild(), 0);
    if (index > placeIndex && knownCount - 1 - index < index - placeIndex)
        beginAt(nullptr, knownCount);
    if (index < placeIndex)
        goBackTo(index);
    else
        goForwardTo(index);
    reach = std::min(placeIndex, knownCount - placeIndex) + fewSteps;
    PelXercesLinks::fetch(PelXercesLinks::nextOf(*next));
    return next;
}

void PelXercesListPlace::beginAt(DOMNode* node, std::size_t index) {
    above = selected.root.getNode();
    next = node;
    placeIndex = index;
}

void PelXercesListPlace::goForwardTo(std::size_t index) {
    if (isOfChildren()) {
        for (; placeIndex < index; ++placeIndex)
            next = PelXercesLinks::nextOf(*next);
        return;
    }
    for (;;) {
        while (next == nullptr) {
            next = PelXercesLinks::nextOf(*above);
            above = above->getParentNode();
        }
        if (matches(*next) && placeIndex++ == index)
            break;
        DOMNode* const child = next->getFirstChild();
        if (child != nullptr)
            above = next;
        next = child != nullptr ? child : PelXercesLinks::nextOf(*next);
    }
    placeIndex = index;
}

void PelXercesListPlace::goBackTo(std::size_t index) {
    while (placeIndex > index) {
        DOMNode* before = next != nullptr ? next->getPreviousSibling() : above->getLastChild();
        if (before != nullptr && !isOfChildren())
            while (DOMNode* const child = before->getLastChild()) {
                above = before;
                before = child;
            }
        next = before;
        if (next == nullptr) {
            next = above;
            above = above->getParentNode();
        }
        if (isOfChildren() || matches(*next))
            --placeIndex;
    }
}

bool PelXercesListPlace::matches(const DOMNode& node) const {
    return PelXercesWalk::isElement(node, selected.name, pooledName);
}

bool PelXercesListPlace::matches(const XMLCh* tagName) const {
    return tagName != nullptr && (selected.name == u"*" || tagName == selected.name);
}

void PelXercesListPlace::follow(const Change& change) noexcept {
    if (!hasPatience(1))
        return;
    if (isOfChildren())
        followChild(change);
    else if (change.kind == Change::RENAMING)
        followRenaming(change);
    else
        followElement(change);
}

void PelXercesListPlace::followChild(const Change& change) noexcept {
    if (change.kind == Change::RENAMING || change.parent != selected.root.getNode())
        return;
    if (change.kind == Change::REMOVAL && change.node == next) {
        next = change.next;
        --knownCount;
    } else {
        add(change, 1);
    }
}

void PelXercesListPlace::followElement(const Change& change) noexcept {
    const bool isRemoval = change.kind == Change::REMOVAL;
    const bool isAtPlace = isRemoval && (change.node == above || change.node == next);
    if ((change.isLeaf && !isAtPlace && !matches(change.name)) || !isInside(change))
        return;
    std::size_t number = 0;
    bool takesPlace = false;
    for (DOMNode* node = change.node; node != nullptr;
         node = PelXercesWalk::nextInTree(*change.node, node)) {
        takesPlace = takesPlace || node == above;
        if (matches(*node))
            ++number;
        if (!hasPatience(1))
            return;
    }
    if (takesPlace) {
        const DOMNode* const end =
            next != nullptr ? next : PelXercesWalk::nextBehind(*change.node, above);
        for (DOMNode* node = change.node; node != end;
             node = PelXercesWalk::nextInTree(*change.node, node))
            if (matches(*node))
                --placeIndex;
    }
    if (takesPlace || isAtPlace) {
        above = change.parent;
        next = change.next;
        knownCount -= number;
    } else if (number != 0) {
        add(change, number);
    }
}

// The place of an element counts as in front of its first child.
void PelXercesListPlace::followRenaming(const Change& change) noexcept {
    const bool hasMatched = matches(change.formerName);
    if (change.node == selected.root.getNode() || hasMatched == matches(change.name) ||
        !isInside(change))
        return;
    Change begin = change;
    begin.kind = hasMatched ? Change::REMOVAL : Change::INSERTION;
    begin.parent = change.node;
    begin.next = change.node->getFirstChild();
    add(begin, 1);
}

// `number` nodes of the list have come or gone.
void PelXercesListPlace::add(const Change& change, std::size_t number) noexcept {
    const bool isRemoval = change.kind == Change::REMOVAL;
    if (above != nullptr) {
        const Side side =
            sideOf({change.parent, change.next}, {above, next}, *selected.root.getNode(), reach);
        if (side == UNKNOWN)
            above = nullptr;
        else if (side == IN_FRONT)
            placeIndex = isRemoval ? placeIndex - number : placeIndex + number;
    }
    knownCount = isRemoval ? knownCount - number : knownCount + number;
}

// Whether a change is below the list's root. Most are next to the place.
bool PelXercesListPlace::isInside(const Change& change) noexcept {
    const DOMNode* const root = selected.root.getNode();
    const DOMNode* const parent = change.parent;
    if (parent == root || (parent != nullptr && (parent == above || parent == next)))
        return true;
    if (change.node != root && (change.node == above || change.node == next))
        return true;
    const std::size_t depth = depthBelow(*root, parent);
    return depth != nowhere && hasPatience(depth);
}

bool PelXercesListPlace::hasPatience(std::size_t steps) noexcept {
    spent += steps;
    if (spent > allowance)
        forget();
    return isFollowing;
}

void PelXercesListPlace::forget() noexcept {
    if (isFollowing)
        selected.root.getTree().changes.drop(*this);
    isFollowing = false;
    above = nullptr;
    next = nullptr;
}

PelDOM::Error PelXercesDOMNodeList::item(long index, PelDOMNode& out) {
    if (index < 0 || index >= length())
        return PelDOM::INDEX_OUT_OF_RANGE;
    PelXercesDOMNode::give(selected.root, place.nodeAt(static_cast<std::size_t>(index)), out);
    return PelDOM::SUCCESS;
}

long PelXercesDOMNodeList::length() {
    return static_cast<long>(place.count());
}

PelDOMNodeListImp* PelXercesDOMNodeList::clone() {
    return new PelXercesDOMNodeList(*this);
}

// Every list of the library is of this class.
bool PelXercesDOMNodeList::isSameList(const PelDOMListImp& other) const noexcept {
    const auto& list = static_cast<const PelXercesDOMNodeList&>(other).selected;
    return selected.root.getNode() == list.root.getNode() && selected.kind == list.kind &&
           selected.name == list.name;
}

std::shared_ptr<PelDOMCursor> PelXercesDOMNodeList::walk() const {
    return std::make_shared<PelXercesCursor>(selected);
}
