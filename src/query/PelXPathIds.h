// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathTree.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The elements of a document by their IDs: attributes that its document type declares to be such.
class PelXPathIds {
public:
    using Node = PelXPathTree::Node;

    explicit PelXPathIds(PelXPathTree& ownTree) : tree(ownTree) {}

    /// Those with one of the words of a text as their ID, in the order of the words.
    std::vector<Node*> find(std::u16string_view words);

private:
    void gather();

    PelXPathTree& tree;
    bool isGathered = false;
    std::unordered_map<std::u16string, Node*> elements;
};
