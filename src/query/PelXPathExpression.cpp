// SPDX-License-Identifier: MIT
#include "query/PelXPathExpression.h"

#include <algorithm>
#include <string>

PelString PelXPathError::getMessage() const {
    return column != 0 ? PelString("column " + std::to_string(column) + ": ") + reason : reason;
}

bool PelXPathStep::isPositional() const {
    return std::any_of(predicates.begin(), predicates.end(),
                       [](const PelXPathPredicate& predicate) {
                           return predicate.kind != PelXPathPredicate::TRUTH;
                       });
}
