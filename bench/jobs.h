// SPDX-License-Identifier: MIT
//
// Jobs as programs do them, each by every library that can.
#pragma once

#include "libraries.h"

#include <functional>

// One pass of a job, which is what is timed. Gives a number that is the same for all libraries.
using Job = std::function<long()>;

template <class Library>
struct Jobs {
    using Tree = typename Library::Tree;

    // Reads each message and drops it; asks what is wrong with it if it is refused. Gives the
    // number of those that are accepted.
    static Job readMessages(const std::vector<std::string>& messages);

    // Makes an element with three children of each row, writes the tree to a string, reads that and
    // sums the last column up.
    static Job convertRows(const std::vector<Row>& rows);

    // Puts new elements in front of all others, and gives the number of children then.
    static Job insertInFront(int count);

    // The children of the root, one after the other: their number.
    static Job countChildren(const Tree& tree);

    // The same for child elements with the name `item`, whose names are compared.
    static Job countItems(const Tree& tree);

    // Copies the text of each element `name`: the sum of their lengths.
    static Job copyTexts(const Tree& tree);
};

// The sum of the last column.
inline long totalOf(const std::vector<Row>& rows) {
    long total = 0;
    for (const Row& row : rows)
        total += std::stol(row.stock);
    return total;
}
