// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelPlatform.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// What <charconv> does with reals, for standard libraries whose does not, or not with all of them.
class PelRealText {
public:
    /// As std::from_chars of text that is nothing else, and has no sign.
    template <class Real>
    static bool read(std::string_view text, Real& value, std::chars_format format) {
        const bool isHex = format == std::chars_format::hex;
        constexpr std::string_view skipped = " \t\n\v\f\r+-";
        if (text.empty() || skipped.find(text.front()) != std::string_view::npos)
            return false;
        const std::string whole = (isHex ? "0x" : "") + std::string(text);
        const PelPlatform::ClassicNumbers classic;
        char* end = nullptr;
        errno = 0;
        const Real number = convert(whole.c_str(), &end, value);
        if (end != whole.c_str() + whole.size() ||
            (errno == ERANGE && (number == 0 || std::isinf(number))))
            return false;
        value = number;
        return true;
    }

    /// Text that reads back as the same number, with no exponent if it `isWhole`.
    static std::string write(long double number, bool isWhole) {
        const PelPlatform::ClassicNumbers classic;
        char text[64];
        std::snprintf(text, sizeof text, "%.0Lf", isWhole ? number : 0);
        for (int digits = 1; std::strtold(text, nullptr) != number; ++digits)
            std::snprintf(text, sizeof text, "%.*Lg", digits, number);
        return text;
    }

private:
    static float convert(const char* text, char** end, float) { return std::strtof(text, end); }
    static double convert(const char* text, char** end, double) { return std::strtod(text, end); }
    static long double convert(const char* text, char** end, long double) {
        return std::strtold(text, end);
    }
};
