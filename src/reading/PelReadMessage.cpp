// SPDX-License-Identifier: MIT
#include "reading/PelReadMessage.h"

#include <algorithm>
#include <array>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace {

/// What needs no destructor: with one, the library could not be unloaded before the thread ends,
/// and reads at the process's end would come after it.
struct Message {
    std::array<char16_t, 2048> text;
    std::size_t length;
};
static_assert(std::is_trivially_destructible_v<Message>);

thread_local Message lastMessage = {};

} // namespace

PelString PelReadMessage::get() {
    return PelString(std::u16string_view(lastMessage.text.data(), lastMessage.length));
}

// The end of a line says more than the beginning of a long path.
void PelReadMessage::set(const PelString& line) noexcept {
    constexpr char16_t ellipsis = u'\u2026';
    Message& message = lastMessage;
    std::u16string_view kept = line.view();
    const bool isLong = kept.size() > message.text.size();
    if (isLong)
        kept.remove_prefix(kept.size() - message.text.size());
    std::copy(kept.begin(), kept.end(), message.text.begin());
    message.length = kept.size();
    if (isLong && (message.text[1] & 0xFC00) == 0xDC00)
        message.text[1] = ellipsis; // for its other half as well
    if (isLong)
        message.text[0] = ellipsis;
}

void PelReadMessage::clear() noexcept {
    lastMessage.length = 0;
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
