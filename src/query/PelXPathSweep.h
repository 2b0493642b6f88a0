// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathExpression.h"
#include "query/PelXPathNames.h"
#include "query/PelXPathOrder.h"
#include "query/PelXPathTree.h"

#include <cstddef>
#include <vector>

/// Nodes in document order, each once, and what is known of how they lie.
struct PelXPathSet {
    using Node = PelXPathTree::Node;

    std::vector<Node*> nodes{};
    bool isLevel = false;       // all are equally deep
    bool isDisjoint = false;    // none is below another one; so where they are level
    bool hasAttributes = false; // maybe

    bool isEmpty() const { return nodes.empty(); }
    bool hasOne() const { return nodes.size() == 1; }

    PelXPathSet withoutAttributes() const;

    /// Of one node.
    static PelXPathSet of(Node* node) {
        return {{node}, true, true, PelXPathTree::isAttribute(*node)};
    }
};

/// Steps from all nodes of a set at once: what several of them lead to is gone through once.
class PelXPathSweep {
public:
    using Node = PelXPathTree::Node;

    PelXPathSweep(PelXPathTree& ownTree, PelXPathNames& ownNames, PelXPathOrder& ownOrder)
        : tree(ownTree), names(ownNames), order(ownOrder) {}

    /// All that a step leads to, whatever its predicates say.
    PelXPathSet apply(const PelXPathStep& step, const PelXPathSet& contexts);

    /// All below the contexts that `take`, called with each node and its depth below the context,
    /// is true for; with the contexts themselves at depth 0 if `withSelf`. Ends with the first of
    /// these nodes for which `use` is true. No context may be an attribute.
    template <class Take, class Use>
    PelXPathSet descend(const PelXPathSet& contexts, bool withSelf, Take take, Use use);

private:
    PelXPathSet keepTaken(const PelXPathTest& test, const PelXPathSet& contexts);
    PelXPathSet children(const PelXPathTest& test, const PelXPathSet& contexts);
    PelXPathSet attributes(const PelXPathTest& test, const PelXPathSet& contexts);
    PelXPathSet parents(const PelXPathTest& test, const PelXPathSet& contexts);
    PelXPathSet ancestors(const PelXPathSet& contexts, bool withSelf);
    PelXPathSet siblings(const PelXPathTest& test, const PelXPathSet& contexts, bool areFollowing);
    PelXPathSet following(const PelXPathTest& test, const PelXPathSet& contexts);
    PelXPathSet preceding(const PelXPathTest& test, const PelXPathSet& contexts);
    bool isWithin(const Node& node, const Node& other);

    PelXPathTree& tree;
    PelXPathNames& names;
    PelXPathOrder& order;
};

template <class Take, class Use>
PelXPathSet PelXPathSweep::descend(const PelXPathSet& contexts, bool withSelf, Take take, Use use) {
    PelXPathSet found;
    found.isLevel = contexts.isLevel;
    found.isDisjoint = true;
    const Node* cover = nullptr; // the latest found one, while the walk is in it
    std::size_t level = 0;       // of what was found first
    const std::size_t size = contexts.nodes.size();
    for (std::size_t next = 0; next < size;) {
        Node* const context = contexts.nodes[next];
        Node* node = context;
        for (std::size_t depth = 0; node != nullptr;) {
            tree.count();
            if (next < size && contexts.nodes[next] == node)
                ++next; // what is below it, this walk comes to
            if (take(*node, depth) && (depth > 0 || withSelf)) {
                found.isDisjoint = found.isDisjoint && cover == nullptr;
                if (found.isEmpty())
                    level = depth;
                found.isLevel = found.isLevel && depth == level;
                found.nodes.push_back(node);
                if (use(*node))
                    return found;
                if (cover == nullptr)
                    cover = node;
            }
            Node* following = PelXercesLinks::firstChildOf(*node);
            if (following != nullptr)
                ++depth;
            while (following == nullptr && node != nullptr) {
                if (node == cover)
                    cover = nullptr;
                following = node != context ? PelXercesLinks::nextOf(*node) : nullptr;
                if (following == nullptr) {
                    node = node != context ? PelXercesLinks::parentOf(*node) : nullptr;
                    --depth;
                }
            }
            node = following;
        }
    }
    return found;
}
