// SPDX-License-Identifier: MIT
#pragma once

#include "read/input/PelEncodingCheck.h"

#include <cstddef>
#include <utility>
#include <vector>

/// Where in a text the characters stand that take two UTF-16 units, as far as it was looked at.
class PelSurrogateIndex {
public:
    /// In an encoding, by any of its names; none where nobody knows it.
    explicit PelSurrogateIndex(const char* encoding);

    /// The text goes on with these bytes.
    void add(const void* bytes, std::size_t size);

    /// Whether all that stands before a column, in units from 1, of a line is known.
    bool isKnown(unsigned long line, unsigned long column) const;

    /// How many of them end before it.
    unsigned long countBefore(unsigned long line, unsigned long column) const;

private:
    using Place = std::pair<unsigned long, unsigned long>; // line and column

    PelConverter::Handle converter; // none: there is no more to know
    Place end{1, 0};                // of the last unit
    char16_t last = 0;
    std::vector<Place> places; // of the second units
};
