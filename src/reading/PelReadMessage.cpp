// SPDX-License-Identifier: MIT
#include "reading/PelReadMessage.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

namespace {

thread_local PelString lastMessage;

} // namespace

const PelString& PelReadMessage::get() noexcept {
    return lastMessage;
}

// Without memory for the message there is none.
void PelReadMessage::set(const PelString& line) noexcept {
    try {
        lastMessage = line;
    } catch (const std::bad_alloc&) {
        clear();
    }
}

void PelReadMessage::clear() noexcept {
    lastMessage = PelString();
}

void PelReadMessage::set(const PelString& file, const char16_t* message) noexcept {
    try {
        set(line(file, 0, 0, message));
    } catch (const std::bad_alloc&) {
        clear();
    }
}

PelString PelReadMessage::line(const PelString& file, unsigned long long lineNumber,
                               unsigned long long column, const char16_t* message) {
    PelString line;
    line.format(u"%s:%llu:%llu: %s", file.view().data(), lineNumber, column, message);
    std::u16string text(line.view());
    std::replace_if(
        text.begin(), text.end(), [](char16_t unit) { return unit < u' '; }, u' ');
    return PelString(std::move(text));
}
