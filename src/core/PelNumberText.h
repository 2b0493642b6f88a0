// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <charconv>
#include <string>
#include <string_view>

/// Numbers and truth values as text, whatever the locale.
namespace PelNumberText {

/// As formatted input in the classic locale, with "%ld" for a long and "%lf" for a double (decimal,
/// hexadecimal, infinity and NaN): leading white space is skipped, and what follows the longest
/// start that is a number is ignored ("15em", "0x"). A number out of range gives the nearest that
/// there is, or infinity. False leaves `value`.
template <class Number>
bool scan(std::u16string_view text, Number& value);

/// Reads the whole text, apart from white space around it, as a long, long long, unsigned long
/// long, float, double, long double or bool. Reals are written as for `scan`; truth values are
/// true, false, 1 and 0. False, with `value` unchanged, when that is no value, or one out of the
/// range of its type.
template <class Value>
bool read(std::u16string_view text, Value& value);

/// The shortest text that reads back as the same value. Whole numbers have no exponent where a long
/// long can hold them, so that they can be read as one.
template <class Value>
PelString write(Value value);

/// As std::from_chars of text without a sign, for standard libraries without it for reals.
template <class Real>
bool readReal(std::string_view text, Real& value, std::chars_format format);

/// As std::to_chars, likewise; with no exponent if the number `isWhole`.
std::string writeReal(long double number, bool isWhole);

} // namespace PelNumberText
