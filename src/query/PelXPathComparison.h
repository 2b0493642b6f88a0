// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathEvaluator.h"
#include "query/PelXPathExpression.h"

/// The operators = != < <= > >=. A set compares as one of its nodes that does, so = and != may both
/// be true of two sets.
namespace PelXPathComparison {

/// Of all operands of an equality or a relation, from the left.
bool evaluate(PelXPathEvaluator& evaluator, const PelXPathNode& part,
              const PelXPathContext& context);

} // namespace PelXPathComparison
