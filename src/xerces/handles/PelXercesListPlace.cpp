// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesListPlace.h"

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesOrder.h"
#include "xerces/tree/PelXercesWalk.h"

#include <algorithm>

using xercesc::DOMNode;

namespace {

// As many children lie close to one another. What is fetched for more is gone before it is used.
constexpr std::size_t fewChildren = 64;

// Steps that any list may take for changes, and for the side on which one is.
constexpr std::size_t fewSteps = 64;

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

// Answers how many nodes that is to be looked at.
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

// An element begins in front of its first child.
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

// As many nodes of the list have come or gone.
void PelXercesListPlace::add(const Change& change, std::size_t number) noexcept {
    const bool isRemoval = change.kind == Change::REMOVAL;
    if (above != nullptr) {
        const PelXercesOrder::Side side = PelXercesOrder::sideOf(
            {change.parent, change.next}, {above, next}, *selected.root.getNode(), reach);
        if (side == PelXercesOrder::UNKNOWN)
            above = nullptr;
        else if (side == PelXercesOrder::IN_FRONT)
            placeIndex = isRemoval ? placeIndex - number : placeIndex + number;
    }
    knownCount = isRemoval ? knownCount - number : knownCount + number;
}

// Whether that is below the list's root. It is where the place is, most often.
bool PelXercesListPlace::isInside(const Change& change) noexcept {
    const DOMNode* const root = selected.root.getNode();
    const DOMNode* const parent = change.parent;
    if (parent == root || (parent != nullptr && (parent == above || parent == next)))
        return true;
    if (change.node != root && (change.node == above || change.node == next))
        return true;
    const std::size_t depth = PelXercesOrder::depthBelow(*root, parent);
    return depth != PelXercesOrder::nowhere && hasPatience(depth);
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
