// SPDX-License-Identifier: MIT
#include "xerces/PelXercesDOMNodeList.h"

#include "xerces/PelXercesDOMNode.h"
#include "xerces/PelXercesLinks.h"
#include "xerces/PelXercesWalk.h"

#include <qrndom/PelDOMNode.h>

using xercesc::DOMNode;

namespace {

// As many children lie close to one another. What is fetched for more is gone before it is used.
constexpr std::size_t fewChildren = 64;

} // namespace

PelXercesDOMNodeList::PelXercesDOMNodeList(const PelXercesNodeRef& rootNode, bool isOfChildren,
                                           std::u16string_view tagName)
    : root(rootNode), ofChildNodes(isOfChildren), name(tagName),
      seen(rootNode.getTree().changes.count()) {
}

PelDOM::Error PelXercesDOMNodeList::item(long index, PelDOMNode& out) {
    if (index < 0 || index >= length())
        return PelDOM::INDEX_OUT_OF_RANGE;
    PelXercesDOMNode::give(root, nodeAt(static_cast<std::size_t>(index)), out);
    return PelDOM::SUCCESS;
}

long PelXercesDOMNodeList::length() {
    return static_cast<long>(count());
}

PelDOMNodeListImp* PelXercesDOMNodeList::clone() {
    return new PelXercesDOMNodeList(*this);
}

// Every list of the library is of this class.
bool PelXercesDOMNodeList::isSameList(const PelDOMListImp& other) const noexcept {
    const auto& list = static_cast<const PelXercesDOMNodeList&>(other);
    return root.getNode() == list.root.getNode() && ofChildNodes == list.ofChildNodes &&
           name == list.name;
}

std::shared_ptr<PelDOMCursor> PelXercesDOMNodeList::walk() const {
    using Selected = PelXercesSelected;
    return std::make_shared<PelXercesCursor>(
        Selected{root, ofChildNodes ? Selected::CHILDREN : Selected::ELEMENTS, name});
}

std::size_t PelXercesDOMNodeList::count() {
    catchUp();
    if (knowsCount)
        return knownCount;
    knownCount = ofChildNodes ? root.getTree().knownChildCount(*root.getNode()) : 0;
    if (knownCount == 0)
        for (DOMNode* node = first(); node != nullptr; node = next(node)) {
            if (ofChildNodes && knownCount - 1 < fewChildren)
                PelXercesLinks::fetchBehind(*node);
            ++knownCount;
        }
    knowsCount = true;
    return knownCount;
}

// Below the count, which was asked for since the last change.
DOMNode* PelXercesDOMNodeList::nodeAt(std::size_t index) {
    if (place == nullptr || index < placeIndex / 2) {
        place = first();
        placeIndex = 0;
    }
    if (index > placeIndex && knownCount - 1 - index < index - placeIndex) {
        place = last();
        placeIndex = knownCount - 1;
    }
    for (; placeIndex < index; ++placeIndex)
        place = next(place);
    for (; placeIndex > index; --placeIndex)
        place = previous(place);
    PelXercesLinks::fetch(PelXercesLinks::nextOf(*place));
    return place;
}

DOMNode* PelXercesDOMNodeList::first() const {
    return ofChildNodes ? root->getFirstChild() : next(root.getNode());
}

DOMNode* PelXercesDOMNodeList::last() const {
    if (ofChildNodes)
        return root->getLastChild();
    DOMNode* const node = PelXercesWalk::lastWithin(root.getNode());
    return matches(*node) ? node : previous(node);
}

DOMNode* PelXercesDOMNodeList::next(DOMNode* node) const {
    if (ofChildNodes)
        return PelXercesLinks::nextOf(*node);
    do {
        node = PelXercesWalk::nextInTree(*root.getNode(), node);
    } while (node != nullptr && !matches(*node));
    return node;
}

DOMNode* PelXercesDOMNodeList::previous(DOMNode* node) const {
    if (ofChildNodes)
        return node->getPreviousSibling();
    do {
        node = PelXercesWalk::previousInTree(*root.getNode(), node);
    } while (node != nullptr && !matches(*node));
    return node;
}

bool PelXercesDOMNodeList::matches(const DOMNode& node) const {
    return PelXercesWalk::isElement(node, name, pooledName);
}

bool PelXercesDOMNodeList::matches(const XMLCh* tagName) const {
    return name == u"*" || tagName == name;
}

void PelXercesDOMNodeList::catchUp() {
    const PelXercesChanges& changes = root.getTree().changes;
    if (!changes.remembers(seen))
        forget();
    else
        for (; seen != changes.count(); ++seen)
            follow(changes[seen]);
    seen = changes.count();
}

void PelXercesDOMNodeList::follow(const PelXercesChanges::Change& change) {
    if (!ofChildNodes) {
        if (change.name != nullptr && (!change.isLeaf || matches(change.name)))
            forget();
    } else if (change.parent == root.getNode()) {
        change.isRemoval ? followRemoval(change) : followInsertion(change);
    }
}

// Where a change is neither at an end nor next to the place, it may be on either side of that.
void PelXercesDOMNodeList::followInsertion(const PelXercesChanges::Change& change) {
    ++knownCount;
    if (change.next == nullptr)
        return;
    if (change.previous == nullptr || change.next == place)
        ++placeIndex;
    else if (change.previous != place)
        place = nullptr;
}

void PelXercesDOMNodeList::followRemoval(const PelXercesChanges::Change& change) {
    --knownCount;
    if (change.node == place) // a look at the position before it begins at an end
        place = change.next;
    else if (change.next == nullptr)
        return;
    else if (change.previous == nullptr || change.next == place)
        --placeIndex;
    else if (change.previous != place)
        place = nullptr;
}

void PelXercesDOMNodeList::forget() {
    knowsCount = false;
    place = nullptr;
}
