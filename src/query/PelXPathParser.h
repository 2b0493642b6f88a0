// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathExpression.h"
#include "query/PelXPathLexer.h"

#include <memory>
#include <string_view>
#include <vector>

/// Makes the tree of an expression: by recursive descent, which is bounded.
class PelXPathParser {
public:
    /// Throws PelXPathError for an expression that is ill-formed, too long or nested too deep.
    static std::shared_ptr<const PelXPathExpression> parse(std::u16string_view text);

private:
    using Node = PelXPathNode;
    using NodePtr = std::unique_ptr<Node>;
    using Token = PelXPathToken;
    using Predicates = std::vector<PelXPathPredicate>;

    explicit PelXPathParser(std::u16string_view text) : lexer(text), token(lexer.next()) {}

    NodePtr parseExpression();
    NodePtr parseOperation(int level);
    NodePtr parseNegation();
    NodePtr parseUnion();
    NodePtr parsePath();
    NodePtr parseFilter();
    NodePtr parsePrimary();
    NodePtr parseCall();
    void parseSteps(std::vector<PelXPathStep>& steps);
    PelXPathStep parseStep();
    PelXPathTest parseTest(bool isOfAttribute);
    PelXPathTest parseNodeType();
    Predicates parsePredicates();
    PelXPathPredicate parsePredicate();

    Token take();
    bool takeIf(Token::Kind kind);
    void require(Token::Kind kind, const char* reason);
    bool isStepNext() const;

    NodePtr make(Node::Kind kind, PelDOMXPath::Type type) const;
    NodePtr finish(NodePtr node);
    std::size_t placeOf(std::u16string_view name, std::size_t position,
                        std::vector<PelXPathExpression::Name>& names) const;

    PelXPathLexer lexer;
    Token token; // the next
    std::shared_ptr<PelXPathExpression> expression = std::make_shared<PelXPathExpression>();
    int depth = 0;
    int predicateDepth = 0;
};
