// SPDX-License-Identifier: MIT
#include "query/PelXPathSweep.h"

#include "query/PelXPathAxes.h"
#include "query/PelXPathTable.h"

#include <algorithm>

using Axis = PelXPathAxis;
using Links = PelXercesLinks;
using Node = PelXPathTree::Node;
using Set = PelXPathSet;
using Test = PelXPathTest;

Set PelXPathSet::withoutAttributes() const {
    Set others = *this;
    if (!hasAttributes)
        return others;
    others.hasAttributes = false;
    others.nodes.erase(
        std::remove_if(others.nodes.begin(), others.nodes.end(),
                       [](const Node* node) { return PelXPathTree::isAttribute(*node); }),
        others.nodes.end());
    return others;
}

Set PelXPathSweep::apply(const PelXPathStep& step, const Set& contexts) {
    const Test& test = step.test;
    switch (step.axis) {
    case Axis::SELF:
        return keepTaken(test, contexts);
    case Axis::CHILD:
        return children(test, contexts);
    case Axis::PARENT:
        return parents(test, contexts);
    case Axis::ATTRIBUTE:
        return attributes(test, contexts);
    case Axis::ANCESTOR:
        return keepTaken(test, ancestors(contexts, false));
    case Axis::ANCESTOR_OR_SELF:
        return keepTaken(test, ancestors(contexts, true));
    case Axis::FOLLOWING_SIBLING:
        return siblings(test, contexts, true);
    case Axis::PRECEDING_SIBLING:
        return siblings(test, contexts, false);
    case Axis::FOLLOWING:
        return following(test, contexts);
    case Axis::PRECEDING:
        return preceding(test, contexts);
    case Axis::DESCENDANT:
    case Axis::DESCENDANT_OR_SELF:
        break;
    }
    const auto take = [this, &test](const Node& node, std::size_t) {
        return names.takes(test, node);
    };
    const auto goOn = [](const Node&) { return false; };
    const bool withSelf = step.axis == Axis::DESCENDANT_OR_SELF;
    if (!contexts.hasAttributes)
        return descend(contexts, withSelf, take, goOn);
    Set found = descend(contexts.withoutAttributes(), withSelf, take, goOn);
    if (withSelf && test.kind == Test::ANY_NODE) {
        for (Node* const node : contexts.nodes)
            if (PelXPathTree::isAttribute(*node))
                found.nodes.push_back(node);
        found.isLevel = found.isDisjoint = false;
        found.hasAttributes = true;
        order.sort(found.nodes);
    }
    return found;
}

Set PelXPathSweep::keepTaken(const Test& test, const Set& contexts) {
    Set found{{}, contexts.isLevel, contexts.isDisjoint, contexts.hasAttributes};
    for (Node* const node : contexts.nodes) {
        tree.count();
        if (names.takes(test, *node))
            found.nodes.push_back(node);
    }
    return found;
}

Set PelXPathSweep::children(const Test& test, const Set& contexts) {
    Set found{{}, contexts.isLevel, contexts.isDisjoint, false};
    for (Node* const context : contexts.nodes) {
        if (PelXPathTree::isAttribute(*context))
            continue;
        tree.count();
        PelXPathAxes::eachFrom(Links::firstChildOf(*context), [&](Node& child) {
            tree.count();
            if (names.takes(test, child))
                found.nodes.push_back(&child);
            return false;
        });
    }
    if (!contexts.isDisjoint)
        order.sort(found.nodes);
    return found;
}

Set PelXPathSweep::attributes(const Test& test, const Set& contexts) {
    Set found{{}, contexts.isLevel, true, true};
    for (Node* const context : contexts.nodes) {
        tree.count();
        PelXPathAxes::eachAttribute(test, *context, [&](Node& attribute) {
            tree.count();
            if (names.takesAttribute(test, attribute))
                found.nodes.push_back(&attribute);
            return false;
        });
    }
    return found;
}

