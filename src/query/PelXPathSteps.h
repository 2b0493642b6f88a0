// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathExpression.h"
#include "query/PelXPathSweep.h"

#include <cstddef>
#include <functional>
#include <vector>

class PelXPathEvaluator;

/// What is done with each node of a set, one after the other, until it is true.
using PelXPathUse = std::function<bool(PelXPathTree::Node&)>;

/// Steps with their predicates. Those that ask for positions look at each context by itself; the
/// others need not.
class PelXPathSteps {
public:
    using Node = PelXPathTree::Node;
    using Predicates = std::vector<PelXPathPredicate>;

    PelXPathSteps(PelXPathEvaluator& owner, PelXPathTree& ownTree, PelXPathNames& ownNames,
                  PelXPathOrder& ownOrder)
        : evaluator(owner), tree(ownTree), names(ownNames), order(ownOrder),
          sweep(ownTree, ownNames, ownOrder) {}

    PelXPathSet apply(const PelXPathStep& step, PelXPathSet contexts);

    /// Gives what a step leads to from one node to `use`, in the order of the axis and no further
    /// than it must. Says whether that was true.
    bool visit(const PelXPathStep& step, Node& context, const PelXPathUse& use);

    /// Keeps the nodes from `begin` on for which predicates hold, from the one numbered `first` on;
    /// positions are those in the list.
    void filter(const Predicates& predicates, std::size_t first, std::vector<Node*>& nodes,
                std::size_t begin = 0);

private:
    class Passing;

    bool takes(const PelXPathStep& step, const Node& node);
    void collect(const PelXPathStep& step, Node& context, std::vector<Node*>& nodes);
    bool collectLast(const PelXPathStep& step, Node& context, std::vector<Node*>& nodes);
    PelXPathSet applyToEach(const PelXPathStep& step, const PelXPathSet& contexts);
    PelXPathSet countAmongSiblings(const PelXPathStep& step, const PelXPathSet& contexts,
                                   const PelXPathUse& use);
    bool isLastSibling(const PelXPathStep& step, Node& node);

    PelXPathEvaluator& evaluator;
    PelXPathTree& tree;
    PelXPathNames& names;
    PelXPathOrder& order;
    PelXPathSweep sweep;
};
