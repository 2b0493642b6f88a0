// SPDX-License-Identifier: MIT
#include "query/PelXPathEvaluator.h"

#include "query/PelXPathAxes.h"
#include "query/PelXPathComparison.h"
#include "query/PelXPathFunctions.h"
#include "query/PelXPathText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using Node = PelXPathTree::Node;
using Part = PelXPathNode;
using Predicate = PelXPathPredicate;
using Set = PelXPathSet;

namespace {

bool isTrue(double number) {
    return number != 0 && !std::isnan(number);
}

double calculate(double left, Part::Operator sign, double right) {
    switch (sign) {
    case Part::PLUS:
        return left + right;
    case Part::MINUS:
        return left - right;
    case Part::TIMES:
        return left * right;
    case Part::DIV:
        return left / right;
    default:
        return std::fmod(left, right);
    }
}

} // namespace

PelXPathEvaluator::PelXPathEvaluator(const PelXPathExpression& expression, PelXPathTree& ownTree,
                                     std::vector<PelXPathValue> values)
    : tree(ownTree), names(ownTree, expression.testCount), order(ownTree),
      steps(*this, ownTree, names, order), ids(ownTree), variables(std::move(values)),
      kept(expression.keptCount) {
}

PelDOMXPath::Type PelXPathEvaluator::typeOf(const Part& part) const {
    return part.kind == Part::VARIABLE ? typeOf(variables[part.variable]) : part.type;
}

PelDOMXPath::Type PelXPathEvaluator::typeOf(const PelXPathValue& value) {
    constexpr PelDOMXPath::Type types[] = {PelDOMXPath::BOOLEAN, PelDOMXPath::NUMBER,
                                           PelDOMXPath::STRING};
    return types[value.index()];
}

bool PelXPathEvaluator::holds(const Predicate& predicate, const Context& context) {
    const auto position = static_cast<double>(context.position);
    switch (predicate.kind) {
    case Predicate::NUMBER:
        return position == predicate.number;
    case Predicate::LAST:
        return context.position == context.size;
    case Predicate::POSITIONAL:
        if (typeOf(*predicate.condition) == PelDOMXPath::NUMBER)
            return position == number(*predicate.condition, context);
        break;
    case Predicate::TRUTH:
        break;
    }
    return truth(*predicate.condition, context);
}

PelXPathEvaluator::Kept& PelXPathEvaluator::keep(const Part& part, const Context& context) {
    Kept& found = kept[*part.keptAt];
    if (found.isKnown)
        return found;
    std::u16string buffer;
    if (part.type == PelDOMXPath::NODES)
        found.set = makeNodes(part, context);
    else if (part.type == PelDOMXPath::NUMBER)
        found.value = makeNumber(part, context);
    else if (part.type == PelDOMXPath::BOOLEAN)
        found.value = makeTruth(part, context);
    else
        found.value = PelXPathFunctions::text(*this, part, context);
    found.isKnown = true;
    return found;
}

// That of a variable, or of a constant that is no set; null for others.
const PelXPathValue* PelXPathEvaluator::knownValue(const Part& part, const Context& context) {
    if (part.kind == Part::VARIABLE)
        return &variables[part.variable];
    return part.keptAt && part.type != PelDOMXPath::NODES ? &keep(part, context).value : nullptr;
}

double PelXPathEvaluator::number(const Part& part, const Context& context) {
    if (const PelXPathValue* const known = knownValue(part, context)) {
        if (const auto* const value = std::get_if<double>(known))
            return *value;
        if (const auto* const value = std::get_if<bool>(known))
            return *value ? 1 : 0;
    } else if (part.type == PelDOMXPath::NUMBER) {
        return makeNumber(part, context);
    } else if (part.type == PelDOMXPath::BOOLEAN) {
        return makeTruth(part, context) ? 1 : 0;
    }
    std::u16string buffer;
    return PelXPathText::toNumber(view(part, context, buffer));
}

