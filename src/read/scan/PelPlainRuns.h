// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// How many units a copied run may spoil behind its end.
constexpr std::size_t plainSlack = 16;

#ifdef __SSE2__
/// Copies sixteen units and gives them as bytes. What is outside ASCII becomes 0 or a byte from
/// 0x80 on.
inline __m128i copySixteen(const unsigned char* at, char16_t* to) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), _mm_unpackhi_epi8(bytes, zero));
    return bytes;
}
inline __m128i copySixteen(const char16_t* at, char16_t* to) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), low);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), high);
    return _mm_packus_epi16(low, high);
}
#endif

/// A kind of run: characters that come into the tree as they stand, up to one that means something.
/// Control characters, CR among them, and what is outside ASCII end every run.
template <char first, char second, char third, bool hasBreaks>
struct PelPlainRun {
    /// Whether tabs and line feeds belong to it.
    static constexpr bool keepsBreaks = hasBreaks;

    static constexpr std::array<bool, 256> makeTable() {
        std::array<bool, 256> table{};
        for (std::size_t c = ' '; c < 0x80; ++c)
            table[c] = c != first && c != second && c != third;
        table['\t'] = table['\n'] = keepsBreaks;
        return table;
    }

    static constexpr std::array<bool, 256> isPlain = makeTable();

#ifdef __SSE2__
    /// A bit for each of sixteen bytes that ends the run.
    static unsigned endsAmong(__m128i bytes) {
        // Bytes from 0x80 count as negative here, and so as below the space.
        __m128i ends = _mm_cmplt_epi8(bytes, _mm_set1_epi8(' '));
        if (keepsBreaks)
            ends = _mm_andnot_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\t')),
                                                 _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n'))),
                                    ends);
        ends = _mm_or_si128(ends, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(first)));
        if (second != first)
            ends = _mm_or_si128(ends, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(second)));
        if (third != first)
            ends = _mm_or_si128(ends, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(third)));
        return static_cast<unsigned>(_mm_movemask_epi8(ends));
    }
#endif

    /// Copies up to what the run does not hold.
    template <class Unit>
    static const Unit* copyAscii(const Unit* at, const Unit* end, char16_t*& out) {
        char16_t* to = out;
#ifdef __SSE2__
        for (; end - at >= 16; at += 16, to += 16)
            if (const unsigned ends = endsAmong(copySixteen(at, to))) {
                const int count = __builtin_ctz(ends);
                out = to + count;
                return at + count;
            }
#endif
        while (at != end && *at < isPlain.size() && isPlain[*at])
            *to++ = *at++;
        out = to;
        return at;
    }
};

using PelPlainContent = PelPlainRun<'<', '&', ']', true>;
template <char quote>
using PelPlainQuoted = PelPlainRun<quote, '<', '&', false>;
using PelPlainComment = PelPlainRun<'-', '-', '-', true>;
using PelPlainCdata = PelPlainRun<']', ']', ']', true>;
using PelPlainInstruction = PelPlainRun<'?', '?', '?', true>;
using PelPlainName = PelPlainRun<'<', '<', '<', false>;
