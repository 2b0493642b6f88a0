// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// The units of UTF-16, and the characters of XML.
namespace PelCharacters {

constexpr bool isSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr bool isPair(char32_t high, char32_t low) {
    return isHighSurrogate(high) && isLowSurrogate(low);
}

constexpr char32_t fromPair(char16_t high, char16_t low) {
    return 0x10000 + ((high - 0xD800U) << 10) + (low - 0xDC00U);
}

/// The two units of a character from U+10000 on.
constexpr char16_t highSurrogateOf(char32_t character) {
    return static_cast<char16_t>(0xD7C0 + (character >> 10));
}
constexpr char16_t lowSurrogateOf(char32_t character) {
    return static_cast<char16_t>(0xDC00 | (character & 0x3FF));
}

inline void append(std::u16string& text, char32_t character) {
    if (character < 0x10000) {
        text.push_back(static_cast<char16_t>(character));
        return;
    }
    text.push_back(highSurrogateOf(character));
    text.push_back(lowSurrogateOf(character));
}

constexpr bool isDigit(char32_t unit) {
    return unit >= U'0' && unit <= U'9';
}

/// The white space of XML.
constexpr std::u16string_view space = u" \t\r\n";

constexpr bool isSpace(char32_t unit) {
    return unit == U' ' || unit == U'\t' || unit == U'\r' || unit == U'\n';
}

/// U+0000, and the control characters that XML 1.0 forbids. XML 1.1 has these as references.
constexpr bool isForbiddenControl(char32_t unit) {
    return unit < U' ' && !isSpace(unit);
}

/// What XML 1.1 has as references only, or takes for a line end.
constexpr bool needsReference11(char32_t unit) {
    return isForbiddenControl(unit) || (unit >= 0x7F && unit <= 0x9F) || unit == 0x2028;
}

/// A character of XML 1.0; no surrogate is one.
constexpr bool isCharacter(char32_t character) {
    return !isForbiddenControl(character) && !isSurrogate(character) &&
           (character < 0xFFFE || character >= 0x10000) && character <= 0x10FFFF;
}

} // namespace PelCharacters