bool PelXPathEvaluator::truth(const Part& part, const Context& context) {
    if (const PelXPathValue* const known = knownValue(part, context)) {
        if (const auto* const value = std::get_if<double>(known))
            return isTrue(*value);
        if (const auto* const value = std::get_if<bool>(known))
            return *value;
    } else if (part.type == PelDOMXPath::NODES) {
        return isAny(part, context);
    } else if (part.type == PelDOMXPath::NUMBER) {
        return isTrue(makeNumber(part, context));
    } else if (part.type == PelDOMXPath::BOOLEAN) {
        return makeTruth(part, context);
    }
    std::u16string buffer;
    return !view(part, context, buffer).empty();
}

std::u16string_view PelXPathEvaluator::view(const Part& part, const Context& context,
                                            std::u16string& buffer) {
    if (part.type == PelDOMXPath::NODES) {
        const Node* const node = first(part, context);
        return node != nullptr ? tree.textOf(*node, buffer) : std::u16string_view();
    }
    const auto asText = [](bool value) { return value ? u"true" : u"false"; };
    if (const PelXPathValue* const known = knownValue(part, context)) {
        if (const auto* const value = std::get_if<std::u16string>(known)) {
            tree.countLook(value->size());
            return *value;
        }
        if (const auto* const value = std::get_if<bool>(known))
            return asText(*value);
        return buffer = PelXPathText::fromNumber(std::get<double>(*known));
    }
    if (part.type == PelDOMXPath::NUMBER)
        return buffer = PelXPathText::fromNumber(makeNumber(part, context));
    if (part.type == PelDOMXPath::BOOLEAN)
        return asText(makeTruth(part, context));
    if (part.kind != Part::LITERAL)
        return buffer = PelXPathFunctions::text(*this, part, context);
    tree.countLook(part.text.size());
    return part.text;
}

double PelXPathEvaluator::makeNumber(const Part& part, const Context& context) {
    switch (part.kind) {
    case Part::NUMBER:
        return part.number;
    case Part::NEGATION:
        return part.number * number(*part.operands.front(), context);
    case Part::FUNCTION:
        return PelXPathFunctions::number(*this, part, context);
    default:
        return fold(part, context);
    }
}

double PelXPathEvaluator::fold(const Part& part, const Context& context) {
    double value = number(*part.operands.front(), context);
    for (std::size_t i = 0; i < part.operators.size(); ++i)
        value = calculate(value, part.operators[i], number(*part.operands[i + 1], context));
    return value;
}

bool PelXPathEvaluator::makeTruth(const Part& part, const Context& context) {
    const auto isTrueHere = [this, &context](const auto& operand) {
        return truth(*operand, context);
    };
    tree.count();
    switch (part.kind) {
    case Part::OR:
        return std::any_of(part.operands.begin(), part.operands.end(), isTrueHere);
    case Part::AND:
        return std::all_of(part.operands.begin(), part.operands.end(), isTrueHere);
    case Part::FUNCTION:
        return PelXPathFunctions::truth(*this, part, context);
    default:
        return PelXPathComparison::evaluate(*this, part, context);
    }
}

Set PelXPathEvaluator::nodes(const Part& part, const Context& context) {
    return part.keptAt ? keep(part, context).set : makeNodes(part, context);
}

Set PelXPathEvaluator::makeNodes(const Part& part, const Context& context) {
    if (part.kind == Part::PATH)
        return follow(part, context);
    if (part.kind == Part::FUNCTION)
        return PelXPathFunctions::nodes(*this, part, context);
    Set all;
    for (const auto& operand : part.operands) {
        const Set some = nodes(*operand, context);
        all.nodes.insert(all.nodes.end(), some.nodes.begin(), some.nodes.end());
        all.hasAttributes = all.hasAttributes || some.hasAttributes;
    }
    order.sort(all.nodes);
    return all;
}

Set PelXPathEvaluator::withIds(std::u16string_view words) {
    Set found{ids.find(words)};
    order.sort(found.nodes);
    return found;
}

