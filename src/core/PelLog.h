// SPDX-License-Identifier: MIT
#pragma once

/// The diagnostic log as the library's own code uses it, beside PelDOM::error.
class PelLog {
public:
    /// Writes a trace of an object's life. Costs a comparison in the modes that do not record it.
    static void trace(const char16_t* message, const void* object) noexcept {
        if (mode >= 2)
            write(message, object);
    }

    /// Fixed when the library is built: 0 to 3, see PelDOM::error.
    static const int mode;

private:
    static void write(const char16_t* message, const void* object) noexcept;
};
