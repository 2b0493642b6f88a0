// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <vector>

class PelXercesTree;

/// Nodes without a parent, new or removed. A collection gives those that no reference can reach
/// back to the pool.
///
/// It looks once at each orphan and at each node above a reference. The next one waits until as
/// much has been made and removed as this one looked at, so it costs each new or removed node a few
/// steps, whatever the size of the tree and the number of references.
class PelXercesOrphans {
public:
    explicit PelXercesOrphans(PelXercesTree& ownTree) : tree(ownTree) {}
    PelXercesOrphans(const PelXercesOrphans&) = delete;
    PelXercesOrphans& operator=(const PelXercesOrphans&) = delete;

    /// Call before nodes are made or removed: makes room for `count` more orphans, and may collect.
    /// References have to lead to all nodes that are in use.
    void prepare(std::size_t count = 1);

    /// Adds a node without a parent. There must be room for it.
    void add(xercesc::DOMNode& node) noexcept;

    /// All of them; some may have a parent again.
    const std::vector<xercesc::DOMNode*>& getNodes() const { return nodes; }

private:
    void collect() noexcept;
    void dropAttached() noexcept;
    std::size_t markHeld() noexcept;
    void unmarkHeld() noexcept;

    PelXercesTree& tree;
    std::vector<xercesc::DOMNode*> nodes; // with the mark; some have a parent again
    std::size_t removed = 0;
    std::size_t due = leastWork; // nodes made and removed by the next collection
    static constexpr std::size_t leastWork = 256;
};
