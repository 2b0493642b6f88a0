// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Reads numbers from text by the rules of formatted input in the classic locale: leading white
/// space is skipped, and what follows the longest start that is a number is ignored ("1.5em", "1e",
/// "0x").
class PelNumberScan {
public:
    /// As "%ld": decimal; a number out of range gives the nearest `long`. False leaves `value`.
    static bool scan(std::u16string_view text, long& value);

    /// As "%lf": decimal, hexadecimal, infinity and NaN; a number out of range gives infinity or
    /// the nearest to zero. False leaves `value`.
    static bool scan(std::u16string_view text, double& value);
};
