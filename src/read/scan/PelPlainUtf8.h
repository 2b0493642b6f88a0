// SPDX-License-Identifier: MIT
#pragma once

#include "read/scan/PelPlainUtf8Block.h"

/// UTF-8, as the scanner of plain documents reads it.
///
/// All functions stay within [at, end). Copying writes at most one unit for each byte.
class PelPlainUtf8 {
public:
    using Unit = unsigned char;
    static constexpr bool isUtf8 = true;

    /// Copies up to what the run does not hold, or what is no character of XML.
    template <class Run>
    static const Unit* copy(const Unit* at, const Unit* end, char16_t*& out) {
        char16_t* to = out;
        for (;;) {
            at = Run::copyAscii(at, end, to);
            if (at == end || *at < 0x80)
                break;
            const Unit* const begin = at;
            at = copyWide<Run>(at, end, to);
            if (at == begin)
                break;
        }
        out = to;
        return at;
    }

    /// Copies one character; false where there is none that XML allows, from U+0080 on.
    static bool copyCharacter(const Unit*& at, const Unit* end, char16_t*& out) {
        const auto left = end - at;
        const unsigned lead = left > 0 ? *at : 0;
        if (lead >= 0xC2 && lead <= 0xDF && left >= 2 && isTail(at[1])) {
            *out++ = static_cast<char16_t>((lead & 0x1F) << 6 | tail(at[1]));
            at += 2;
            return true;
        }
        if (lead >= 0xE0 && lead <= 0xEF && left >= 3 && isTail(at[1]) && isTail(at[2])) {
            const unsigned unit = (lead & 0x0F) << 12 | tail(at[1]) << 6 | tail(at[2]);
            if (unit < 0x800 || PelCharacters::isSurrogate(unit) || unit > 0xFFFD)
                return false;
            *out++ = static_cast<char16_t>(unit);
            at += 3;
            return true;
        }
        if (lead >= 0xF0 && lead <= 0xF4 && left >= 4 && isTail(at[1]) && isTail(at[2]) &&
            isTail(at[3])) {
            const unsigned character =
                (lead & 7) << 18 | tail(at[1]) << 12 | tail(at[2]) << 6 | tail(at[3]);
            if (character < 0x10000 || character > 0x10FFFF)
                return false;
            *out++ = PelCharacters::highSurrogateOf(character);
            *out++ = PelCharacters::lowSurrogateOf(character);
            at += 4;
            return true;
        }
        return false;
    }

    /// The number of units that well-formed text takes.
    static std::size_t countUnits(const Unit* at, const Unit* end) {
        std::size_t count = 0;
        for (; at != end; ++at)
            count += static_cast<std::size_t>(!isTail(*at)) + static_cast<std::size_t>(*at >= 0xF0);
        return count;
    }

private:
    static bool isTail(unsigned byte) { return (byte & 0xC0) == 0x80; }
    static unsigned tail(unsigned byte) { return byte & 0x3F; }

    // What is outside ASCII, and ASCII between.
    template <class Run>
    static const Unit* copyWide(const Unit* at, const Unit* end, char16_t*& out) {
#ifdef __SSE2__
        using Block = PelPlainUtf8Block;
        while (end - at >= Block::sizeLookedAt && Block::pays(at))
            if (!Block::copy<Run>(at, out) && (*at < 0x80 || !copyCharacter(at, end, out)))
                return at;
#endif
        while (at != end && *at >= 0x80 && copyCharacter(at, end, out)) {
        }
        return at;
    }
};
