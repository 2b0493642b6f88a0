// SPDX-License-Identifier: MIT
#include "output/PelWriteMessage.h"

#include "core/PelThreadMessage.h"

#include <new>

namespace {

thread_local PelThreadMessage lastMessage = {};

} // namespace

PelString PelWriteMessage::get() {
    return lastMessage.get();
}

// Without memory for the message there is the reason alone.
void PelWriteMessage::set(const PelString& file, const PelString& reason) noexcept {
    try {
        lastMessage.set(file.isEmpty() == 0 ? file + u": " + reason : reason);
    } catch (const std::bad_alloc&) {
        lastMessage.set(reason);
    }
}

void PelWriteMessage::clear() noexcept {
    lastMessage.clear();
}
