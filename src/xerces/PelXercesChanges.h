// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include <array>
#include <cstddef>

/// The latest changes to the structure of a tree, from which its live lists bring what they
/// remember up to date without walking the tree again.
class PelXercesChanges {
public:
    struct Change {
        const xercesc::DOMNode* parent = nullptr;
        const xercesc::DOMNode* node = nullptr;
        bool isRemoval = false; ///< Else the node was appended as the last child.
        bool isLeaf = false;    ///< The node had no children then.
    };

    void record(const Change& change) { latest[total++ % latest.size()] = change; }

    /// The number of changes so far.
    std::size_t count() const { return total; }

    /// Whether the changes from `first` on can still be asked for.
    bool remembers(std::size_t first) const { return total - first <= latest.size(); }

    const Change& operator[](std::size_t number) const { return latest[number % latest.size()]; }

private:
    std::array<Change, 32> latest;
    std::size_t total = 0;
};
