// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <unordered_map>

/// How many children the nodes with many of them had when they were read, so that nobody has to
/// count these before the tree is changed.
class PelXercesChildCounts {
public:
    void add(const xercesc::DOMNode& parent, std::size_t count) {
        if (count >= many)
            counts[&parent] = count;
    }

    /// 0 where it is not known.
    std::size_t of(const xercesc::DOMNode& parent) const {
        const auto found = counts.find(&parent);
        return found != counts.end() ? found->second : 0;
    }

private:
    static constexpr std::size_t many = 256;

    std::unordered_map<const xercesc::DOMNode*, std::size_t> counts;
};
