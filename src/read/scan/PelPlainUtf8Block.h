// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelCharacters.h"
#include "read/scan/PelPlainRuns.h"

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__

/// Sixty-four bytes of UTF-8, turned into UTF-16 together: for texts in which characters of one
/// byte, of two and of more take turns too soon for a loop for each.
///
/// A unit is made at every byte, as if a character of at most three bytes ended there. Those are
/// copied at which one does.
class PelPlainUtf8Block {
public:
    using Unit = unsigned char;

    /// How many bytes it takes, and looks at.
    static constexpr std::ptrdiff_t size = 64;
    static constexpr std::ptrdiff_t sizeLookedAt = size + 3;

    /// Whether a block is worth it here: behind one character outside ASCII, another follows soon.
    static bool pays(const Unit* at) { return (_mm_movemask_epi8(load(at)) & 0xFFF0) != 0; }

    /// Copies all characters of the block, which begins with one, but the last, which may go on
    /// behind it. Where a byte ends the run or belongs to no character, it copies those before that
    /// byte, again without the last, and gives false.
    template <class Run>
    static bool copy(const Unit*& at, char16_t*& out) {
        char16_t units[sizeLookedAt];
        std::uint64_t tails = 0;
        std::uint64_t quads = 0; // where characters of four bytes start
        std::uint64_t stops = 0;
        for (int i = 0; i < size; i += 16) {
            const Bytes bytes(at + i, i == 0);
            tails |= placesOf(isTail(bytes.last), i);
            quads |= placesOf(isFrom(0xF0, bytes.last), i);
            stops |= placesOf(bytes.isNoCharacter(), i) |
                     (placesOf(Run::endsAmong(bytes.last), i) & ~placesOf(bytes.last, i));
            bytes.makeUnits(units + i);
        }
        const std::uint64_t pairs = makePairs(at, quads, stops, units);
        const std::uint64_t starts = ~tails & (lowest(stops) - 1); // all if nothing stops here
        if (starts != 0) {
            const int count = 63 - __builtin_clzll(starts);
            std::uint64_t ends = starts >> 1 | (pairs & ((std::uint64_t{1} << count) - 1));
            char16_t* to = out;
            for (; ends != 0; ends &= ends - 1)
                *to++ = units[__builtin_ctzll(ends)];
            out = to;
            at += count;
        }
        return stops == 0;
    }

private:
    static __m128i load(const Unit* at) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    }
    static __m128i all(int byte) { return _mm_set1_epi8(static_cast<char>(byte)); }
    static __m128i is(int byte, __m128i bytes) { return _mm_cmpeq_epi8(bytes, all(byte)); }
    static __m128i isFrom(int byte, __m128i bytes) {
        return _mm_cmpeq_epi8(_mm_max_epu8(bytes, all(byte)), bytes);
    }
    // Tails are what is least when bytes have a sign.
    static __m128i isTail(__m128i bytes) { return _mm_cmplt_epi8(bytes, all(0xC0)); }

    static std::uint64_t placesOf(unsigned bits, int begin) { return std::uint64_t{bits} << begin; }
    static std::uint64_t placesOf(__m128i is, int begin) {
        return placesOf(static_cast<unsigned>(_mm_movemask_epi8(is)), begin);
    }
    static std::uint64_t lowest(std::uint64_t places) { return places & (~places + 1); }

    // Sixteen bytes, and for each the ones before it, up to the beginning of the block.
    struct Bytes {
        const __m128i last, lastBut1, lastBut2, lastBut3;

        Bytes(const Unit* at, bool isFirst)
            : last(load(at)), lastBut1(isFirst ? _mm_slli_si128(last, 1) : load(at - 1)),
              lastBut2(isFirst ? _mm_slli_si128(last, 2) : load(at - 2)),
              lastBut3(isFirst ? _mm_slli_si128(last, 3) : load(at - 3)) {}

        // Where a tail is missing or too many, and at a byte that may not stand behind those before
        // it: overlong ones behind C0, C1 and E0, surrogates behind ED, U+FFFE and U+FFFF.
        __m128i isNoCharacter() const {
            const __m128i leads = _mm_or_si128(_mm_or_si128(_mm_subs_epu8(lastBut1, all(0xBF)),
                                                            _mm_subs_epu8(lastBut2, all(0xDF))),
                                               _mm_subs_epu8(lastBut3, all(0xEF)));
            const __m128i isTorn = _mm_cmpeq_epi8(is(0, leads), isTail(last));
            const __m128i isLow =
                _mm_or_si128(is(0xC0, _mm_and_si128(last, all(0xFE))),
                             _mm_and_si128(is(0xE0, lastBut1), _mm_cmplt_epi8(last, all(0xA0))));
            const __m128i isSurrogate =
                _mm_and_si128(is(0xED, lastBut1), _mm_cmpgt_epi8(last, all(0x9F)));
            const __m128i isHigh =
                _mm_and_si128(_mm_and_si128(is(0xEF, lastBut2), is(0xBF, lastBut1)),
                              _mm_cmpgt_epi8(last, all(0xBD)));
            return _mm_or_si128(_mm_or_si128(isTorn, isLow), _mm_or_si128(isSurrogate, isHigh));
        }

        void makeUnits(char16_t* units) const {
            const __m128i hasTwo = isTail(last);
            const __m128i two = _mm_and_si128(lastBut1, hasTwo);
            const __m128i three = _mm_and_si128(lastBut2, _mm_and_si128(hasTwo, isTail(lastBut1)));
            const __m128i low = _mm_or_si128(_mm_and_si128(last, all(0x7F)),
                                             _mm_and_si128(_mm_slli_epi16(two, 6), all(0xC0)));
            const __m128i high = _mm_or_si128(_mm_and_si128(_mm_srli_epi16(two, 2), all(0x0F)),
                                              _mm_and_si128(_mm_slli_epi16(three, 4), all(0xF0)));
            auto* const to = reinterpret_cast<__m128i*>(units);
            _mm_storeu_si128(to, _mm_unpacklo_epi8(low, high));
            _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(low, high));
        }
    };

    // Makes the two units of each character of four bytes at its last two; gives where the first of
    // them are. Stops at those outside of what there is.
    static std::uint64_t makePairs(const Unit* begin, std::uint64_t quads, std::uint64_t& stops,
                                   char16_t* units) {
        const std::uint64_t pairs = quads << 2;
        for (; quads != 0; quads &= quads - 1) {
            const int place = __builtin_ctzll(quads);
            const Unit* const at = begin + place;
            const unsigned character = (at[0] & 0x0FU) << 18 | (at[1] & 0x3FU) << 12 |
                                       (at[2] & 0x3FU) << 6 | (at[3] & 0x3FU);
            if (character < 0x10000 || character > 0x10FFFF)
                stops |= lowest(quads);
            units[place + 2] = PelCharacters::highSurrogateOf(character);
            units[place + 3] = PelCharacters::lowSurrogateOf(character);
        }
        return pairs;
    }
};

#endif
