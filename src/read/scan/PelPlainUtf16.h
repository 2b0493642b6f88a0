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
            at = Run::copyAscii(at, end, out);
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
};
