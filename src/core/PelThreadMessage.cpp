// SPDX-License-Identifier: MIT
#include "core/PelThreadMessage.h"

#include "core/PelCharacters.h"

#include <algorithm>
#include <new>
#include <type_traits>

static_assert(std::is_trivially_destructible_v<PelThreadMessage>);

PelThreadMessage& PelThreadMessage::ofRead() noexcept {
    thread_local PelThreadMessage message = {};
    return message;
}

PelThreadMessage& PelThreadMessage::ofWrite() noexcept {
    thread_local PelThreadMessage message = {};
    return message;
}

PelThreadMessage& PelThreadMessage::ofQuery() noexcept {
    thread_local PelThreadMessage message = {};
    return message;
}

PelString PelThreadMessage::get() const {
    return PelString(std::u16string_view(text.data(), length));
}

// The end of a line says more than the beginning of a long path.
void PelThreadMessage::set(std::u16string_view line) noexcept {
    constexpr char16_t ellipsis = u'\u2026';
    const bool isLong = line.size() > text.size();
    if (isLong)
        line.remove_prefix(line.size() - text.size());
    std::copy(line.begin(), line.end(), text.begin());
    length = line.size();
    if (isLong && PelCharacters::isLowSurrogate(text[1]))
        text[1] = ellipsis; // for its other half as well
    if (isLong)
        text[0] = ellipsis;
}

void PelThreadMessage::set(const PelString& file, const PelString& reason) noexcept {
    try {
        set((file.isEmpty() == 0 ? file + u": " + reason : reason).view());
    } catch (const std::bad_alloc&) {
        set(reason.view());
    }
}
