// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// Where in a text the characters stand that take two UTF-16 units.
class PelPairPlaces {
public:
    /// Of bytes in an encoding, by any of its names; none where nobody knows it.
    PelPairPlaces(const char* encoding, const void* bytes, std::size_t size);

    /// How many of them end before a column, in units from 1, of a line.
    unsigned long countBefore(unsigned long line, unsigned long column) const;

private:
    using Place = std::pair<unsigned long, unsigned long>; // line and column of the second unit

    std::vector<Place> places;
};
