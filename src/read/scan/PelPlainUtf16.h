// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelCharacters.h"
#include "read/scan/PelPlainRuns.h"

/// UTF-16 in the machine's byte order, as the scanner of plain documents reads it; see
/// PelPlainUtf8.
class PelPlainUtf16 {
public:
    using Unit = char16_t;
    static constexpr bool isUtf8 = false;

    template <class Run>
    static const Unit* copy(const Unit* at, const Unit* end, char16_t*& out) {
        for (;;) {
            at = copyAscii<Run>(at, end, out);
            if (at == end || *at < 0x80)
                return at;
            do {
                if (!copyCharacter(at, end, out))
                    return at;
            } while (at != end && *at >= 0x80);
        }
    }

    static bool copyCharacter(const Unit*& at, const Unit* end, char16_t*& out) {
        if (at == end || *at < 0x80 || *at > 0xFFFD)
            return false;
        const bool isPair = PelCharacters::isSurrogate(*at);
        if (isPair && (end - at < 2 || !PelCharacters::isPair(at[0], at[1])))
            return false;
        if (isPair)
            *out++ = *at++;
        *out++ = *at++;
        return true;
    }

    static std::size_t countUnits(const Unit* at, const Unit* end) {
        return static_cast<std::size_t>(end - at);
    }

private:
    template <class Run>
    static const Unit* copyAscii(const Unit* at, const Unit* end, char16_t*& out) {
        char16_t* to = out;
#ifdef __SSE2__
        while (end - at >= 16) {
            const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
            const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 8));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to), low);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), high);
            // What is outside ASCII becomes 0 or a byte from 0x80 on, and each ends a run.
            const unsigned ends = Run::endsAmong(_mm_packus_epi16(low, high));
            if (ends != 0) {
                const int count = __builtin_ctz(ends);
                out = to + count;
                return at + count;
            }
            at += 16;
            to += 16;
        }
#endif
        while (at != end && *at < 0x80 && Run::isPlain[*at])
            *to++ = *at++;
        out = to;
        return at;
    }
};
