// SPDX-License-Identifier: MIT
#include "read/PelReadMessage.h"

#include "core/PelThreadMessage.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

namespace {

thread_local PelThreadMessage lastReadMessage = {};

} // namespace

PelString PelReadMessage::get() {
    return lastReadMessage.get();
}

void PelReadMessage::set(const PelString& line) noexcept {
    lastReadMessage.set(line);
}

void PelReadMessage::clear() noexcept {
    lastReadMessage.clear();
}

// Without memory for the message there is none.
void PelReadMessage::set(const PelString& file, const char16_t* message) noexcept {
    try {
        set({PelDOMMessage{true, file, 0, 0, message}});
    } catch (const std::bad_alloc&) {
        clear();
    }
}

void PelReadMessage::set(const std::vector<PelDOMMessage>& messages) noexcept {
    try {
        for (const PelDOMMessage& message : messages)
            if (message.isError)
                return set(message.toLine());
    } catch (const std::bad_alloc&) {
    }
    clear();
}
