// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMMessage.h>
#include <qrndom/PelString.h>

#include <vector>

/// Why the calling thread's last read failed: one line, "file:line:column: message", empty after a
/// read that succeeded. A line of thousands of characters loses its beginning.
class PelReadMessage {
public:
    static PelString get();
    static void set(const PelString& line) noexcept;
    static void clear() noexcept;

    /// For what has no place in the text: line 0, column 0.
    static void set(const PelString& file, const char16_t* message) noexcept;

    /// The first error among the messages of a read.
    static void set(const std::vector<PelDOMMessage>& messages) noexcept;
};
