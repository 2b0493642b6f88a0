// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <string_view>

/// Numbers and truth values as text that holds nothing else, whatever the locale. `Value` is long,
/// long long, unsigned long long, float, double, long double or bool.
class PelNumberText {
public:
    /// Reads the whole text, apart from white space around it. Reals are written as PelNumberScan
    /// knows them; truth values are true, false, 1 and 0. False, with `value` unchanged, when that
    /// is no value, or one out of the range of its type.
    template <class Value>
    static bool read(std::u16string_view text, Value& value);

    /// The shortest text that reads back as the same value. Whole numbers have no exponent where a
    /// `long` can hold them, so that they can be read as one.
    template <class Value>
    static PelString write(Value value);
};
