// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// The diagnostic log as the library's own code uses it, beside PelDOM::error.
class PelLog {
public:
    /// Writes a trace of an object's life. Costs a comparison in the modes that do not record it.
    static void trace(const char16_t* message, const void* object) noexcept {
        if (mode >= 2)
            write(message, object);
    }

    /// Whether a message without an object is recorded. Where it is not, it need not be made.
    static bool takesMessages() noexcept;

    /// The most bytes that the log may hold.
    static const std::size_t limit;

    /// Fixed when the library is built: 0 to 3, see PelDOM::error.
    static const int mode;

private:
    static void write(const char16_t* message, const void* object) noexcept;
};
