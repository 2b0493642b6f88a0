// SPDX-License-Identifier: MIT
#include "core/PelTextConversion.h"

#include "core/PelCharacters.h"

#include <unicode/ustring.h>

#include <cstddef>
#include <cstdint>
#include <new>

namespace {

// ICU counts in 32 bits, so long text is converted in chunks of no more than this many units.
constexpr std::size_t chunkUnits = std::size_t{1} << 26;
constexpr UChar32 replacement = 0xFFFD;

bool continuesSequence(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The end of a chunk that starts at `begin` and cuts no UTF-8 sequence in two.
std::size_t chunkEnd(std::string_view utf8, std::size_t begin, std::size_t units = chunkUnits) {
    if (utf8.size() - begin <= units)
        return utf8.size();
    std::size_t end = begin + units;
    for (int back = 0; back < 3 && continuesSequence(utf8[end]); ++back)
        --end;
    return end;
}

// The same for UTF-16 and surrogate pairs.
std::size_t chunkEnd(std::u16string_view utf16, std::size_t begin) {
    if (utf16.size() - begin <= chunkUnits)
        return utf16.size();
    const std::size_t end = begin + chunkUnits;
    return PelCharacters::isPair(utf16[end - 1], utf16[end]) ? end - 1 : end;
}

// With replacement and enough room, running out of memory is all that can go wrong.
void require(UErrorCode status) {
    if (U_FAILURE(status))
        throw std::bad_alloc();
}

// Converts into room for as many units as there are bytes, and gives the number of units.
std::size_t decode(std::string_view utf8, char16_t* room, UErrorCode& status) noexcept {
    const auto size = static_cast<std::int32_t>(utf8.size());
    std::int32_t length = 0;
    u_strFromUTF8WithSub(room, size, &length, utf8.data(), size, replacement, nullptr, &status);
    return static_cast<std::size_t>(length);
}

} // namespace

std::u16string PelTextConversion::fromUtf8(std::string_view utf8) {
    std::u16string result;
    for (std::size_t begin = 0; begin < utf8.size();) {
        const std::size_t end = chunkEnd(utf8, begin);
        const std::size_t filled = result.size();
        result.resize(filled + (end - begin));
        UErrorCode status = U_ZERO_ERROR;
        const std::size_t length = decode(utf8.substr(begin, end - begin), &result[filled], status);
        require(status);
        result.resize(filled + length);
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

bool PelTextConversion::isSame(std::u16string_view utf16, std::string_view utf8) noexcept {
    constexpr std::size_t units = 128;
    std::size_t begin = 0;
    while (begin < utf8.size() && begin < utf16.size() && utf16[begin] <= 0x7F &&
           utf8[begin] == static_cast<char>(utf16[begin]))
        ++begin;
    if (begin < utf8.size() && static_cast<unsigned char>(utf8[begin]) <= 0x7F)
        return false;
    utf16.remove_prefix(begin);
    while (begin < utf8.size()) {
        const std::size_t end = chunkEnd(utf8, begin, units);
        char16_t chunk[units];
        UErrorCode status = U_ZERO_ERROR;
        const std::size_t length = decode(utf8.substr(begin, end - begin), chunk, status);
        if (utf16.substr(0, length) != std::u16string_view(chunk, length))
            return false;
        utf16.remove_prefix(length);
        begin = end;
    }
    return utf16.empty();
}