const PelXPathEvaluator::Texts& PelXPathEvaluator::texts(const Part& part, const Context& context,
                                                         Texts& made) {
    Kept* const known = part.keptAt ? &keep(part, context) : nullptr;
    if (known != nullptr && known->areTextsKnown)
        return known->texts;
    std::u16string buffer;
    any(part, context, [&](const Node& node) {
        const std::u16string_view text = tree.textOf(node, buffer);
        tree.count(text.size());
        made.emplace(text);
        return false;
    });
    if (known == nullptr)
        return made;
    known->areTextsKnown = true;
    return known->texts = std::move(made);
}

Node& PelXPathEvaluator::startOf(const Part& path, const Context& context) const {
    return path.start == Part::ROOT ? tree.getDocument() : *context.node;
}

Set PelXPathEvaluator::follow(const Part& path, const Context& context) {
    Set set;
    if (path.start == Part::OPERAND) {
        set = nodes(*path.operands.front(), context);
        steps.filter(path.filters, 0, set.nodes);
    } else {
        set = Set::of(&startOf(path, context));
    }
    for (const PelXPathStep& step : path.steps)
        set = steps.apply(step, std::move(set));
    return set;
}

bool PelXPathEvaluator::visit(const Part& path, std::size_t index, Node& node,
                              const PelXPathUse& use) {
    if (index == path.steps.size())
        return use(node);
    if (index + 1 == path.steps.size())
        return steps.visit(path.steps[index], node, use);
    return steps.visit(path.steps[index], node,
                       [&](Node& next) { return visit(path, index + 1, next, use); });
}

bool PelXPathEvaluator::any(const Part& part, const Context& context, const PelXPathUse& use) {
    return part.keptAt ? anyOf(keep(part, context).set, use) : findAny(part, context, use);
}

bool PelXPathEvaluator::anyOf(const Set& set, const PelXPathUse& use) {
    return std::any_of(set.nodes.begin(), set.nodes.end(), [&](Node* node) {
        tree.count();
        return use(*node);
    });
}

bool PelXPathEvaluator::findAny(const Part& part, const Context& context, const PelXPathUse& use) {
    if (part.kind == Part::PATH && part.visits != Part::NEVER)
        return visit(part, 0, startOf(part, context), use);
    if (part.kind == Part::UNION)
        return std::any_of(part.operands.begin(), part.operands.end(),
                           [&](const auto& operand) { return any(*operand, context, use); });
    return anyOf(makeNodes(part, context), use);
}

// A set that is only asked whether it is empty is not made to be kept.
bool PelXPathEvaluator::isAny(const Part& part, const Context& context) {
    const auto found = [](Node&) { return true; };
    if (!part.keptAt)
        return findAny(part, context, found);
    std::optional<bool>& known = kept[*part.keptAt].isAny;
    if (!known)
        known = findAny(part, context, found);
    return *known;
}

Node* PelXPathEvaluator::first(const Part& part, const Context& context) {
    if (part.keptAt) {
        const Set& set = keep(part, context).set;
        return set.isEmpty() ? nullptr : set.nodes.front();
    }
    Node* found = nullptr;
    bool isSure = false;
    if (part.kind == Part::PATH && part.visits == Part::ORDERED) {
        isSure = true;
        visit(part, 0, startOf(part, context), [&](Node& node) {
            found = &node;
            return true;
        });
    } else if (part.kind == Part::PATH && part.visits == Part::NESTED) {
        found = firstNested(part, startOf(part, context), isSure);
    }
    if (isSure)
        return found;
    const Set set = makeNodes(part, context);
    return set.isEmpty() ? nullptr : set.nodes.front();
}

// What the first of the nodes of the first step leads to, unless there may be other such nodes
// below that one: those could lead to something before it.
Node* PelXPathEvaluator::firstNested(const Part& path, Node& start, bool& isSure) {
    Node* found = nullptr;
    isSure = true;
    steps.visit(path.steps.front(), start, [&](Node& node) {
        visit(path, 1, node, [&](Node& last) {
            found = &last;
            return true;
        });
        if (found == nullptr)
            return false;
        isSure = !PelXPathAxes::eachBelow(tree, node, [&](const Node& below) {
            tree.count();
            return names.takes(path.steps.front().test, below);
        });
        return true;
    });
    return found;
}
