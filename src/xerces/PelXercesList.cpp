// SPDX-License-Identifier: MIT
#include "xerces/PelXercesList.h"

#include "xerces/PelXercesLinks.h"
#include "xerces/PelXercesWalk.h"

using xercesc::DOMNode;

namespace {

// As many children lie close to one another. What is fetched for more is gone before it is used.
constexpr std::size_t fewChildren = 64;

} // namespace

PelXercesList PelXercesList::ofChildren(const PelXercesNodeRef& parent) {
    return {parent, true, {}};
}

PelXercesList PelXercesList::ofElements(const PelXercesNodeRef& root, std::u16string_view tagName) {
    return {root, false, tagName};
}

PelXercesList::PelXercesList(const PelXercesNodeRef& rootNode, bool isOfChildren,
                             std::u16string_view tagName)
    : root(rootNode), ofChildNodes(isOfChildren), name(tagName),
      seen(rootNode.getTree().changes.count()) {
}

bool PelXercesList::isSame(const PelXercesList& other) const noexcept {
    return root.getNode() == other.root.getNode() && ofChildNodes == other.ofChildNodes &&
           name == other.name;
}

PelXercesSelected PelXercesList::getSelected() const {
    return {root, ofChildNodes ? PelXercesSelected::CHILDREN : PelXercesSelected::ELEMENTS, name};
}

std::size_t PelXercesList::length() {
    catchUp();
    if (!knowsLength) {
        knownLength = 0;
        for (DOMNode* node = first(); node != nullptr; node = next(node)) {
            if (ofChildNodes && knownLength - 1 < fewChildren)
                PelXercesLinks::fetchBehind(*node);
            ++knownLength;
        }
        knowsLength = true;
    }
    return knownLength;
}

DOMNode* PelXercesList::item(std::size_t index) {
    if (place == nullptr || index < placeIndex / 2) {
        place = first();
        placeIndex = 0;
    }
    if (index > placeIndex && knownLength - 1 - index < index - placeIndex) {
        place = last();
        placeIndex = knownLength - 1;
    }
    for (; placeIndex < index; ++placeIndex)
        place = next(place);
    for (; placeIndex > index; --placeIndex)
        place = previous(place);
    PelXercesLinks::fetch(PelXercesLinks::nextOf(*place));
    return place;
}

DOMNode* PelXercesList::first() const {
    return ofChildNodes ? root->getFirstChild() : next(root.getNode());
}

DOMNode* PelXercesList::last() const {
    if (ofChildNodes)
        return root->getLastChild();
    DOMNode* const node = PelXercesWalk::lastWithin(root.getNode());
    return matches(*node) ? node : previous(node);
}

DOMNode* PelXercesList::next(DOMNode* node) const {
    if (ofChildNodes)
        return PelXercesLinks::nextOf(*node);
    do {
        node = PelXercesWalk::nextInTree(*root.getNode(), node);
    } while (node != nullptr && !matches(*node));
    return node;
}

DOMNode* PelXercesList::previous(DOMNode* node) const {
    if (ofChildNodes)
        return node->getPreviousSibling();
    do {
        node = PelXercesWalk::previousInTree(*root.getNode(), node);
    } while (node != nullptr && !matches(*node));
    return node;
}

bool PelXercesList::matches(const DOMNode& node) const {
    return PelXercesWalk::isElement(node, name, pooledName);
}

bool PelXercesList::matches(const XMLCh* tagName) const {
    return name == u"*" || tagName == name;
}

void PelXercesList::catchUp() {
    const PelXercesChanges& changes = root.getTree().changes;
    if (!changes.remembers(seen))
        forget();
    else
        for (; seen != changes.count(); ++seen)
            follow(changes[seen]);
    seen = changes.count();
}

void PelXercesList::follow(const PelXercesChanges::Change& change) {
    if (!ofChildNodes) {
        if (change.name != nullptr && (!change.isLeaf || matches(change.name)))
            forget();
    } else if (change.parent == root.getNode()) {
        change.isRemoval ? followRemoval(change) : followInsertion(change);
    }
}

// Where a change is neither at an end nor next to the place, it may be on either side of that.
void PelXercesList::followInsertion(const PelXercesChanges::Change& change) {
    ++knownLength;
    if (change.next == nullptr)
        return;
    if (change.previous == nullptr || change.next == place)
        ++placeIndex;
    else if (change.previous != place)
        place = nullptr;
}

void PelXercesList::followRemoval(const PelXercesChanges::Change& change) {
    --knownLength;
    if (change.node == place) // a look at the position before it begins at an end
        place = change.next;
    else if (change.next == nullptr)
        return;
    else if (change.previous == nullptr || change.next == place)
        --placeIndex;
    else if (change.previous != place)
        place = nullptr;
}

void PelXercesList::forget() {
    knowsLength = false;
    place = nullptr;
}
