// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <array>
#include <cstddef>

/// A message of the calling thread, for thread-local storage. A line of thousands of characters
/// loses its beginning.
///
/// It needs no destructor: with one, the library could not be unloaded before the thread ends, and
/// calls at the process's end would come after it.
class PelThreadMessage {
public:
    PelString get() const;
    void set(const PelString& line) noexcept;
    void clear() noexcept { length = 0; }

private:
    std::array<char16_t, 2048> text;
    std::size_t length;
};
