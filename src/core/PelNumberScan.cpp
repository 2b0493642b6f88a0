// SPDX-License-Identifier: MIT
#include "core/PelNumberScan.h"

#include "core/PelPlatform.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

namespace {

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// Whether a number can hold it: "-1.5e+3", "0x1p-3", "infinity". All NaNs are one.
bool isOfNumber(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           std::u16string_view(u"+-.").find(unit) != std::u16string_view::npos;
}

std::u16string_view withoutLeadingSpace(std::u16string_view text) {
    const std::size_t begin = text.find_first_not_of(u" \t\n\v\f\r");
    return begin == text.npos ? std::u16string_view() : text.substr(begin);
}

} // namespace

bool PelNumberScan::scan(std::u16string_view text, long& value) {
    std::u16string_view rest = withoutLeadingSpace(text);
    const bool isNegative = !rest.empty() && rest.front() == u'-';
    if (isNegative || (!rest.empty() && rest.front() == u'+'))
        rest.remove_prefix(1);
    if (rest.empty() || !isDigit(rest.front()))
        return false;
    // Counted downwards, because the range reaches one further there.
    constexpr long lowest = std::numeric_limits<long>::min();
    constexpr long highest = std::numeric_limits<long>::max();
    long negated = 0;
    for (; !rest.empty() && isDigit(rest.front()); rest.remove_prefix(1)) {
        const long digit = rest.front() - u'0';
        negated = negated < (lowest + digit) / 10 ? lowest : negated * 10 - digit;
        if (negated == lowest)
            break;
    }
    if (isNegative)
        value = negated;
    else
        value = negated == lowest ? highest : -negated;
    return true;
}

bool PelNumberScan::scan(std::u16string_view text, double& value) {
    const std::u16string_view rest = withoutLeadingSpace(text);
    const std::string start(rest.begin(), std::find_if_not(rest.begin(), rest.end(), isOfNumber));
    const PelPlatform::ClassicNumbers classic;
    char* end = nullptr;
    const double number = std::strtod(start.c_str(), &end);
    if (end == start.c_str())
        return false;
    value = number;
    return true;
}
