// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// How many units a copied run may spoil behind its end.
constexpr std::size_t plainSlack = 16;

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
};

using PelPlainContent = PelPlainRun<'<', '&', ']', true>;
template <char quote>
using PelPlainQuoted = PelPlainRun<quote, '<', '&', false>;
using PelPlainComment = PelPlainRun<'-', '-', '-', true>;
using PelPlainCdata = PelPlainRun<']', ']', ']', true>;
using PelPlainInstruction = PelPlainRun<'?', '?', '?', true>;
using PelPlainName = PelPlainRun<'<', '<', '<', false>;
