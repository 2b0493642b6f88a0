// SPDX-License-Identifier: MIT
#include "query/PelXPathSteps.h"

#include "query/PelXPathAxes.h"
#include "query/PelXPathEvaluator.h"

#include <algorithm>

using Axis = PelXPathAxis;
using Node = PelXPathTree::Node;
using Predicate = PelXPathPredicate;
using Set = PelXPathSet;
using Step = PelXPathStep;

namespace {

bool needsSize(const Predicate& predicate) {
    return predicate.kind == Predicate::LAST ||
           (predicate.kind == Predicate::POSITIONAL && predicate.condition->usesLast);
}

// Whether it leads from nodes that are equally deep to such nodes.
bool keepsLevel(Axis axis) {
    return axis == Axis::SELF || axis == Axis::CHILD || axis == Axis::PARENT ||
           axis == Axis::ATTRIBUTE || axis == Axis::FOLLOWING_SIBLING ||
           axis == Axis::PRECEDING_SIBLING;
}

// Whether no node that one context leads to comes behind one that the next leads to. They may lead
// to the same one.
bool staysInOrder(const Step& step, const Set& contexts) {
    switch (step.axis) {
    case Axis::SELF:
    case Axis::ATTRIBUTE:
        return true;
    case Axis::CHILD:
    case Axis::DESCENDANT:
    case Axis::DESCENDANT_OR_SELF:
        return contexts.isDisjoint;
    case Axis::FOLLOWING_SIBLING:
    case Axis::PRECEDING_SIBLING:
        // The third behind one of two nodes is not behind the third behind the other.
        return contexts.isLevel && step.predicates.front().kind == Predicate::NUMBER;
    default:
        return contexts.hasOne();
    }
}

} // namespace

/// Holds nodes against the predicates of a step as they come: those at its beginning that need not
/// know how many there are.
class PelXPathSteps::Passing {
public:
    Passing(PelXPathEvaluator& ownEvaluator, const Predicates& ownPredicates, std::size_t begin = 0)
        : evaluator(ownEvaluator), predicates(ownPredicates), first(begin), known(begin) {
        while (known < predicates.size() && !needsSize(predicates[known]))
            ++known;
    }

    /// The first that it does not know.
    std::size_t getEnd() const { return known; }

    /// Whether no other node can pass.
    bool isOver() const { return hasPassed; }

    /// `counts`: for each predicate, how many nodes it was asked about.
    bool passes(Node& node, std::size_t* counts) {
        for (std::size_t i = first; i < known; ++i) {
            const Predicate& predicate = predicates[i];
            const std::size_t position = ++counts[i];
            if (predicate.kind != Predicate::NUMBER) {
                if (!evaluator.holds(predicate, {&node, position, 0}))
                    return false;
                continue;
            }
            if (static_cast<double>(position) != predicate.number)
                return false;
            hasPassed = true;
        }
        return true;
    }

private:
    PelXPathEvaluator& evaluator;
    const Predicates& predicates;
    const std::size_t first;
    std::size_t known; // up to here
    bool hasPassed = false;
};

bool PelXPathSteps::takes(const Step& step, const Node& node) {
    tree.count();
    return step.axis == Axis::ATTRIBUTE ? names.takesAttribute(step.test, node)
                                        : names.takes(step.test, node);
}

Set PelXPathSteps::apply(const Step& step, Set contexts) {
    if (!names.mayTake(step.test))
        return {};
    if (contexts.hasOne())
        contexts.isLevel = contexts.isDisjoint = true;
    if (step.countsAmongSiblings)
        return countAmongSiblings(step, contexts, [](Node&) { return false; });
    if (step.isPositional())
        return applyToEach(step, contexts);
    Set found = sweep.apply(step, contexts);
    filter(step.predicates, 0, found.nodes);
    return found;
}

bool PelXPathSteps::visit(const Step& step, Node& context, const PelXPathUse& use) {
    bool isDone = false;
    if (!names.mayTake(step.test))
        return false;
    if (step.countsAmongSiblings) {
        countAmongSiblings(step, Set::of(&context), [&](Node& node) { return isDone = use(node); });
        return isDone;
    }
    Passing passing(evaluator, step.predicates);
    if (passing.getEnd() < step.predicates.size()) {
        std::vector<Node*> nodes;
        collect(step, context, nodes);
        return std::any_of(nodes.begin(), nodes.end(), [&](Node* node) { return use(*node); });
    }
    std::vector<std::size_t> counts(step.predicates.size());
    PelXPathAxes::each(tree, step, context, [&](Node& node) {
        isDone = takes(step, node) && passing.passes(node, counts.data()) && use(node);
        return isDone || passing.isOver();
    });
    return isDone;
}

