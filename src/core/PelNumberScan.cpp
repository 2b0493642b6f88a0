// SPDX-License-Identifier: MIT
#include "core/PelNumberScan.h"

#include "core/PelPlatform.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>

namespace {

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool isHexDigit(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'f') || (unit >= u'A' && unit <= u'F');
}

bool isWordCharacter(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           unit == u'_';
}

std::u16string_view withoutLeadingSpace(std::u16string_view text) {
    const std::size_t begin = text.find_first_not_of(u" \t\n\v\f\r");
    return begin == text.npos ? std::u16string_view() : text.substr(begin);
}

/// Takes the longest start of a text that is a real number, or could still become one.
class RealReader {
public:
    explicit RealReader(std::u16string_view source) : text(source) {}

    /// The number's characters; empty when they make none.
    std::string read() {
        if (at(u"+-"))
            ++position;
        bool isNumber = false;
        if (at(u"iI"))
            isNumber = takeWord(u"inf") && (!at(u"iI") || takeWord(u"inity"));
        else if (at(u"nN"))
            isNumber = takeWord(u"nan") && takeOptionalPayload();
        else if (text.compare(position, 2, u"0x") == 0 || text.compare(position, 2, u"0X") == 0) {
            position += 2;
            isNumber = takeMantissa(isHexDigit) && takeOptionalExponent(u"pP");
        } else
            isNumber = takeMantissa(isDigit) && takeOptionalExponent(u"eE");
        return isNumber ? std::string(text.begin(), text.begin() + static_cast<long>(position))
                        : std::string();
    }

private:
    bool at(std::u16string_view choices) const {
        return position < text.size() && choices.find(text[position]) != choices.npos;
    }

    template <class Test>
    bool takeWhile(Test test) {
        const std::size_t begin = position;
        while (position < text.size() && test(text[position]))
            ++position;
        return position > begin;
    }

    bool takeWord(std::u16string_view word) {
        for (const char16_t letter : word) {
            const char16_t either[] = {letter, static_cast<char16_t>(letter - u'a' + u'A')};
            if (!at({either, 2}))
                return false;
            ++position;
        }
        return true;
    }

    bool takeOptionalPayload() {
        if (!at(u"("))
            return true;
        ++position;
        takeWhile(isWordCharacter);
        if (!at(u")"))
            return false;
        ++position;
        return true;
    }

    template <class Test>
    bool takeMantissa(Test isMantissaDigit) {
        bool hasDigits = takeWhile(isMantissaDigit);
        if (at(u".")) {
            ++position;
            hasDigits = takeWhile(isMantissaDigit) || hasDigits;
        }
        return hasDigits;
    }

    bool takeOptionalExponent(std::u16string_view letters) {
        if (!at(letters))
            return true;
        ++position;
        if (at(u"+-"))
            ++position;
        return takeWhile(isDigit);
    }

    std::u16string_view text;
    std::size_t position = 0;
};

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
    const std::string number = RealReader(withoutLeadingSpace(text)).read();
    if (number.empty())
        return false;
    const PelPlatform::ClassicNumbers classic;
    value = std::strtod(number.c_str(), nullptr);
    return true;
}
