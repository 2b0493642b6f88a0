// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

/// Why the calling thread's last read failed: one line, "file:line:column: message", empty after a
/// read that succeeded. A line of thousands of characters loses its beginning.
class PelReadMessage {
public:
    static PelString get();
    static void set(const PelString& line) noexcept;
    static void clear() noexcept;

    /// For what has no place in the text: line 0, column 0.
    static void set(const PelString& file, const char16_t* message) noexcept;

    /// One line: line breaks in what `message` quotes become spaces.
    static PelString line(const PelString& file, unsigned long long lineNumber,
                          unsigned long long column, const char16_t* message);
};
