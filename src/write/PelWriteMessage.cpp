// SPDX-License-Identifier: MIT
#include "write/PelWriteMessage.h"

#include "core/PelThreadMessage.h"

#include <new>

namespace {

thread_local PelThreadMessage lastWriteMessage = {};

} // namespace

PelString PelWriteMessage::get() {
    return lastWriteMessage.get();
}

// Without memory for the message there is the reason alone.
void PelWriteMessage::set(const PelString& file, const PelString& reason) noexcept {
    try {
        lastWriteMessage.set(file.isEmpty() == 0 ? file + u": " + reason : reason);
    } catch (const std::bad_alloc&) {
        lastWriteMessage.set(reason);
    }
}

void PelWriteMessage::clear() noexcept {
    lastWriteMessage.clear();
}
