// SPDX-License-Identifier: MIT
#include "query/PelXPathText.h"

#include "core/PelCharacters.h"
#include "core/PelNumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <vector>

using PelCharacters::isDigit;

namespace {

std::u16string_view trimmed(std::u16string_view text) {
    while (!text.empty() && PelCharacters::isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && PelCharacters::isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

// "12", "12.", "12.5", ".5".
bool isDecimal(std::u16string_view text) {
    const auto isOther = [](char16_t unit) { return !isDigit(unit) && unit != u'.'; };
    return std::none_of(text.begin(), text.end(), isOther) &&
           std::count(text.begin(), text.end(), u'.') <= 1 &&
           std::any_of(text.begin(), text.end(), isDigit);
}

// Takes the first character off.
char32_t takeCharacter(std::u16string_view& text) {
    const bool isPair = text.size() > 1 && PelCharacters::isPair(text[0], text[1]);
    const char32_t character = isPair ? PelCharacters::fromPair(text[0], text[1]) : text[0];
    text.remove_prefix(isPair ? 2 : 1);
    return character;
}

// "1.5e-07" as "0.00000015".
std::u16string withoutExponent(std::u16string_view text) {
    const std::size_t mark = text.find(u'e');
    if (mark == text.npos)
        return std::u16string(text);
    const bool isNegative = text.front() == u'-';
    const bool isSmall = text[mark + 1] == u'-';
    std::u16string digits;
    std::copy_if(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(mark),
                 std::back_inserter(digits), isDigit);
    // One digit stands before the point.
    const auto places = static_cast<std::size_t>(PelXPathText::toNumber(text.substr(mark + 2)));
    if (isSmall)
        digits.insert(0, u"0." + std::u16string(places - 1, u'0'));
    else if (places + 1 < digits.size())
        digits.insert(places + 1, u".");
    else
        digits.append(places + 1 - digits.size(), u'0');
    return isNegative ? u"-" + digits : digits;
}

constexpr std::size_t shortPart = 16;

// How far the part's own beginning reaches into it, behind each of its units.
std::vector<std::size_t> overlapsOf(std::u16string_view part) {
    std::vector<std::size_t> overlaps(part.size(), 0);
    for (std::size_t i = 1, length = 0; i < part.size(); ++i) {
        while (length > 0 && part[i] != part[length])
            length = overlaps[length - 1];
        if (part[i] == part[length])
            ++length;
        overlaps[i] = length;
    }
    return overlaps;
}

} // namespace

double PelXPathText::toNumber(std::u16string_view text) {
    text = trimmed(text);
    const bool isNegative = !text.empty() && text.front() == u'-';
    if (isNegative)
        text.remove_prefix(1);
    if (!isDecimal(text))
        return std::numeric_limits<double>::quiet_NaN();
    double number = 0;
    constexpr std::size_t surelyExact = 15; // digits
    if (text.size() <= surelyExact && text.find(u'.') == text.npos)
        for (const char16_t digit : text)
            number = number * 10 + (digit - u'0');
    else if (!PelNumberText::read(text, number))
        PelNumberText::scan(text, number); // out of range
    return isNegative ? -number : number;
}

std::u16string PelXPathText::fromNumber(double number) {
    if (std::isnan(number))
        return u"NaN";
    if (std::isinf(number))
        return number < 0 ? u"-Infinity" : u"Infinity";
    if (number == 0)
        return u"0"; // -0 too
    return withoutExponent(PelNumberText::write(number).view());
}

double PelXPathText::round(double number) {
    constexpr double allWhole = 4503599627370496; // from here on
    if (!(std::abs(number) < allWhole))
        return number;
    const double below = std::floor(number);
    return std::copysign(number - below >= 0.5 ? below + 1 : below, number);
}

std::size_t PelXPathText::countCharacters(std::u16string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        takeCharacter(text);
    return count;
}

// The standard library's search takes the product of the lengths at worst.
std::size_t PelXPathText::find(std::u16string_view text, std::u16string_view part) {
    if (part.size() <= shortPart)
        return text.find(part);
    const std::vector<std::size_t> overlaps = overlapsOf(part);
    std::size_t length = 0; // of what is found of the part
    for (std::size_t i = 0; i < text.size(); ++i) {
        while (length > 0 && text[i] != part[length])
            length = overlaps[length - 1];
        if (text[i] == part[length] && ++length == part.size())
            return i + 1 - length;
    }
    return text.npos;
}

std::u16string_view PelXPathText::substring(std::u16string_view text, double begin, double end) {
    std::u16string_view rest = text;
    double place = 1;
    for (; !rest.empty() && !(place >= begin); ++place)
        takeCharacter(rest);
    const std::u16string_view start = rest;
    for (; !rest.empty() && place < end; ++place)
        takeCharacter(rest);
    return start.substr(0, start.size() - rest.size());
}

std::u16string PelXPathText::normalized(std::u16string_view text) {
    std::u16string words;
    for (const char16_t unit : trimmed(text))
        if (!PelCharacters::isSpace(unit))
            words.push_back(unit);
        else if (words.back() != u' ')
            words.push_back(u' ');
    return words;
}

std::u16string PelXPathText::translated(std::u16string_view text, std::u16string_view from,
                                        std::u16string_view to) {
    constexpr char32_t leftOut = 0xFFFFFFFF;
    std::unordered_map<char32_t, char32_t> replacements;
    while (!from.empty()) {
        const char32_t replacement = to.empty() ? leftOut : takeCharacter(to);
        replacements.emplace(takeCharacter(from), replacement); // the first one counts
    }
    std::u16string changed;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        const auto found = replacements.find(character);
        if (found == replacements.end())
            PelCharacters::append(changed, character);
        else if (found->second != leftOut)
            PelCharacters::append(changed, found->second);
    }
    return changed;
}

bool PelXPathText::isLanguage(std::u16string_view language, std::u16string_view other) {
    const auto lower = [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
    };
    const auto isSame = [lower](char16_t left, char16_t right) {
        return lower(left) == lower(right);
    };
    return language.size() >= other.size() &&
           std::equal(other.begin(), other.end(), language.begin(), isSame) &&
           (language.size() == other.size() || language[other.size()] == u'-');
}