// Those of nodes that are equally deep come in their order, each several times in a row. Else they
// are looked for among all ancestors, which are in order too.
Set PelXPathSweep::parents(const Test& test, const Set& contexts) {
    Set all{{}, contexts.isLevel, contexts.isLevel, false};
    for (Node* const context : contexts.nodes) {
        tree.count();
        Node* const parent = PelXPathTree::parentOf(*context);
        if (parent != nullptr && (all.isEmpty() || parent != all.nodes.back()))
            all.nodes.push_back(parent);
    }
    if (!contexts.isLevel && all.nodes.size() > 1) {
        PelXPathMarks areParents;
        for (const Node* const parent : all.nodes)
            areParents.add(parent);
        all = ancestors(contexts, false);
        all.nodes.erase(std::remove_if(all.nodes.begin(), all.nodes.end(),
                                       [&](Node* node) { return !areParents.has(node); }),
                        all.nodes.end());
    }
    return keepTaken(test, all);
}

// From each context up to where another one has come. What is new then lies behind all that was
// found, so only each context's own part has to be turned round.
Set PelXPathSweep::ancestors(const Set& contexts, bool withSelf) {
    Set found{{}, false, false, withSelf && contexts.hasAttributes};
    PelXPathMarks marks;
    for (Node* const context : contexts.nodes) {
        const auto begin = static_cast<std::ptrdiff_t>(found.nodes.size());
        Node* const start = withSelf ? context : PelXPathTree::parentOf(*context);
        PelXPathAxes::eachAncestor(start, [&](Node& node) {
            tree.count();
            if (!marks.add(&node))
                return true;
            found.nodes.push_back(&node);
            return false;
        });
        std::reverse(found.nodes.begin() + begin, found.nodes.end());
    }
    return found;
}

Set PelXPathSweep::siblings(const Test& test, const Set& contexts, bool areFollowing) {
    Set found{{}, contexts.isLevel, contexts.isLevel, false};
    PelXPathMarks marks;
    const bool isMarking = !contexts.hasOne();
    const auto take = [&](Node& sibling) {
        tree.count();
        if (isMarking && !marks.add(&sibling))
            return true; // and so are all beyond it
        if (names.takes(test, sibling))
            found.nodes.push_back(&sibling);
        return false;
    };
    for (Node* const context : contexts.nodes) {
        if (PelXPathTree::isAttribute(*context))
            continue;
        const auto begin = static_cast<std::ptrdiff_t>(found.nodes.size());
        if (areFollowing)
            PelXPathAxes::eachFrom(Links::nextOf(*context), take);
        else
            PelXPathAxes::eachBackFrom(PelXercesLinks::previousOf(*context), take);
        if (!areFollowing)
            std::reverse(found.nodes.begin() + begin, found.nodes.end());
    }
    if (!contexts.isLevel)
        order.sort(found.nodes);
    return found;
}

bool PelXPathSweep::isWithin(const Node& node, const Node& other) {
    return PelXPathAxes::eachAncestor(PelXPathTree::parentOf(node), [&](const Node& ancestor) {
        tree.count();
        return &ancestor == &other;
    });
}

// What follows any of them follows the one that ends first.
Set PelXPathSweep::following(const Test& test, const Set& contexts) {
    Set found;
    if (contexts.isEmpty())
        return found;
    const Node* first = contexts.nodes.front();
    for (std::size_t i = 1; i < contexts.nodes.size() && isWithin(*contexts.nodes[i], *first); ++i)
        first = contexts.nodes[i];
    PelXPathAxes::eachFromUntil(tree, PelXPathAxes::firstFollowing(tree, *first), nullptr,
                                [&](Node& node) {
                                    tree.count();
                                    if (names.takes(test, node))
                                        found.nodes.push_back(&node);
                                    return false;
                                });
    return found;
}

// What precedes any of them precedes the last: an ancestor of that is none of another one before
// it, or was not before that.
Set PelXPathSweep::preceding(const Test& test, const Set& contexts) {
    Set found;
    if (contexts.isEmpty())
        return found;
    PelXPathAxes::eachPreceding(tree, *contexts.nodes.back(), [&](Node& node) {
        tree.count();
        if (names.takes(test, node))
            found.nodes.push_back(&node);
        return false;
    });
    std::reverse(found.nodes.begin(), found.nodes.end());
    return found;
}
