// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelPlainRuns.h"

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
            at = copyAscii<Run>(at, end, to);
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
            if (unit < 0x800 || (unit & 0xF800) == 0xD800 || unit > 0xFFFD)
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
            *out++ = static_cast<char16_t>(0xD7C0 + (character >> 10));
            *out++ = static_cast<char16_t>(0xDC00 | (character & 0x3FF));
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

    // What is outside ASCII, and single characters of ASCII between.
    template <class Run>
    static const Unit* copyWide(const Unit* at, const Unit* end, char16_t*& out) {
        char16_t* to = out;
        while (end - at >= 16) {
            const Unit lead = *at;
            if (lead >= 0xE0 && copyTriple(at, to))
                continue;
            if (lead >= 0xC2 && lead < 0xE0) {
                const std::ptrdiff_t count = copyPairs(at, to);
                if (count == 0)
                    break;
                at += 2 * count;
                to += count;
                continue;
            }
            if (lead < 0x80 && at[1] >= 0x80 && Run::isPlain[lead])
                *to++ = *at++;
            else if (lead < 0x80 || !copyCharacter(at, end, to))
                break;
        }
        while (at != end && *at >= 0x80 && copyCharacter(at, end, to)) {
        }
        out = to;
        return at;
    }

    // A character of three bytes, where there are four to look at.
    static bool copyTriple(const Unit*& at, char16_t*& to) {
        const unsigned bytes = at[0] | unsigned{at[1]} << 8 | unsigned{at[2]} << 16;
        const unsigned unit = (bytes & 0x0F) << 12 | (bytes >> 2 & 0xFC0) | (bytes >> 16 & 0x3F);
        if ((bytes & 0xC0C0F0) != 0x8080E0 || unit < 0x800 || unit - 0xD800 < 0x800 ||
            unit > 0xFFFD)
            return false;
        *to++ = static_cast<char16_t>(unit);
        at += 3;
        return true;
    }

    // Up to eight characters of two bytes, out of sixteen bytes; gives their number.
    static std::ptrdiff_t copyPairs(const Unit* at, char16_t* to) {
#ifdef __SSE2__
        const __m128i pairs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i units =
            _mm_or_si128(_mm_slli_epi16(_mm_and_si128(pairs, _mm_set1_epi16(0x1F)), 6),
                         _mm_and_si128(_mm_srli_epi16(pairs, 8), _mm_set1_epi16(0x3F)));
        const __m128i isPair =
            _mm_cmpeq_epi16(_mm_and_si128(pairs, _mm_set1_epi16(static_cast<short>(0xC0E0))),
                            _mm_set1_epi16(static_cast<short>(0x80C0)));
        const __m128i isLong = _mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F));
        const auto good = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(isPair, isLong)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), units);
        return __builtin_ctz(~good) / 2;
#else
        const Unit* next = at;
        return copyCharacter(next, at + 2, to) ? 1 : 0;
#endif
    }

    template <class Run>
    static const Unit* copyAscii(const Unit* at, const Unit* end, char16_t*& out) {
        char16_t* to = out;
#ifdef __SSE2__
        while (end - at >= 16) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
            const unsigned ends = Run::endsAmong(bytes);
            const __m128i zero = _mm_setzero_si128();
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, zero));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), _mm_unpackhi_epi8(bytes, zero));
            if (ends != 0) {
                const int count = __builtin_ctz(ends);
                out = to + count;
                return at + count;
            }
            at += 16;
            to += 16;
        }
#endif
        while (at != end && Run::isPlain[*at])
            *to++ = *at++;
        out = to;
        return at;
    }
};
