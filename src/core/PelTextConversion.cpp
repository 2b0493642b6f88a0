// SPDX-License-Identifier: MIT
#include "core/PelTextConversion.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

namespace {

// ICU counts in 32 bits, so long text is converted in chunks of this many units.
constexpr std::size_t chunkUnits = std::size_t{1} << 26;
constexpr UChar32 replacement = 0xFFFD;

bool continuesSequence(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The end of a chunk that starts at `begin` and cuts no UTF-8 sequence in two.
std::size_t chunkEnd(std::string_view utf8, std::size_t begin) {
    if (utf8.size() - begin <= chunkUnits)
        return utf8.size();
    std::size_t end = begin + chunkUnits;
    for (int back = 0; back < 3 && continuesSequence(utf8[end]); ++back)
        --end;
    return end;
}

// The same for UTF-16 and surrogate pairs.
std::size_t chunkEnd(std::u16string_view utf16, std::size_t begin) {
    if (utf16.size() - begin <= chunkUnits)
        return utf16.size();
    const std::size_t end = begin + chunkUnits;
    return U16_IS_TRAIL(utf16[end]) && U16_IS_LEAD(utf16[end - 1]) ? end - 1 : end;
}

// With replacement and enough room, running out of memory is all that can go wrong.
void require(UErrorCode status) {
    if (U_FAILURE(status))
        throw std::bad_alloc();
}

} // namespace

std::u16string PelTextConversion::fromUtf8(std::string_view utf8) {
    std::u16string result;
    for (std::size_t begin = 0; begin < utf8.size();) {
        const std::size_t end = chunkEnd(utf8, begin);
        const std::size_t filled = result.size();
        result.resize(filled + (end - begin));
        std::int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8WithSub(&result[filled], static_cast<std::int32_t>(end - begin), &length,
                             utf8.data() + begin, static_cast<std::int32_t>(end - begin),
                             replacement, nullptr, &status);
        require(status);
        result.resize(filled + static_cast<std::size_t>(length));
        begin = end;
    }
    return result;
}

std::string PelTextConversion::toUtf8(std::u16string_view utf16) {
    std::string result;
    for (std::size_t begin = 0; begin < utf16.size();) {
        const std::size_t end = chunkEnd(utf16, begin);
        const std::size_t filled = result.size();
        const std::size_t room = 3 * (end - begin);
        result.resize(filled + room);
        std::int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strToUTF8WithSub(&result[filled], static_cast<std::int32_t>(room), &length,
                           utf16.data() + begin, static_cast<std::int32_t>(end - begin),
                           replacement, nullptr, &status);
        require(status);
        result.resize(filled + static_cast<std::size_t>(length));
        begin = end;
    }
    return result;
}
