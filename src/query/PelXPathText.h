// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts and numbers as expressions know them: texts are counted in characters, numbers have no
/// exponent.
namespace PelXPathText {

/// NaN for a text that is no number, apart from white space around it.
double toNumber(std::u16string_view text);

/// The shortest text that reads back as the same number.
std::u16string fromNumber(double number);

/// To the nearest whole number; of two, the greater.
double round(double number);

std::size_t countCharacters(std::u16string_view text);

/// Where `part` first is in `text`; npos where it is not. Takes time in the length of both.
std::size_t find(std::u16string_view text, std::u16string_view part);

/// The characters whose place, counted from 1, is `begin` at least and below `end`.
std::u16string_view substring(std::u16string_view text, double begin, double end);

/// Without white space at its ends, and with one space for each run of it within.
std::u16string normalized(std::u16string_view text);

/// With each character of `from` replaced by the one at the same place in `to`, or left out.
std::u16string translated(std::u16string_view text, std::u16string_view from,
                          std::u16string_view to);

/// Whether a language is another one, or a kind of it: "en-GB" is "EN".
bool isLanguage(std::u16string_view language, std::u16string_view other);

} // namespace PelXPathText
