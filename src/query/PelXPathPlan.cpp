// SPDX-License-Identifier: MIT
#include "query/PelXPathPlan.h"

#include <algorithm>
#include <utility>

using Axis = PelXPathAxis;
using Function = PelXPathFunction;
using Node = PelXPathNode;
using Predicate = PelXPathPredicate;
using Step = PelXPathStep;
using Test = PelXPathTest;

namespace {

bool isAnyNode(const Step& step, Axis axis) {
    return step.axis == axis && step.test.kind == Test::ANY_NODE && step.predicates.empty();
}

// Whether predicates that count among siblings can be seen to by one walk over the tree, which
// knows how many there were so far, but not how many there will be.
bool areCountedOnTheWay(const std::vector<Predicate>& predicates) {
    for (const Predicate& predicate : predicates) {
        const bool isFirst = &predicate == &predicates.front();
        if ((predicate.kind == Predicate::LAST && !isFirst) ||
            (predicate.kind == Predicate::POSITIONAL && predicate.condition->usesLast))
            return false;
    }
    return true;
}

// Makes one step of "//" and the step behind it, where that comes to the same.
bool join(Step& all, Step& step) {
    const bool isPositional = step.isPositional();
    switch (step.axis) {
    case Axis::CHILD:
        if (isPositional && !areCountedOnTheWay(step.predicates))
            return false;
        step.countsAmongSiblings = isPositional;
        step.axis = Axis::DESCENDANT;
        break;
    case Axis::SELF:
        step.axis = Axis::DESCENDANT_OR_SELF;
        [[fallthrough]];
    case Axis::DESCENDANT:
    case Axis::DESCENDANT_OR_SELF:
        if (isPositional)
            return false;
        break;
    default:
        return false;
    }
    all = std::move(step);
    return true;
}

bool isCall(const Node& node, Function function) {
    return node.kind == Node::FUNCTION && node.function == function;
}

} // namespace

void PelXPathPlan::append(std::vector<Step>& steps, Step step) {
    if (!steps.empty() && isAnyNode(step, Axis::SELF))
        return;
    if (!steps.empty() && isAnyNode(steps.back(), Axis::SELF)) {
        steps.back() = std::move(step);
        return;
    }
    if (steps.empty() || !isAnyNode(steps.back(), Axis::DESCENDANT_OR_SELF)) {
        steps.push_back(std::move(step));
        return;
    }
    const Axis axis = step.axis;
    if (join(steps.back(), step))
        return;
    step.axis = axis;
    if (axis == Axis::ATTRIBUTE)
        steps.back().test.kind = Test::ANY_NAME; // nothing else has any
    steps.push_back(std::move(step));
}

Predicate PelXPathPlan::classified(std::unique_ptr<const Node> condition) {
    Predicate predicate;
    const Node* number = condition.get();
    const bool isPosition = condition->kind == Node::EQUALITY && condition->operands.size() == 2 &&
                            condition->operators.front() == Node::EQUAL &&
                            isCall(*condition->operands.front(), Function::POSITION);
    if (isPosition)
        number = condition->operands.back().get();
    if (number->kind == Node::NUMBER) {
        predicate.kind = Predicate::NUMBER;
        predicate.number = number->number;
    } else if (isCall(*number, Function::LAST)) {
        predicate.kind = Predicate::LAST;
    } else if (condition->type == PelDOMXPath::NUMBER || condition->type == PelDOMXPath::UNKNOWN ||
               condition->usesPosition || condition->usesLast) {
        predicate.kind = Predicate::POSITIONAL;
    }
    predicate.condition = std::move(condition);
    return predicate;
}

Node::Visits PelXPathPlan::visitsOf(const Node& path) {
    constexpr std::size_t manySteps = 50; // visits nest
    if (path.start == Node::OPERAND || path.steps.size() > manySteps)
        return Node::NEVER;
    bool isOne = true; // node, from which the step goes
    bool isNested = false;
    for (const Step& step : path.steps) {
        const bool isFirst = &step == &path.steps.front();
        const bool isLast = &step == &path.steps.back();
        switch (step.axis) {
        case Axis::SELF:
            break;
        case Axis::CHILD:
        case Axis::ATTRIBUTE:
            isOne = false;
            break;
        case Axis::PARENT:
            if (!isOne)
                return Node::NEVER;
            break;
        case Axis::DESCENDANT:
        case Axis::DESCENDANT_OR_SELF:
            if (!isFirst && (!isLast || isNested))
                return Node::NEVER;
            isOne = false;
            isNested = !isLast;
            break;
        default:
            if (!isOne || !isLast)
                return Node::NEVER;
            return step.axis == Axis::FOLLOWING || step.axis == Axis::FOLLOWING_SIBLING
                       ? Node::ORDERED
                       : Node::UNORDERED;
        }
    }
    return isNested ? Node::NESTED : Node::ORDERED;
}

bool PelXPathPlan::isConstant(const Node& node) {
    if (node.kind == Node::PATH && node.start == Node::CONTEXT)
        return false;
    if (node.kind == Node::FUNCTION && node.operands.empty())
        return node.function == Function::TRUE || node.function == Function::FALSE;
    return !isCall(node, Function::LANG) &&
           std::all_of(node.operands.begin(), node.operands.end(),
                       [](const auto& operand) { return operand->isConstant; });
}

bool PelXPathPlan::takesTime(const Node& node) {
    return node.kind == Node::PATH || node.kind == Node::UNION || node.kind == Node::EQUALITY ||
           node.kind == Node::RELATION || (node.kind == Node::FUNCTION && !node.operands.empty());
}
