// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMXPath.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What is wrong with an expression, or why its evaluation ended.
struct PelXPathError {
    PelString reason;
    std::size_t column = 0; // counted in characters from 1; 0: of no place

    /// "column 7: the reason".
    PelString getMessage() const;
};

/// The functions, in the order of the table in PelXPathFunctions.
enum class PelXPathFunction {
    LAST,
    POSITION,
    COUNT,
    ID,
    LOCAL_NAME,
    NAMESPACE_URI,
    NAME,
    STRING,
    CONCAT,
    STARTS_WITH,
    CONTAINS,
    SUBSTRING_BEFORE,
    SUBSTRING_AFTER,
    SUBSTRING,
    STRING_LENGTH,
    NORMALIZE_SPACE,
    TRANSLATE,
    BOOLEAN,
    NOT,
    TRUE,
    FALSE,
    LANG,
    NUMBER,
    SUM,
    FLOOR,
    CEILING,
    ROUND
};

/// In which direction a step goes from its context.
enum class PelXPathAxis {
    SELF,
    CHILD,
    PARENT,
    ATTRIBUTE,
    DESCENDANT,
    DESCENDANT_OR_SELF,
    ANCESTOR,
    ANCESTOR_OR_SELF,
    FOLLOWING_SIBLING,
    PRECEDING_SIBLING,
    FOLLOWING,
    PRECEDING
};

/// What a step takes of what lies on its axis.
struct PelXPathTest {
    enum Kind { ANY_NODE, TEXT, COMMENT, INSTRUCTION, TARGET, ANY_NAME, ANY_OF_NAMESPACE, NAME };

    Kind kind = ANY_NODE;
    std::u16string name{};               // local, or the target of an instruction
    std::optional<std::size_t> prefix{}; // its place among the prefixes of the expression
    std::size_t place = 0;               // among the name tests of the expression
};

struct PelXPathNode;

/// A condition in brackets.
struct PelXPathPredicate {
    enum Kind {
        TRUTH,     // asks nothing about positions
        NUMBER,    // [3], [position() = 3]
        LAST,      // [last()]
        POSITIONAL // anything else that may be a number, or asks for position() or last()
    };

    Kind kind = TRUTH;
    double number = 0;
    std::unique_ptr<const PelXPathNode> condition{};
};

struct PelXPathStep {
    PelXPathAxis axis = PelXPathAxis::SELF;
    PelXPathTest test{};
    std::vector<PelXPathPredicate> predicates{};

    /// Of a descendant step that stands for "//child": its predicates count among siblings.
    bool countsAmongSiblings = false;

    bool isPositional() const;
};

/// A node in the tree of an expression. Operators of one precedence that follow one another are one
/// node, so that the tree is no deeper than the expression is nested.
struct PelXPathNode {
    enum Kind {
        LITERAL,
        NUMBER,
        VARIABLE,
        FUNCTION,
        NEGATION,
        OR,
        AND,
        EQUALITY, // = !=
        RELATION, // < <= > >=
        SUM,      // + -
        PRODUCT,  // * div mod
        UNION,
        PATH
    };
    enum Operator {
        EQUAL,
        UNEQUAL,
        LESS,
        LESS_EQUAL,
        GREATER,
        GREATER_EQUAL,
        PLUS,
        MINUS,
        TIMES,
        DIV,
        MOD
    };
    enum Start { CONTEXT, ROOT, OPERAND };

    /// How a path may be followed node by node, instead of set by set: the first node is known
    /// before the others are.
    enum Visits {
        NEVER, // nodes would be met many times
        UNORDERED,
        NESTED, // in order, but for what is below several nodes of the first step
        ORDERED
    };

    Kind kind;
    PelDOMXPath::Type type;

    double number = 0;
    std::u16string text{};
    std::size_t variable = 0; // its place among the variables of the expression
    PelXPathFunction function{};

    /// Operands, arguments; of a path the one that it starts from. `operators` stand between them.
    std::vector<std::unique_ptr<const PelXPathNode>> operands{};
    std::vector<Operator> operators{};

    Start start = CONTEXT;
    std::vector<PelXPathPredicate> filters{}; // of the operand, before the steps
    std::vector<PelXPathStep> steps{};
    Visits visits = NEVER;

    bool usesPosition = false;
    bool usesLast = false;
    bool isConstant = false; // the same from every context of an evaluation

    /// Where an evaluation keeps what it gives: of what is constant, asked often and takes time.
    std::optional<std::size_t> keptAt{};
};

/// A compiled expression. Nothing of it ever changes.
struct PelXPathExpression {
    struct Name {
        std::u16string name;
        std::size_t column;
    };

    std::unique_ptr<const PelXPathNode> root{};
    std::vector<Name> variables{};
    std::vector<Name> prefixes{};
    std::size_t testCount = 0;
    std::size_t keptCount = 0;
};
