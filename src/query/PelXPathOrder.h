// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathTable.h"
#include "query/PelXPathTree.h"

#include <cstdint>
#include <vector>

/// Brings sets of nodes into document order. The first sets, while they are small and near to each
/// other, are compared by their places; then all nodes of the tree are numbered, once.
class PelXPathOrder {
public:
    using Node = PelXPathTree::Node;

    explicit PelXPathOrder(PelXPathTree& ownTree) : tree(ownTree) {}

    /// Each node once, in document order.
    void sort(std::vector<Node*>& nodes);

private:
    bool sortFew(std::vector<Node*>& nodes);
    bool isBefore(Node* one, Node* other);
    bool isBeforeSibling(Node* one, Node* other);
    std::size_t depthOf(const Node& node);

    std::uint64_t keyOf(Node& node);
    void numberTree(Node& member);
    std::uint32_t placeOf(Node& attribute);

    PelXPathTree& tree;
    PelXPathTable<std::uint32_t> numbers; // of an attribute: its place among those of its element
    std::uint32_t lastNumber = 0;
    std::size_t patience = 5000; // steps that may be spent on comparing places
};
