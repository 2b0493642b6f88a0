// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>

/// Which of two places in a tree comes first.
class PelXercesOrder {
public:
    /// In front of `next`, a child of `parent`, or behind the last child when that is null.
    struct Place {
        const xercesc::DOMNode* parent;
        const xercesc::DOMNode* next;
    };

    enum Side { IN_FRONT, BEHIND, UNKNOWN };

    /// How deep a node is below another one, 0 for that itself; `nowhere` if it is not there.
    static std::size_t depthBelow(const xercesc::DOMNode& root, const xercesc::DOMNode* node);
    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    /// Where a place is, seen from another one below the same root; the same place counts as in
    /// front. `reach` loses the steps from sibling to sibling that this takes; unknown if these are
    /// not enough.
    static Side sideOf(Place place, Place other, const xercesc::DOMNode& root, std::size_t& reach);
};
