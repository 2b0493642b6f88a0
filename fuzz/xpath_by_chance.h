// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <vector>

class Chance {
public:
    explicit Chance(unsigned long long number) : engine(number) {}

    std::size_t below(std::size_t limit) { return engine() % limit; }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    template <class Choices>
    std::string oneOf(const Choices& choices) {
        return choices[below(std::size(choices))];
    }

private:
    std::mt19937_64 engine;
};

inline const std::vector<std::string> wordsByChance = {"1", "2", "-1", ".5", "5.", "1e1", "+1", "0", "10",
    "a", "b", "ab", "aba", "3", "12", "x y", " 2 ", " ", "\xC3\xA9", "\xF0\x9F\x98\x80", "i1 i2", "i3", "NaN",
    "- 1", "en"};

/// A document, the same one for the same number.
struct DocumentByChance {
    explicit DocumentByChance(unsigned long long number) : chance(number), hasPlainNames(chance.oneIn(2)) {
        if (chance.oneIn(2)) add("<!DOCTYPE r [<!ATTLIST a id ID #IMPLIED><!ATTLIST b k ID #IMPLIED>]>");
        addMisc();
        add("<r xmlns:p='urn:p' xmlns:q='urn:q'");
        addContent(0);
        add("</r>");
        addMisc();
    }

    Chance chance;
    const bool hasPlainNames; // each prefix stands for one namespace, and no other has one
    std::string sectioned;    // with CDATA sections
    std::string merged;       // without

private:
    void add(const std::string& text) {
        sectioned += text;
        merged += text;
    }

    void addMisc() {
        if (chance.oneIn(4)) add("<!--" + chance.oneOf(wordsByChance) + "-->");
        if (chance.oneIn(4)) add("<?t " + chance.oneOf(wordsByChance) + "?>");
    }

    void addAttributes(int depth) {
        static const char* const declarations[] = {
            " xmlns='urn:p'", " xmlns='urn:q'", " xmlns=''", " xmlns:p='urn:q'", " xmlns:p='urn:p'"};
        static const char* const languages[] = {"en", "EN-gb", "de", ""};
        if (!hasPlainNames && depth > 0 && chance.oneIn(4)) add(chance.oneOf(declarations));
        if (chance.oneIn(3)) add(" id='i" + std::to_string(chance.below(6)) + "'");
        if (chance.oneIn(3)) add(" k='" + chance.oneOf(wordsByChance) + "'");
        if (chance.oneIn(5)) add(" p:k='" + chance.oneOf(wordsByChance) + "'");
        if (chance.oneIn(6)) add(" xml:lang='" + chance.oneOf(languages) + "'");
    }

    // From the name in the tag up to the end tag.
    void addContent(int depth) {
        static const char* const names[] = {"a", "a", "b", "b", "c", "p:a", "q:b"};
        static const std::size_t most[] = {9, 7, 4, 3, 1}; // and one less
        addAttributes(depth);
        add(">");
        for (std::size_t count = chance.below(most[depth]); count > 0; --count) {
            const std::size_t kind = chance.below(6);
            if (kind == 0)
                addMisc();
            else if (kind < 3)
                addTexts();
            else
                addElement(chance.oneOf(names), depth + 1);
        }
    }

    void addElement(const std::string& name, int depth) {
        add("<" + name);
        addContent(depth);
        add("</" + name + ">");
    }

    void addTexts() {
        for (std::size_t count = chance.below(4) / 2 + 1; count > 0; --count) {
            const std::string text = chance.oneOf(wordsByChance);
            merged += text;
            sectioned += chance.oneIn(3) ? "<![CDATA[" + text + "]]>" : text;
            if (chance.oneIn(8)) sectioned += "<![CDATA[]]>";
        }
    }
};

/// An expression, the same one for the same number.
class ExpressionByChance {
public:
    explicit ExpressionByChance(unsigned long long number) : chance(number), text(drawn('a', 4)) {
        constexpr std::size_t wellFormed = 20; // for one that may not be
        const std::size_t at = chance.below(text.size());
        if (chance.oneIn(wellFormed) && (text[at] & 0x80) == 0) text.erase(at, 1);
    }

    const std::string& get() const { return text; }

private:
    /// What a letter behind % may become. What gets deeper ends with the rows for the depth 0.
    struct Part {
        char letter;
        bool getsDeeper;
        std::vector<std::string> rows;
        std::vector<std::string> lastRows;
    };

