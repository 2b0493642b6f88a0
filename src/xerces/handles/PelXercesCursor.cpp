// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesCursor.h"

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelXercesWalk.h"

#include <utility>

using xercesc::DOMNode;

PelXercesCursor::PelXercesCursor(PelXercesSelected nodes)
    : selected(std::move(nodes)), next(selected.root->getFirstChild()),
      last(selected.root->getLastChild()) {
    if (isDeep() && last != nullptr)
        last = PelXercesWalk::lastWithin(last);
    selected.root.getTree().changes.add(*this);
}

PelXercesCursor::~PelXercesCursor() {
    selected.root.getTree().changes.drop(*this);
}

bool PelXercesCursor::step() {
    DOMNode* found = nullptr;
    while (next != nullptr && found == nullptr) {
        if (selected.kind == PelXercesSelected::CHILDREN ||
            PelXercesWalk::isElement(*next, selected.name, pooledName))
            found = next;
        if (next == last)
            next = nullptr;
        else
            next = isDeep() ? PelXercesWalk::nextInTree(*selected.root.getNode(), next)
                            : PelXercesLinks::nextOf(*next);
        PelXercesLinks::fetch(next);
    }
    present = selected.root.to(found);
    return found != nullptr;
}

PelDOMNodeImp* PelXercesCursor::getNode() const {
    return PelXercesDOMNode::makeUntraced(present);
}

void PelXercesCursor::follow(const PelXercesChangeLog::Change& change) noexcept {
    if (change.kind != PelXercesChangeLog::Change::REMOVAL || next == nullptr)
        return;
    const DOMNode& root = *selected.root.getNode();
    const bool losesNext = goesWith(change, next);
    const bool losesLast = goesWith(change, last);
    if (losesNext && losesLast)
        next = nullptr;
    else if (losesNext)
        next =
            change.next != nullptr ? change.next : PelXercesWalk::nextBehind(root, change.parent);
    else if (losesLast)
        last = change.previous == nullptr ? change.parent
               : isDeep()                 ? PelXercesWalk::lastWithin(change.previous)
                                          : change.previous;
}

bool PelXercesCursor::isDeep() const {
    return selected.kind == PelXercesSelected::ELEMENTS;
}

// Whether a node goes with the removed one. Searches upwards from the node and downwards from the
// removed one in turns, because either way may be long.
bool PelXercesCursor::goesWith(const PelXercesChangeLog::Change& removal,
                               const DOMNode* node) const {
    if (!isDeep() || removal.isLeaf)
        return node == removal.node;
    const DOMNode* const root = selected.root.getNode();
    DOMNode* below = removal.node;
    for (const DOMNode* over = node;; over = over->getParentNode()) {
        if (over == removal.node || below == node)
            return true;
        if (over == root || below == root || below == nullptr)
            return false;
        below = PelXercesWalk::nextInTree(*removal.node, below);
    }
}

std::shared_ptr<PelDOMCursor> PelXercesChildElements::walk() const {
    return std::make_shared<PelXercesCursor>(selected);
}
