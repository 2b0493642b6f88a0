// SPDX-License-Identifier: MIT
#include "query/PelXPathLexer.h"

#include "core/PelCharacters.h"
#include "query/PelXPathExpression.h"

#include <xercesc/util/XMLChar.hpp>

#include <algorithm>
#include <utility>

using PelCharacters::isDigit;
using Token = PelXPathToken;

namespace {

struct Sign {
    std::u16string_view text;
    Token::Kind kind;
};

// Longer ones first.
constexpr Sign signs[] = {{u"//", Token::DOUBLE_SLASH},
                          {u"::", Token::COLONS},
                          {u"..", Token::DOUBLE_DOT},
                          {u"!=", Token::UNEQUAL},
                          {u"<=", Token::LESS_EQUAL},
                          {u">=", Token::GREATER_EQUAL},
                          {u"/", Token::SLASH},
                          {u"|", Token::UNION},
                          {u"=", Token::EQUAL},
                          {u"<", Token::LESS},
                          {u">", Token::GREATER},
                          {u"+", Token::PLUS},
                          {u"-", Token::MINUS},
                          {u"@", Token::AT},
                          {u".", Token::DOT},
                          {u",", Token::COMMA},
                          {u"(", Token::LEFT_PARENTHESIS},
                          {u")", Token::RIGHT_PARENTHESIS},
                          {u"[", Token::LEFT_BRACKET},
                          {u"]", Token::RIGHT_BRACKET}};

constexpr Sign wordOperators[] = {
    {u"or", Token::OR}, {u"and", Token::AND}, {u"div", Token::DIV}, {u"mod", Token::MOD}};

constexpr std::u16string_view nodeTypes[] = {u"comment", u"text", u"processing-instruction",
                                             u"node"};

} // namespace

std::size_t PelXPathLexer::columnOf(std::size_t place) const {
    const std::u16string_view before = whole.substr(0, place);
    const auto pairs = std::count_if(before.begin(), before.end(), PelCharacters::isLowSurrogate);
    return before.size() - static_cast<std::size_t>(pairs) + 1;
}

void PelXPathLexer::fail(std::size_t place, const char* reason) const {
    throw PelXPathError{reason, columnOf(place)};
}

bool PelXPathLexer::isAfterOperand() const {
    switch (last) {
    case Token::END:
    case Token::AT:
    case Token::COLONS:
    case Token::COMMA:
    case Token::LEFT_PARENTHESIS:
    case Token::LEFT_BRACKET:
        return false;
    default:
        return last < Token::SLASH;
    }
}

PelXPathToken PelXPathLexer::next() {
    const Token token = read();
    last = token.kind;
    return token;
}

Token PelXPathLexer::read() {
    Token token;
    token.position = position = spaceEnd(position);
    const char16_t first = at(position);
    if (position == whole.size())
        return token;
    if (first == u'"' || first == u'\'')
        readLiteral(token);
    else if (isDigit(first) || (first == u'.' && isDigit(at(position + 1))))
        readNumber(token);
    else if (first == u'*' && isAfterOperand())
        token = {Token::TIMES, whole.substr(position++, 1), {}, token.position};
    else if (first == u'*')
        token = {Token::ANY_NAME, whole.substr(position++, 1), {}, token.position};
    else if (first == u'$' || nameUnitsAt(position, true) > 0)
        readName(token);
    else
        readSign(token);
    return token;
}

void PelXPathLexer::readSign(Token& token) {
    for (const Sign& sign : signs)
        if (whole.substr(position, sign.text.size()) == sign.text) {
            token.kind = sign.kind;
            position += sign.text.size();
            return;
        }
    fail(position, "a character that means nothing here");
}

void PelXPathLexer::readLiteral(Token& token) {
    const std::size_t end = whole.find(whole[position], position + 1);
    if (end == whole.npos)
        fail(position, "the quote at the text's end is missing");
    token.kind = Token::LITERAL;
    token.text = whole.substr(position + 1, end - position - 1);
    position = end + 1;
}

void PelXPathLexer::readNumber(Token& token) {
    const std::size_t begin = position;
    while (isDigit(at(position)))
        ++position;
    if (at(position) == u'.')
        ++position;
    while (isDigit(at(position)))
        ++position;
    token.kind = Token::NUMBER;
    token.text = whole.substr(begin, position - begin);
}

void PelXPathLexer::readName(Token& token) {
    const bool isVariable = at(position) == u'$';
    if (isVariable)
        ++position;
    token.text = takeName();
    if (token.text.empty())
        fail(position, "a variable's name is missing");
    if (!isVariable && isAfterOperand()) {
        for (const Sign& word : wordOperators)
            if (word.text == token.text)
                token.kind = word.kind;
        if (token.kind == Token::END)
            fail(token.position, "an operator is missing");
        return;
    }
    token.kind = isVariable ? Token::VARIABLE : Token::NAME;
    if (at(position) == u':' && at(position + 1) != u':') {
        ++position;
        token.prefix = std::exchange(token.text, takeName());
        if (token.text.empty() && at(position) == u'*' && !isVariable) {
            token.kind = Token::ANY_NAME;
            ++position;
            return;
        }
        if (token.text.empty())
            fail(position, "a name is missing");
    }
    if (!isVariable)
        classify(token);
}

void PelXPathLexer::classify(Token& token) const {
    const std::size_t end = spaceEnd(position);
    if (at(end) == u':' && at(end + 1) == u':') {
        token.kind = Token::AXIS;
    } else if (at(end) == u'(') {
        const bool isType = token.prefix.empty() &&
                            std::find(std::begin(nodeTypes), std::end(nodeTypes), token.text) !=
                                std::end(nodeTypes);
        token.kind = isType ? Token::NODE_TYPE : Token::FUNCTION;
    }
}

std::u16string_view PelXPathLexer::takeName() {
    const std::size_t begin = position;
    while (const std::size_t units = nameUnitsAt(position, position == begin))
        position += units;
    return whole.substr(begin, position - begin);
}

// The units of the character there if it can be in a name without a colon, else 0. Names as XML 1.1
// has them, which are those of 1.0 and more.
std::size_t PelXPathLexer::nameUnitsAt(std::size_t place, bool isFirst) const {
    const char16_t unit = at(place);
    if (PelCharacters::isPair(unit, at(place + 1)))
        return unit <= 0xDB7F ? 2 : 0;
    using Characters = xercesc::XMLChar1_1;
    return (isFirst ? Characters::isFirstNCNameChar(unit) : Characters::isNCNameChar(unit)) ? 1 : 0;
}

std::size_t PelXPathLexer::spaceEnd(std::size_t place) const {
    while (PelCharacters::isSpace(at(place)))
        ++place;
    return place;
}
