// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

/// The diagnostic log as the library's own code uses it, beside PelDOM::error.
namespace PelLog {

/// Fixed when the library is built: 0 to 3, see PelDOM::error.
extern const int mode;

/// Writes a trace of an object's life, in the modes that record it.
void write(const char16_t* message, const void* object) noexcept;

/// The same, at the cost of a comparison in the other modes.
inline void trace(const char16_t* message, const void* object) noexcept {
    if (mode >= 2)
        write(message, object);
}

/// Whether a message without an object is recorded that has at least that many bytes. Where it is
/// not, it need not be made: the log says already that it has no room for it.
bool takesMessages(std::size_t length = 0) noexcept;

/// Records a message without an object, in UTF-8, in its order among all others; but it may wait in
/// this process until the next line that does not, so that many are one write.
void gather(std::string_view message) noexcept;

/// Writes what waits.
void flush() noexcept;

/// Writes what waits when it goes.
struct Flush {
    Flush() = default;
    Flush(const Flush&) = delete;
    Flush& operator=(const Flush&) = delete;
    ~Flush() { flush(); }
};

} // namespace PelLog
