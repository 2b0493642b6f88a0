// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <array>
#include <cstddef>
#include <string_view>

/// Why the calling thread's last read or write by the services, or its last question to a node,
/// failed, in one line; empty after one that succeeded. A line of thousands of characters loses its
/// beginning.
///
/// It needs no destructor: with one, the library could not be unloaded before the thread ends, and
/// calls at the process's end would come after it.
class PelThreadMessage {
public:
    static PelThreadMessage& ofRead() noexcept;
    static PelThreadMessage& ofWrite() noexcept;
    static PelThreadMessage& ofQuery() noexcept;

    PelString get() const;
    void clear() noexcept { length = 0; }
    void set(std::u16string_view line) noexcept;

    /// "file: reason", or the reason alone where `file` is empty or there is no memory for both.
    void set(const PelString& file, const PelString& reason) noexcept;

private:
    std::array<char16_t, 2048> text;
    std::size_t length;
};
