// SPDX-License-Identifier: MIT
#include "xerces/tree/PelSourceMarkup.h"

#include <algorithm>
#include <array>

namespace {

// The standard library's find_first_of calls a function for each character.
class AnyOf {
public:
    constexpr explicit AnyOf(std::string_view units) {
        for (const char unit : units)
            has[static_cast<unsigned char>(unit)] = true;
    }

    // The end of the text where there is none.
    std::size_t in(std::string_view text, std::size_t at) const {
        while (at < text.size() && !has[static_cast<unsigned char>(text[at])])
            ++at;
        return at;
    }

private:
    std::array<bool, 256> has{};
};

constexpr AnyOf nameEnds(" \t\n\r=/>?;[");
constexpr AnyOf quotes("\"'");
constexpr AnyOf tagParts(">\"'");

std::size_t behind(std::string_view text, std::string_view end, std::size_t at) {
    return text.find(end, at) + end.size();
}

} // namespace

char16_t PelSourceMarkup::predefined(std::string_view name) {
    return name == "amp"    ? u'&'
           : name == "lt"   ? u'<'
           : name == "gt"   ? u'>'
           : name == "quot" ? u'"'
           : name == "apos" ? u'\''
                            : u'\0';
}

bool PelSourceMarkup::isWhiteSpace(std::string_view text) {
    return std::all_of(text.begin(), text.end(), isSpace);
}

std::size_t PelSourceMarkup::behindSpace(std::string_view text, std::size_t at) {
    while (at < text.size() && isSpace(text[at]))
        ++at;
    return at;
}

std::size_t PelSourceMarkup::behindName(std::string_view text, std::size_t at) {
    return nameEnds.in(text, at);
}

std::size_t PelSourceMarkup::behindComment(std::string_view text, std::size_t at) {
    return behind(text, "-->", at + 4);
}

std::size_t PelSourceMarkup::behindSection(std::string_view text, std::size_t at) {
    return behind(text, "]]>", at + 9);
}

std::size_t PelSourceMarkup::behindInstruction(std::string_view text, std::size_t at) {
    return behind(text, "?>", at + 2);
}

// Quotes are literals in declarations only; in comments and instructions they mean nothing.
std::size_t PelSourceMarkup::behindDocumentType(std::string_view text, std::size_t at) {
    bool isInSubset = false;
    for (at += 2;;) {
        at = text.find_first_of("[]<>\"'", at);
        const char unit = text[at];
        if (unit == '"' || unit == '\'')
            at = text.find(unit, at + 1) + 1;
        else if (text.compare(at, 4, "<!--") == 0)
            at = behindComment(text, at);
        else if (text.compare(at, 2, "<?") == 0)
            at = behindInstruction(text, at);
        else {
            ++at;
            if (unit == '[' || unit == ']')
                isInSubset = unit == '[';
            else if (unit == '>' && !isInSubset)
                return at;
        }
    }
}

std::size_t PelSourceMarkup::behindStartTag(std::string_view text, std::size_t at) {
    for (;;) {
        at = tagParts.in(text, at);
        if (text[at] == '>')
            return at + 1;
        at = text.find(text[at], at + 1) + 1;
    }
}

std::size_t PelSourceMarkup::behindDeclaration(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    const std::size_t at = text.substr(0, mark.size()) == mark ? mark.size() : 0;
    return text.compare(at, 5, "<?xml") == 0 && isSpace(text[at + 5]) ? behindInstruction(text, at)
                                                                      : at;
}

std::optional<std::string_view> PelSourceMarkup::indentationAt(std::string_view text,
                                                               std::size_t begin) {
    std::size_t at = begin;
    while (at > 0 && (text[at - 1] == ' ' || text[at - 1] == '\t'))
        --at;
    if (at > 0 && text[at - 1] != '\n' && text[at - 1] != '\r')
        return std::nullopt;
    return text.substr(at, begin - at);
}

bool PelSourceMarkup::findAttribute(std::string_view text, std::size_t at, Attribute& attribute) {
    at = behindSpace(text, at);
    if (text[at] == '>' || text[at] == '/')
        return false;
    attribute.begin = at;
    attribute.nameEnd = behindName(text, at);
    at = quotes.in(text, attribute.nameEnd);
    attribute.valueBegin = at + 1;
    attribute.end = text.find(text[at], at + 1) + 1;
    return true;
}

std::size_t PelSourceMarkup::findReference(std::string_view text, std::size_t at, std::size_t end) {
    for (;; ++at) {
        at = std::min(text.substr(0, end).find('&', at), end); // no further: there may be few
        if (at == end)
            return end;
        if (text[at + 1] != '#' && !predefined(text.substr(at + 1, text.find(';', at) - at - 1)))
            return at;
    }
}
