// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathExpression.h"
#include "query/PelXPathIds.h"
#include "query/PelXPathNames.h"
#include "query/PelXPathOrder.h"
#include "query/PelXPathSteps.h"
#include "query/PelXPathTree.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <variant>
#include <vector>

/// From where a part of an expression is evaluated.
struct PelXPathContext {
    PelXPathTree::Node* node = nullptr;
    std::size_t position = 1;
    std::size_t size = 1;
};

/// A truth value, a number or a text: what a variable can be.
using PelXPathValue = std::variant<bool, double, std::u16string>;

/// Evaluates an expression once. Each kind of value has its own function, which converts as the
/// rules say; sets are made only where no shorter way will do.
class PelXPathEvaluator {
public:
    using Node = PelXPathTree::Node;
    using Context = PelXPathContext;
    using Texts = std::unordered_set<std::u16string>;

    /// `values` are those of the expression's variables. The expression and the tree have to live
    /// as long as this.
    PelXPathEvaluator(const PelXPathExpression& expression, PelXPathTree& ownTree,
                      std::vector<PelXPathValue> values);

    PelXPathTree& getTree() { return tree; }
    PelXPathNames& getNames() { return names; }

    double number(const PelXPathNode& part, const Context& context);
    bool truth(const PelXPathNode& part, const Context& context);

    /// As a text, in `buffer` only if it has to be made.
    std::u16string_view view(const PelXPathNode& part, const Context& context,
                             std::u16string& buffer);

    // Of parts that are sets: all nodes; the first in document order, null where there is none; the
    // texts of all, in `made` unless they are known.
    PelXPathSet nodes(const PelXPathNode& part, const Context& context);
    Node* first(const PelXPathNode& part, const Context& context);
    const Texts& texts(const PelXPathNode& part, const Context& context, Texts& made);

    /// Gives them to `use`, in any order and maybe twice, until that is true; whether it was.
    bool any(const PelXPathNode& part, const Context& context, const PelXPathUse& use);

    /// What a part gives; of a variable, what that is.
    PelDOMXPath::Type typeOf(const PelXPathNode& part) const;
    static PelDOMXPath::Type typeOf(const PelXPathValue& value);

    bool holds(const PelXPathPredicate& predicate, const Context& context);

    /// The elements whose declared IDs are the words of a text.
    PelXPathSet withIds(std::u16string_view words);

private:
    /// What a constant part has given.
    struct Kept {
        bool isKnown = false;
        PelXPathValue value{};
        PelXPathSet set{};
        bool areTextsKnown = false;
        Texts texts{};               // of the set's nodes
        std::optional<bool> isAny{}; // node in the set, which may not be known
    };

    Kept& keep(const PelXPathNode& part, const Context& context);
    const PelXPathValue* knownValue(const PelXPathNode& part, const Context& context);

    double makeNumber(const PelXPathNode& part, const Context& context);
    bool makeTruth(const PelXPathNode& part, const Context& context);
    PelXPathSet makeNodes(const PelXPathNode& part, const Context& context);
    double fold(const PelXPathNode& part, const Context& context);

    bool anyOf(const PelXPathSet& set, const PelXPathUse& use);
    bool findAny(const PelXPathNode& part, const Context& context, const PelXPathUse& use);
    bool isAny(const PelXPathNode& part, const Context& context);

    PelXPathSet follow(const PelXPathNode& path, const Context& context);
    bool visit(const PelXPathNode& path, std::size_t index, Node& node, const PelXPathUse& use);
    Node* firstNested(const PelXPathNode& path, Node& start, bool& isSure);
    Node& startOf(const PelXPathNode& path, const Context& context) const;

    PelXPathTree& tree;
    PelXPathNames names;
    PelXPathOrder order;
    PelXPathSteps steps;
    PelXPathIds ids;
    const std::vector<PelXPathValue> variables;
    std::vector<Kept> kept;
};
