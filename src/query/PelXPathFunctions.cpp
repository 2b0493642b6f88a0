// SPDX-License-Identifier: MIT
#include "query/PelXPathFunctions.h"

#include "core/PelCharacters.h"
#include "query/PelXPathText.h"

#include <cmath>
#include <limits>

using Function = PelXPathFunction;
using Node = PelXPathTree::Node;
using Signature = PelXPathFunctions::Signature;
using Type = PelDOMXPath::Type;

namespace {

constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

constexpr Type nodeSet = PelDOMXPath::NODES;
constexpr Type string = PelDOMXPath::STRING;
constexpr Type numeric = PelDOMXPath::NUMBER;
constexpr Type boolean = PelDOMXPath::BOOLEAN;

constexpr Signature signatures[] = {{u"last", Function::LAST, numeric, 0, 0},
                                    {u"position", Function::POSITION, numeric, 0, 0},
                                    {u"count", Function::COUNT, numeric, 1, 1, true},
                                    {u"id", Function::ID, nodeSet, 1, 1},
                                    {u"local-name", Function::LOCAL_NAME, string, 0, 1, true},
                                    {u"namespace-uri", Function::NAMESPACE_URI, string, 0, 1, true},
                                    {u"name", Function::NAME, string, 0, 1, true},
                                    {u"string", Function::STRING, string, 0, 1},
                                    {u"concat", Function::CONCAT, string, 2, anyNumber},
                                    {u"starts-with", Function::STARTS_WITH, boolean, 2, 2},
                                    {u"contains", Function::CONTAINS, boolean, 2, 2},
                                    {u"substring-before", Function::SUBSTRING_BEFORE, string, 2, 2},
                                    {u"substring-after", Function::SUBSTRING_AFTER, string, 2, 2},
                                    {u"substring", Function::SUBSTRING, string, 2, 3},
                                    {u"string-length", Function::STRING_LENGTH, numeric, 0, 1},
                                    {u"normalize-space", Function::NORMALIZE_SPACE, string, 0, 1},
                                    {u"translate", Function::TRANSLATE, string, 3, 3},
                                    {u"boolean", Function::BOOLEAN, boolean, 1, 1},
                                    {u"not", Function::NOT, boolean, 1, 1},
                                    {u"true", Function::TRUE, boolean, 0, 0},
                                    {u"false", Function::FALSE, boolean, 0, 0},
                                    {u"lang", Function::LANG, boolean, 1, 1},
                                    {u"number", Function::NUMBER, numeric, 0, 1},
                                    {u"sum", Function::SUM, numeric, 1, 1, true},
                                    {u"floor", Function::FLOOR, numeric, 1, 1},
                                    {u"ceiling", Function::CEILING, numeric, 1, 1},
                                    {u"round", Function::ROUND, numeric, 1, 1}};

/// The arguments of a call, with a buffer for each that is a text.
class Call {
public:
    Call(PelXPathEvaluator& ownEvaluator, const PelXPathNode& call,
         const PelXPathContext& ownContext)
        : evaluator(ownEvaluator), tree(ownEvaluator.getTree()), arguments(call.operands),
          context(ownContext) {}

    std::size_t count() const { return arguments.size(); }
    const PelXPathNode& operator[](std::size_t index) const { return *arguments[index]; }

    double number(std::size_t index) { return evaluator.number(*arguments[index], context); }
    bool truth(std::size_t index) { return evaluator.truth(*arguments[index], context); }

    std::u16string_view text(std::size_t index) {
        constexpr std::size_t mostBuffers = 3;
        return evaluator.view(*arguments[index], context, buffers[index % mostBuffers]);
    }

    /// The argument, or without one what the context node is as a text.
    std::u16string_view textOrContext() {
        return count() > 0 ? text(0) : tree.textOf(*context.node, buffers[0]);
    }

    /// The first node of the argument, or without one the context node; null for an empty set.
    Node* nodeOrContext() {
        return count() > 0 ? evaluator.first(*arguments[0], context) : context.node;
    }

    double sum() {
        double all = 0;
        for (const Node* const node : evaluator.nodes(*arguments[0], context).nodes)
            all += PelXPathText::toNumber(tree.textOf(*node, buffers[0]));
        return all;
    }

    std::u16string name(Function function) {
        const Node* const node = nodeOrContext();
        if (node == nullptr)
            return {};
        PelXPathNames& names = evaluator.getNames();
        if (function == Function::NAME)
            return std::u16string(PelXPathNames::nameOf(*node));
        return std::u16string(function == Function::LOCAL_NAME ? names.localNameOf(*node)
                                                               : names.namespaceOf(*node));
    }

    std::u16string concatenated() {
        std::u16string all;
        for (std::size_t i = 0; i < count(); ++i) {
            const std::u16string_view part = text(i);
            tree.count(part.size());
            all.append(part);
        }
        return all;
    }

