// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesOrphans.h"

#include "xerces/engine/PelXercesFields.h"
#include "xerces/tree/PelXercesTree.h"

#include <algorithm>

using Fields = PelXercesFields;
using xercesc::DOMNode;
using xercesc::DOMNodeImpl;

namespace {

// The parent, read from the fields; null where that is the document, or none.
DOMNode* parentOf(DOMNodeImpl& node) {
    DOMNode* const owner = Fields::ownerOf(node);
    return node.isOwned() && owner->getNodeType() != DOMNode::DOCUMENT_NODE ? owner : nullptr;
}

// Sets or clears the mark of a node and of those above it, up to the first that needs no change.
// Returns how many were changed.
std::size_t markUpwards(DOMNode* node, bool isHeld) {
    std::size_t count = 0;
    if (node->getNodeType() == DOMNode::DOCUMENT_NODE)
        return count;
    while (node != nullptr) {
        DOMNodeImpl& impl = Fields::nodeOf(*node);
        if (Fields::hasMark(impl, Fields::isHeld) == isHeld)
            break;
        Fields::setMark(impl, Fields::isHeld, isHeld);
        node = parentOf(impl);
        ++count;
    }
    return count;
}

} // namespace

void PelXercesOrphans::prepare(std::size_t count) {
    if (!Fields::areKnown())
        return;
    if (tree.nodes.getMade() + removed >= due)
        collect();
    if (nodes.capacity() - nodes.size() < count)
        nodes.reserve(std::max(nodes.size() + count, 2 * nodes.size()));
}

void PelXercesOrphans::add(DOMNode& node) noexcept {
    if (!Fields::areKnown() || node.getNodeType() == DOMNode::DOCUMENT_TYPE_NODE)
        return;
    ++removed;
    DOMNodeImpl& impl = Fields::nodeOf(node);
    if (Fields::hasMark(impl, Fields::isOrphan))
        return;
    Fields::setMark(impl, Fields::isOrphan, true);
    nodes.push_back(&node);
}

void PelXercesOrphans::collect() noexcept {
    std::size_t work = nodes.size();
    dropAttached();
    if (!nodes.empty()) {
        work += markHeld();
        const auto isHeld = [](DOMNode* node) {
            return Fields::hasMark(Fields::nodeOf(*node), Fields::isHeld);
        };
        const auto unheld = std::partition(nodes.begin(), nodes.end(), isHeld);
        std::for_each(unheld, nodes.end(), [this](DOMNode* node) { tree.nodes.takeBack(*node); });
        nodes.erase(unheld, nodes.end());
        unmarkHeld();
    }
    due = tree.nodes.getMade() + removed + std::max(work, leastWork);
}

void PelXercesOrphans::dropAttached() noexcept {
    const auto isAttached = [](DOMNode* node) {
        DOMNodeImpl& impl = Fields::nodeOf(*node);
        Fields::setMark(impl, Fields::isOrphan, !impl.isOwned());
        return impl.isOwned();
    };
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(), isAttached), nodes.end());
}

std::size_t PelXercesOrphans::markHeld() noexcept {
    std::size_t count = 0;
    for (const PelXercesNodeRef* ref = tree.newest; ref != nullptr; ref = ref->getOlder())
        count += 1 + markUpwards(ref->getNode(), true);
    return count;
}

void PelXercesOrphans::unmarkHeld() noexcept {
    for (const PelXercesNodeRef* ref = tree.newest; ref != nullptr; ref = ref->getOlder())
        markUpwards(ref->getNode(), false);
}