// Of one context, in the order of the axis.
void PelXPathSteps::collect(const Step& step, Node& context, std::vector<Node*>& nodes) {
    const std::size_t begin = nodes.size();
    std::size_t first = 0;
    if (collectLast(step, context, nodes)) {
        first = 1;
    } else {
        Passing passing(evaluator, step.predicates);
        std::vector<std::size_t> counts(step.predicates.size());
        first = passing.getEnd();
        PelXPathAxes::each(tree, step, context, [&](Node& node) {
            if (takes(step, node) && passing.passes(node, counts.data()))
                nodes.push_back(&node);
            return passing.isOver();
        });
    }
    filter(step.predicates, first, nodes, begin);
}

// child::x[last()], which is looked for from the end. False for another step.
bool PelXPathSteps::collectLast(const Step& step, Node& context, std::vector<Node*>& nodes) {
    if (step.axis != Axis::CHILD || step.predicates.front().kind != Predicate::LAST ||
        PelXPathTree::isAttribute(context))
        return false;
    PelXPathAxes::eachBackFrom(PelXercesLinks::lastChildOf(context), [&](Node& node) {
        if (!takes(step, node))
            return false;
        nodes.push_back(&node);
        return true;
    });
    return true;
}

void PelXPathSteps::filter(const Predicates& predicates, std::size_t first,
                           std::vector<Node*>& nodes, std::size_t begin) {
    for (std::size_t i = first; i < predicates.size(); ++i) {
        const std::size_t size = nodes.size() - begin;
        tree.count(size);
        std::size_t kept = begin;
        for (std::size_t position = 1; position <= size; ++position) {
            Node* const node = nodes[begin + position - 1];
            if (evaluator.holds(predicates[i], {node, position, size}))
                nodes[kept++] = node;
        }
        nodes.resize(kept);
    }
}

Set PelXPathSteps::applyToEach(const Step& step, const Set& contexts) {
    const bool isReverse = PelXPathAxes::isReverse(step.axis);
    const bool isLevel = contexts.isLevel && keepsLevel(step.axis);
    const bool isDisjoint =
        isLevel || (contexts.isDisjoint && (step.axis == Axis::CHILD || step.axis == Axis::SELF));
    Set found{{}, isLevel, isDisjoint, contexts.hasAttributes || step.axis == Axis::ATTRIBUTE};
    for (Node* const context : contexts.nodes) {
        const auto begin = static_cast<std::ptrdiff_t>(found.nodes.size());
        collect(step, *context, found.nodes);
        if (isReverse)
            std::reverse(found.nodes.begin() + begin, found.nodes.end());
    }
    if (staysInOrder(step, contexts))
        found.nodes.erase(std::unique(found.nodes.begin(), found.nodes.end()), found.nodes.end());
    else
        order.sort(found.nodes);
    return found;
}

// The children of all nodes below the contexts, counted for each parent. Ends with the first node
// for which `use` is true. There is a row of counts for each depth of the walk.
Set PelXPathSteps::countAmongSiblings(const Step& step, const Set& contexts,
                                      const PelXPathUse& use) {
    const bool isLast = step.predicates.front().kind == Predicate::LAST;
    Passing passing(evaluator, step.predicates, isLast ? 1 : 0);
    const std::size_t width = step.predicates.size();
    std::vector<std::size_t> counts;
    const auto take = [&](Node& node, std::size_t depth) {
        counts.resize((depth + 1) * width);
        counts.resize((depth + 2) * width); // that of its children begins at 0
        return depth > 0 && names.takes(step.test, node) &&
               (!isLast || isLastSibling(step, node)) &&
               passing.passes(node, &counts[depth * width]);
    };
    return sweep.descend(contexts.withoutAttributes(), false, take, use);
}

bool PelXPathSteps::isLastSibling(const Step& step, Node& node) {
    return !PelXPathAxes::eachFrom(PelXercesLinks::nextOf(node), [&](const Node& sibling) {
        tree.count();
        return names.takes(step.test, sibling);
    });
}
