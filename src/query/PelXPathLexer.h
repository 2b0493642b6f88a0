// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

/// A word of an expression.
struct PelXPathToken {
    enum Kind {
        END,
        LITERAL, // its text is without the quotes
        NUMBER,
        VARIABLE,  // its name is without the dollar sign
        NAME,      // of an element or attribute: "x", "p:x"
        ANY_NAME,  // "*", "p:*"
        FUNCTION,  // a name in front of a parenthesis
        NODE_TYPE, // the same of comment, text, processing-instruction and node
        AXIS,      // a name in front of "::"
        AT,
        DOT,
        DOUBLE_DOT,
        COLONS,
        COMMA,
        LEFT_PARENTHESIS,
        RIGHT_PARENTHESIS,
        LEFT_BRACKET,
        RIGHT_BRACKET,
        // The operators, from here on.
        SLASH,
        DOUBLE_SLASH,
        UNION,
        OR,
        AND,
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

    Kind kind = END;
    std::u16string_view text{};   // without a prefix
    std::u16string_view prefix{}; // of a name; empty: none
    std::size_t position = 0;     // of its first unit in the expression
};

/// Goes through an expression word by word. What "*", "and", "or", "div" and "mod" mean depends on
/// the word before: after an operand they are operators, elsewhere names.
class PelXPathLexer {
public:
    explicit PelXPathLexer(std::u16string_view expression) : whole(expression) {}

    /// The next word. Throws PelXPathError where there is none.
    PelXPathToken next();

    /// The column of a unit: counted in characters, from 1.
    std::size_t columnOf(std::size_t place) const;

    [[noreturn]] void fail(std::size_t place, const char* reason) const;

private:
    char16_t at(std::size_t place) const { return place < whole.size() ? whole[place] : u'\0'; }

    PelXPathToken read();
    void readSign(PelXPathToken& token);
    void readLiteral(PelXPathToken& token);
    void readNumber(PelXPathToken& token);
    void readName(PelXPathToken& token);
    void classify(PelXPathToken& token) const;
    std::u16string_view takeName();
    std::size_t nameUnitsAt(std::size_t place, bool isFirst) const;
    std::size_t spaceEnd(std::size_t place) const;
    bool isAfterOperand() const;

    const std::u16string_view whole;
    std::size_t position = 0;
    PelXPathToken::Kind last = PelXPathToken::END;
};
