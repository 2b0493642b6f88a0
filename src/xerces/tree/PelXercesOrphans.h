// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <vector>

class PelXercesTree;

/// The nodes of a tree that have no parent: new ones, and those that were taken away. When enough
/// has been made since the last time, those to which, and into which, no reference leads go back to
/// the pool.
///
/// Such a collection looks at each orphans node and at each node above a reference once. The next
/// one waits until as much has been made as the last one looked at, so it costs each new or removed
/// node a few steps, whatever the size of the tree and the number of references.
class PelXercesOrphans {
public:
    explicit PelXercesOrphans(PelXercesTree& ownTree) : tree(ownTree) {}
    PelXercesOrphans(const PelXercesOrphans&) = delete;
    PelXercesOrphans& operator=(const PelXercesOrphans&) = delete;

    /// Before nodes are made or taken away: makes room for so many more orphans ones, and may
    /// collect. References have to lead to all nodes that are in use.
    void prepare(std::size_t count = 1);

    /// A node without a parent that may be one of those. There is room for it.
    void add(xercesc::DOMNode& node) noexcept;

private:
    void collect() noexcept;
    void dropAttached() noexcept;
    std::size_t markHeld() noexcept;
    void unmarkHeld() noexcept;

    PelXercesTree& tree;
    std::vector<xercesc::DOMNode*> nodes; // marked as orphans; some have a parent again
    std::size_t removed = 0;
    std::size_t due = leastWork; // when that much has been made and removed
    static constexpr std::size_t leastWork = 256;
};
