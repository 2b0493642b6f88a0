// SPDX-License-Identifier: MIT
#include "core/PelThreadMessage.h"

#include "core/PelCharacters.h"

#include <algorithm>
#include <string_view>
#include <type_traits>

static_assert(std::is_trivially_destructible_v<PelThreadMessage>);

PelString PelThreadMessage::get() const {
    return PelString(std::u16string_view(text.data(), length));
}

// The end of a line says more than the beginning of a long path.
void PelThreadMessage::set(const PelString& line) noexcept {
    constexpr char16_t ellipsis = u'\u2026';
    std::u16string_view kept = line.view();
    const bool isLong = kept.size() > text.size();
    if (isLong)
        kept.remove_prefix(kept.size() - text.size());
    std::copy(kept.begin(), kept.end(), text.begin());
    length = kept.size();
    if (isLong && PelCharacters::isLowSurrogate(text[1]))
        text[1] = ellipsis; // for its other half as well
    if (isLong)
        text[0] = ellipsis;
}