    std::u16string before() {
        const std::u16string_view whole = text(0);
        const std::size_t place = PelXPathText::find(whole, text(1));
        return std::u16string(whole.substr(0, place == whole.npos ? 0 : place));
    }

    std::u16string after() {
        const std::u16string_view whole = text(0);
        const std::u16string_view part = text(1);
        const std::size_t place = PelXPathText::find(whole, part);
        return std::u16string(place == whole.npos ? std::u16string_view()
                                                  : whole.substr(place + part.size()));
    }

    std::u16string substring() {
        const std::u16string_view whole = text(0);
        const double begin = PelXPathText::round(number(1));
        const double end = count() > 2 ? begin + PelXPathText::round(number(2))
                                       : std::numeric_limits<double>::infinity();
        return std::u16string(PelXPathText::substring(whole, begin, end));
    }

    bool isOfLanguage() {
        const std::u16string_view wanted = text(0);
        const XMLCh* const language = evaluator.getNames().languageOf(*context.node);
        return language != nullptr && PelXPathText::isLanguage(language, wanted);
    }

private:
    PelXPathEvaluator& evaluator;
    PelXPathTree& tree;
    const std::vector<std::unique_ptr<const PelXPathNode>>& arguments;
    const PelXPathContext& context;
    std::u16string buffers[3];
};

std::u16string textOf(Call& call, Function function) {
    switch (function) {
    case Function::LOCAL_NAME:
    case Function::NAMESPACE_URI:
    case Function::NAME:
        return call.name(function);
    case Function::CONCAT:
        return call.concatenated();
    case Function::SUBSTRING_BEFORE:
        return call.before();
    case Function::SUBSTRING_AFTER:
        return call.after();
    case Function::SUBSTRING:
        return call.substring();
    case Function::NORMALIZE_SPACE:
        return PelXPathText::normalized(call.textOrContext());
    case Function::TRANSLATE: {
        const std::u16string_view text = call.text(0);
        const std::u16string_view from = call.text(1);
        return PelXPathText::translated(text, from, call.text(2));
    }
    default:
        return std::u16string(call.textOrContext()); // string()
    }
}

} // namespace

const Signature* PelXPathFunctions::find(std::u16string_view name) {
    for (const Signature& signature : signatures)
        if (signature.name == name)
            return &signature;
    return nullptr;
}

double PelXPathFunctions::number(PelXPathEvaluator& evaluator, const PelXPathNode& part,
                                 const PelXPathContext& context) {
    Call call(evaluator, part, context);
    switch (part.function) {
    case Function::LAST:
        return static_cast<double>(context.size);
    case Function::POSITION:
        return static_cast<double>(context.position);
    case Function::COUNT:
        return static_cast<double>(evaluator.nodes(call[0], context).nodes.size());
    case Function::STRING_LENGTH:
        return static_cast<double>(PelXPathText::countCharacters(call.textOrContext()));
    case Function::SUM:
        return call.sum();
    case Function::FLOOR:
        return std::floor(call.number(0));
    case Function::CEILING:
        return std::ceil(call.number(0));
    case Function::ROUND:
        return PelXPathText::round(call.number(0));
    default: // number()
        return call.count() > 0 ? call.number(0) : PelXPathText::toNumber(call.textOrContext());
    }
}

bool PelXPathFunctions::truth(PelXPathEvaluator& evaluator, const PelXPathNode& part,
                              const PelXPathContext& context) {
    Call call(evaluator, part, context);
    switch (part.function) {
    case Function::STARTS_WITH: {
        const std::u16string_view text = call.text(0);
        const std::u16string_view start = call.text(1);
        return text.substr(0, start.size()) == start;
    }
    case Function::CONTAINS: {
        const std::u16string_view text = call.text(0);
        return PelXPathText::find(text, call.text(1)) != text.npos;
    }
    case Function::BOOLEAN:
        return call.truth(0);
    case Function::NOT:
        return !call.truth(0);
    case Function::LANG:
        return call.isOfLanguage();
    default:
        return part.function == Function::TRUE;
    }
}

std::u16string PelXPathFunctions::text(PelXPathEvaluator& evaluator, const PelXPathNode& part,
                                       const PelXPathContext& context) {
    Call call(evaluator, part, context);
    std::u16string made = textOf(call, part.function);
    evaluator.getTree().count(made.size());
    return made;
}

// Of a set, the words of each of its nodes.
PelXPathSet PelXPathFunctions::nodes(PelXPathEvaluator& evaluator, const PelXPathNode& part,
                                     const PelXPathContext& context) {
    Call call(evaluator, part, context);
    if (call[0].type != PelDOMXPath::NODES)
        return evaluator.withIds(call.text(0));
    std::u16string words;
    std::u16string buffer;
    for (const Node* const node : evaluator.nodes(call[0], context).nodes)
        words.append(evaluator.getTree().textOf(*node, buffer)).append(u" ");
    return evaluator.withIds(words);
}
