// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathExpression.h"

#include <memory>
#include <vector>

/// What can be known of the parts of an expression before there is a tree.
namespace PelXPathPlan {

/// Adds a step to a path. Makes one step of "//" and the step behind it where that comes to the
/// same.
void append(std::vector<PelXPathStep>& steps, PelXPathStep step);

/// A predicate, by what it asks for.
PelXPathPredicate classified(std::unique_ptr<const PelXPathNode> condition);

/// How a path may be followed.
PelXPathNode::Visits visitsOf(const PelXPathNode& path);

/// Whether a part whose operands are known gives the same from every context.
bool isConstant(const PelXPathNode& node);

/// Whether it is worth while to keep what a part has given.
bool takesTime(const PelXPathNode& node);

} // namespace PelXPathPlan