    std::string drawn(char letter, int depth) {
        static const std::vector<Part> parts = {
            {'a', false, {"%n", "%t", "%b", "%b", "%s", "%s", "%s", "%s"}, {"%n", "%t", "%b", "%s"}},
            {'s', true,
                {"%s%_|%_%s", "%s|%s", "(%s)%p", "(%s)%p%/%r", "id(%s)", "id(%t)%/%r", "/", "%r", "%r", "%r",
                    "/%r", "/%r", "//%r", "//%r", "//%r", "//%r", "//%r", "//%r"},
                {"%r", "/%r", "//%r"}},
            {'r', false, {"%q", "%q%/%q", "%q%/%q%/%q", "*/%x::%e[%i]", "*/*/%x::%e[%i]"}, {}},
            {'q', false,
                {".", "..", "@%k%p", "@%k%p", "attribute%_::%_%k%p", "%x%_::%_%e%p", "%x::%e%p", "%x::%e%p",
                    "%x::%e%p", "%e%p", "%e%p", "%e%p"},
                {}},
            {'/', false, {"/", "/", "//"}, {}},
            {'_', false, {"", "", "", " "}, {}},
            {'x', false,
                {"child", "child", "descendant", "parent", "ancestor", "following-sibling",
                    "preceding-sibling", "following", "preceding", "self", "descendant-or-self",
                    "ancestor-or-self"},
                {}},
            {'e', false,
                {"a", "b", "c", "p:a", "q:b", "p:*", "*", "*", "*", "*", "node()", "node()", "node()",
                    "text()", "text()", "comment()", "processing-instruction()",
                    "processing-instruction('t')"},
                {}},
            {'k', false, {"id", "k", "k", "p:k", "*", "*", "xml:lang", "p:*", "node()"}, {}},
            {'p', false, {"", "", "", "", "", "[%i]", "[%i]", "[%a]", "[%i][%i]", "[%i][%a]"}, {"", "[%i]"}},
            {'i', true,
                {"1", "2", "3", "last()", "position()=2", "position() < 3", "position() > 1", "last()-1",
                    "position()=last()", "1.5", "position() mod 2=1", "position()!=last()", "%n"},
                {"1", "last()", "position() < 3", "position() > 1"}},
            // Those with few digits are apart: peers write the others otherwise.
            {'m', true,
                {"count(%s)", "sum(%s)", "string-length(%u)", "string-length()", "floor(%m)", "ceiling(%m)",
                    "round(%m)", "number(%s)", "-%_%m", "%m + %m", "position()", "last()"},
                {"0", "1", "2", "3", "10", ".5", "1.5", "5.", "0.25"}},
            {'n', true,
                {"%m", "%m", "%m", "floor(%n)", "ceiling(%n)", "round(%n)", "number(%a)", "number()", "-%_%n",
                    "%n+%n", "%n - %n", "%n%_*%_%n", "%n mod %n", "%n div %n", "0.1", "0.000001",
                    "12345678901234567890", "1000000000000000", "4503599627370497", "123456789.125",
                    "0.49999999999999994"},
                {"0", "1", "2", "3", "10", ".5", "1.5", "5.", "0.25"}},
            {'u', false, {"%m", "%t", "%t", "%s", "%s"}, {}},
            {'t', true,
                {"string(%u)", "string(%n)", "string(%b)", "string()", "concat(%u,%_%u)",
                    "substring-before(%u,%u)", "substring-after(%u,%u)", "substring(%u,%n)",
                    "substring(%u,%n,%n)", "normalize-space(%u)", "normalize-space()", "translate(%u,%u,%u)",
                    "name(%s)", "local-name(%s)", "namespace-uri(%s)", "local-name()", "'%w'", "'%w%w'"},
                {"'%w'", "'%w%w'"}},
            {'w', false, wordsByChance, {}},
            {'b', true,
                {"not(%a)", "boolean(%a)", "starts-with(%u,%u)", "contains(%u,%u)", "%b and %b", "%b or %b",
                    "lang(%u)", "lang('en')", "lang('EN')", "%a%_%c%_%a", "%v%_%c%_%v", "%s%_%c%_%m"},
                {"true()", "false()"}},
            {'v', false, {"//@k", "//@*", "//text()", "*", "*/@k", "%s", "%s"}, {}},
            {'c', false, {"=", "!=", "<", "<=", ">", ">="}, {}},
        };
        const Part& part = *std::find_if(
            parts.begin(), parts.end(), [letter](const Part& each) { return each.letter == letter; });
        return filled(chance.oneOf(depth > 0 || part.lastRows.empty() ? part.rows : part.lastRows),
            part.getsDeeper && depth > 0 ? depth - 1 : depth);
    }

    std::string filled(const std::string& row, int depth) {
        std::string whole;
        for (std::size_t i = 0; i < row.size(); ++i)
            if (row[i] == '%')
                whole += drawn(row[++i], depth);
            else
                whole.push_back(row[i]);
        return whole;
    }

    Chance chance;
    std::string text;
};
