// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/QRNDOM.h>

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

inline PelDOMUtilites& services() { return *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES); }

template <class Value>
const Value& shown(const Value& value) {
    return value;
}
inline std::string shown(std::u16string_view text) { return PelString(text).toUtf8(); }
inline std::string shown(const std::u16string& text) { return PelString(std::u16string_view(text)).toUtf8(); }

/// Ends the process, for the fuzzer to see, unless the library's answer is what it has to be.
template <class Answer, class Expected>
void expectSame(const Answer& answer, const Expected& expected, std::string_view what) {
    if (answer == expected) return;
    std::cerr << "DIFFERENCE: " << what << "\n--- answered\n"
              << shown(answer) << "\n--- expected\n"
              << shown(expected) << std::endl;
    std::abort();
}

/// Decisions and text drawn from the fuzzer's bytes; all are 0 and empty after the end.
class Input {
public:
    Input(const unsigned char* data, std::size_t size) : next(data), end(data + size) {}

    bool isAtEnd() const { return next == end; }

    unsigned byte() { return next != end ? *next++ : 0U; }

    /// A number from 0 to `count` - 1, for a count up to 256.
    std::size_t below(std::size_t count) { return byte() % count; }

    template <class Number>
    Number number() {
        unsigned long long bits = 0;
        for (std::size_t i = 0; i < sizeof(Number); ++i) bits = bits << 8 | byte();
        return static_cast<Number>(bits);
    }

    /// The bytes up to the next NUL, at most `longest` of them.
    std::string text(std::size_t longest = 256) {
        std::string result;
        while (next != end && *next != 0 && result.size() < longest)
            result.push_back(static_cast<char>(*next++));
        if (next != end && *next == 0) ++next;
        return result;
    }

    template <class Choices>
    auto& oneOf(Choices&& choices) {
        return choices[below(std::size(choices))];
    }

private:
    const unsigned char* next;
    const unsigned char* end;
};
