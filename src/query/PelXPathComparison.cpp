// SPDX-License-Identifier: MIT
#include "query/PelXPathComparison.h"

#include "query/PelXPathText.h"

#include <limits>
#include <string>

using Operator = PelXPathNode::Operator;
using Tree = PelXPathTree;

namespace {

bool isEquality(Operator sign) {
    return sign == PelXPathNode::EQUAL || sign == PelXPathNode::UNEQUAL;
}

bool compare(double left, Operator sign, double right) {
    switch (sign) {
    case PelXPathNode::EQUAL:
        return left == right;
    case PelXPathNode::UNEQUAL:
        return left != right;
    case PelXPathNode::LESS:
        return left < right;
    case PelXPathNode::LESS_EQUAL:
        return left <= right;
    case PelXPathNode::GREATER:
        return left > right;
    default:
        return left >= right;
    }
}

// That is true of two values the other way round.
Operator mirrored(Operator sign) {
    switch (sign) {
    case PelXPathNode::LESS:
        return PelXPathNode::GREATER;
    case PelXPathNode::LESS_EQUAL:
        return PelXPathNode::GREATER_EQUAL;
    case PelXPathNode::GREATER:
        return PelXPathNode::LESS;
    case PelXPathNode::GREATER_EQUAL:
        return PelXPathNode::LESS_EQUAL;
    default:
        return sign;
    }
}

/// Two operands at a time.
class Comparison {
public:
    Comparison(PelXPathEvaluator& ownEvaluator, const PelXPathContext& ownContext)
        : evaluator(ownEvaluator), context(ownContext) {}

    bool compareParts(const PelXPathNode& left, Operator sign, const PelXPathNode& right) {
        const bool isLeftSet = left.type == PelDOMXPath::NODES;
        if (isLeftSet && right.type == PelDOMXPath::NODES)
            return compareSets(left, sign, right);
        if (isLeftSet)
            return compareSet(left, sign, right);
        if (right.type == PelDOMXPath::NODES)
            return compareSet(right, mirrored(sign), left);
        return compareValues(left, sign, right);
    }

    bool compareTruth(bool left, Operator sign, const PelXPathNode& right) {
        const bool isTruth = isEquality(sign) || right.type == PelDOMXPath::NODES;
        return compare(left ? 1 : 0, sign,
                       isTruth ? truth(right) : evaluator.number(right, context));
    }

private:
    double truth(const PelXPathNode& part) { return evaluator.truth(part, context) ? 1 : 0; }

    double numberOf(const Tree::Node& node) {
        return PelXPathText::toNumber(evaluator.getTree().textOf(node, buffer));
    }

    bool compareValues(const PelXPathNode& left, Operator sign, const PelXPathNode& right) {
        const PelDOMXPath::Type one = evaluator.typeOf(left);
        const PelDOMXPath::Type other = evaluator.typeOf(right);
        const auto isEither = [one, other](auto type) { return one == type || other == type; };
        if (isEquality(sign) && isEither(PelDOMXPath::BOOLEAN))
            return compare(truth(left), sign, truth(right));
        if (!isEquality(sign) || isEither(PelDOMXPath::NUMBER))
            return compare(evaluator.number(left, context), sign, evaluator.number(right, context));
        std::u16string leftBuffer;
        const bool isEqual =
            evaluator.view(left, context, leftBuffer) == evaluator.view(right, context, buffer);
        return isEqual == (sign == PelXPathNode::EQUAL);
    }

    bool compareSet(const PelXPathNode& set, Operator sign, const PelXPathNode& value) {
        const PelDOMXPath::Type type = evaluator.typeOf(value);
        if (type == PelDOMXPath::BOOLEAN)
            return compare(truth(set), sign, truth(value));
        if (type == PelDOMXPath::NUMBER || !isEquality(sign)) {
            const double number = evaluator.number(value, context);
            return evaluator.any(set, context, [&](const Tree::Node& node) {
                return compare(numberOf(node), sign, number);
            });
        }
        std::u16string valueBuffer;
        return anyText(set, evaluator.view(value, context, valueBuffer),
                       sign == PelXPathNode::EQUAL);
    }

    // Whether any node of the set has that text; or, any has another one.
    bool anyText(const PelXPathNode& set, std::u16string_view text, bool isEqual) {
        return evaluator.any(set, context, [&](const Tree::Node& node) {
            return (evaluator.getTree().textOf(node, buffer) == text) == isEqual;
        });
    }

    bool compareSets(const PelXPathNode& left, Operator sign, const PelXPathNode& right) {
        if (!isEquality(sign))
            return compareBounds(left, sign, right);
        if (sign == PelXPathNode::EQUAL)
            return left.keptAt ? haveCommon(left, right) : haveCommon(right, left);
        std::u16string text;
        const bool isAny = evaluator.any(left, context, [&](const Tree::Node& node) {
            text = evaluator.getTree().textOf(node, buffer);
            return true;
        });
        return isAny && (anyText(right, text, false) ||
                         (evaluator.truth(right, context) && anyText(left, text, false)));
    }

    bool haveCommon(const PelXPathNode& one, const PelXPathNode& other) {
        PelXPathEvaluator::Texts made;
        const PelXPathEvaluator::Texts& texts = evaluator.texts(one, context, made);
        return !texts.empty() && evaluator.any(other, context, [&](const Tree::Node& node) {
            return texts.count(std::u16string(evaluator.getTree().textOf(node, buffer))) > 0;
        });
    }

    struct Bounds {
        double least = std::numeric_limits<double>::quiet_NaN();
        double greatest = std::numeric_limits<double>::quiet_NaN();
    };

    Bounds boundsOf(const PelXPathNode& set) {
        Bounds bounds;
        evaluator.any(set, context, [&](const Tree::Node& node) {
            const double number = numberOf(node);
            if (!(bounds.least <= number))
                bounds.least = number == number ? number : bounds.least;
            if (!(bounds.greatest >= number))
                bounds.greatest = number == number ? number : bounds.greatest;
            return false;
        });
        return bounds;
    }

    // Two nodes compare if the outermost do.
    bool compareBounds(const PelXPathNode& left, Operator sign, const PelXPathNode& right) {
        const Bounds one = boundsOf(left);
        const Bounds other = boundsOf(right);
        const bool isLess = sign == PelXPathNode::LESS || sign == PelXPathNode::LESS_EQUAL;
        return isLess ? compare(one.least, sign, other.greatest)
                      : compare(one.greatest, sign, other.least);
    }

    PelXPathEvaluator& evaluator;
    const PelXPathContext& context;
    std::u16string buffer;
};

} // namespace

bool PelXPathComparison::evaluate(PelXPathEvaluator& evaluator, const PelXPathNode& part,
                                  const PelXPathContext& context) {
    Comparison comparison(evaluator, context);
    bool isTrue = comparison.compareParts(*part.operands[0], part.operators[0], *part.operands[1]);
    for (std::size_t i = 2; i < part.operands.size(); ++i)
        isTrue = comparison.compareTruth(isTrue, part.operators[i - 1], *part.operands[i]);
    return isTrue;
}
