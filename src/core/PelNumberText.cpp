// SPDX-License-Identifier: MIT
#include "core/PelNumberText.h"

#include "core/PelCharacters.h"
#include "core/PelPlatform.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <system_error>
#include <type_traits>

using PelCharacters::isDigit;

namespace {

// Whether a number can hold it: "-1.5e+3", "0x1p-3", "infinity". All NaNs are one.
bool isOfNumber(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           std::u16string_view(u"+-.").find(unit) != std::u16string_view::npos;
}

// The start of a text that can be a number, without white space in front of it.
std::string startOf(std::u16string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(u" \t\n\v\f\r"), text.size()));
    return std::string(text.begin(), std::find_if_not(text.begin(), text.end(), isOfNumber));
}

// Without the white space around it; empty for text beyond ASCII.
std::string trimmed(std::u16string_view text) {
    const std::size_t begin = text.find_first_not_of(PelCharacters::space);
    if (begin == text.npos)
        return std::string();
    const std::size_t end = text.find_last_not_of(PelCharacters::space) + 1;
    std::string narrow;
    for (const char16_t unit : text.substr(begin, end - begin)) {
        if (unit > 0x7F)
            return std::string();
        narrow.push_back(static_cast<char>(unit));
    }
    return narrow;
}

bool take(std::string_view& text, std::string_view characters) {
    const bool isThere = !text.empty() && characters.find(text.front()) != characters.npos;
    text.remove_prefix(isThere ? 1 : 0);
    return isThere;
}

bool beginsWith(std::string_view text, std::string_view characters) {
    return take(text, characters);
}

template <class Number, class... Format>
bool convert(std::string_view text, Number& value, Format... format) {
    Number number{};
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, number, format...);
    if (result.ec != std::errc() || result.ptr != end)
        return false;
    value = number;
    return true;
}

template <class Number>
bool readWhole(std::string_view text, Number& value) {
    if (take(text, "+") && beginsWith(text, "-"))
        return false;
    return convert(text, value);
}

// The standard library takes neither a plus nor the prefix of hexadecimals, after which it would
// take a sign or a name.
template <class Number>
bool readSigned(std::string_view text, Number& value) {
    const bool isNegative = beginsWith(text, "-");
    take(text, "+-");
    if (beginsWith(text, "-"))
        return false;
    std::chars_format format = std::chars_format::general;
    std::string_view digits = text;
    if (take(digits, "0") && take(digits, "xX")) {
        if (!beginsWith(digits, "0123456789abcdefABCDEF."))
            return false;
        format = std::chars_format::hex;
        text = digits;
    }
#ifdef __cpp_lib_to_chars
    if (!convert(text, value, format))
        return false;
#else
    if (!PelNumberText::readReal(text, value, format))
        return false;
#endif
    value = isNegative ? -value : value;
    return true;
}

template <class Number, class... Format>
PelString print(Number number, Format... format) {
    char buffer[64];
    const char* const end = std::to_chars(buffer, buffer + sizeof buffer, number, format...).ptr;
    return PelString::fromLatin1(buffer, static_cast<std::size_t>(end - buffer));
}

template <class Number>
PelString printReal(Number number) {
    if (std::isnan(number))
        return u"NaN";
    if (std::isinf(number))
        return number < 0 ? u"-INF" : u"INF";
    // Of 64 bits everywhere, so that a number has the same text on all processors.
    constexpr Number beyondLong = -static_cast<Number>(std::numeric_limits<long long>::min());
    const bool fitsLong =
        number >= -beyondLong && number < beyondLong && std::trunc(number) == number;
#ifndef __cpp_lib_to_chars
    if constexpr (std::is_same_v<Number, long double>)
        return PelString(PelNumberText::writeReal(number, fitsLong).c_str());
#endif
    return fitsLong ? print(number, std::chars_format::fixed) : print(number);
}

template <class Number>
Number parse(const char* text, char** end) {
    if constexpr (std::is_same_v<Number, long>)
        return std::strtol(text, end, 10);
    else if constexpr (std::is_same_v<Number, float>)
        return std::strtof(text, end);
    else if constexpr (std::is_same_v<Number, double>)
        return std::strtod(text, end);
    else
        return std::strtold(text, end);
}

} // namespace

template <class Number>
bool PelNumberText::scan(std::u16string_view text, Number& value) {
    const std::string start = startOf(text);
    const PelPlatform::ClassicNumbers classic;
    char* end = nullptr;
    const Number number = parse<Number>(start.c_str(), &end);
    if (end == start.c_str())
        return false;
    value = number;
    return true;
}

template <class Real>
bool PelNumberText::readReal(std::string_view text, Real& value, std::chars_format format) {
    const bool isHex = format == std::chars_format::hex;
    constexpr std::string_view skipped = " \t\n\v\f\r+-";
    if (text.empty() || skipped.find(text.front()) != std::string_view::npos)
        return false;
    const std::string whole = (isHex ? "0x" : "") + std::string(text);
    const PelPlatform::ClassicNumbers classic;
    char* end = nullptr;
    errno = 0;
    const Real number = parse<Real>(whole.c_str(), &end);
    if (end != whole.c_str() + whole.size() ||
        (errno == ERANGE && (number == 0 || std::isinf(number))))
        return false;
    value = number;
    return true;
}

std::string PelNumberText::writeReal(long double number, bool isWhole) {
    const PelPlatform::ClassicNumbers classic;
    char text[64];
    std::snprintf(text, sizeof text, "%.0Lf", isWhole ? number : 0);
    for (int digits = 1; std::strtold(text, nullptr) != number; ++digits)
        std::snprintf(text, sizeof text, "%.*Lg", digits, number);
    return text;
}

template <class Value>
bool PelNumberText::read(std::u16string_view text, Value& value) {
    const std::string narrow = trimmed(text);
    if constexpr (std::is_same_v<Value, bool>) {
        if (narrow != "true" && narrow != "false" && narrow != "1" && narrow != "0")
            return false;
        value = narrow == "true" || narrow == "1";
        return true;
    } else if constexpr (std::is_integral_v<Value>) {
        return readWhole(narrow, value);
    } else {
        return readSigned(narrow, value);
    }
}

template <class Value>
PelString PelNumberText::write(Value value) {
    if constexpr (std::is_same_v<Value, bool>)
        return value ? u"true" : u"false";
    else if constexpr (std::is_integral_v<Value>)
        return print(value);
    else
        return printReal(value);
}

template bool PelNumberText::scan(std::u16string_view text, long& value);
template bool PelNumberText::scan(std::u16string_view text, double& value);
template bool PelNumberText::read(std::u16string_view text, bool& value);
template bool PelNumberText::read(std::u16string_view text, long& value);
template bool PelNumberText::read(std::u16string_view text, long long& value);
template bool PelNumberText::read(std::u16string_view text, unsigned long long& value);
template bool PelNumberText::read(std::u16string_view text, float& value);
template bool PelNumberText::read(std::u16string_view text, double& value);
template bool PelNumberText::read(std::u16string_view text, long double& value);
template bool PelNumberText::readReal(std::string_view text, float& value, std::chars_format);
template bool PelNumberText::readReal(std::string_view text, double& value, std::chars_format);
template bool PelNumberText::readReal(std::string_view text, long double& value, std::chars_format);
template PelString PelNumberText::write(bool value);
template PelString PelNumberText::write(long long value);
template PelString PelNumberText::write(unsigned long long value);
template PelString PelNumberText::write(float value);
template PelString PelNumberText::write(double value);
template PelString PelNumberText::write(long double value);
