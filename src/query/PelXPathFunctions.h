// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathEvaluator.h"
#include "query/PelXPathExpression.h"

#include <cstddef>
#include <string>
#include <string_view>

/// The functions that expressions can call.
namespace PelXPathFunctions {

struct Signature {
    std::u16string_view name;
    PelXPathFunction function;
    PelDOMXPath::Type result;
    std::size_t least; // arguments
    std::size_t most;
    bool takesNodes = false; // its argument has to be a set
};

/// Null for a name that no function has.
const Signature* find(std::u16string_view name);

// What a call gives: for each result its function.
double number(PelXPathEvaluator& evaluator, const PelXPathNode& call,
              const PelXPathContext& context);
bool truth(PelXPathEvaluator& evaluator, const PelXPathNode& call, const PelXPathContext& context);
std::u16string text(PelXPathEvaluator& evaluator, const PelXPathNode& call,
                    const PelXPathContext& context);
PelXPathSet nodes(PelXPathEvaluator& evaluator, const PelXPathNode& call,
                  const PelXPathContext& context);

} // namespace PelXPathFunctions
