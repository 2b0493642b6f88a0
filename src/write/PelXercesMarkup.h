// SPDX-License-Identifier: MIT
#pragma once

#include "write/characters/PelXercesEscapes.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

class PelXercesEncoder;
class PelXercesCharacterSet;

/// Gathers the text of a document as it will stand in the output, escaped and with references for
/// what the encoding cannot hold, and hands it on in large pieces.
///
/// It throws a PelXercesRefusal for what cannot stand in its place, and anywhere for a lone
/// surrogate, on which the engine's formatter would never end.
class PelXercesMarkup {
public:
    /// With an encoder, pieces go there; without one, everything stays here for takeText.
    PelXercesMarkup(PelXercesCharacterSet& outputRepertoire, PelXercesEncoder* outputEncoder);

    /// Markup of the writer's own: a literal of ASCII characters.
    template <std::size_t size>
    PelXercesMarkup& markup(const char16_t (&literal)[size]) {
        return addKnown(literal, size - 1);
    }

    /// A name, in which XML allows nothing that would have to be looked at.
    PelXercesMarkup& name(const char16_t* characters) {
        return addKnown(characters, std::char_traits<char16_t>::length(characters));
    }

    /// NUL-terminated text of `length` units that may stand as they are.
    PelXercesMarkup& addKnown(const char16_t* characters, std::size_t length) {
        if (!isUniversal)
            return plain(characters);
        append(characters, length);
        flushIfEnough();
        return *this;
    }

    /// NUL-terminated text in its place; null adds nothing.
    PelXercesMarkup& add(const char16_t* characters, const PelXercesEscapes& place);

    /// NUL-terminated text as it stands.
    PelXercesMarkup& plain(const char16_t* characters) {
        return add(characters, PelXercesEscapes::anywhere);
    }

    /// The first steps of `add`: what stands as it is, up to where it gives. Then one character
    /// that does not, to where the next one begins.
    const char16_t* addStanding(const char16_t* characters, const PelXercesEscapes& place);
    const char16_t* addOther(const char16_t* characters, const PelXercesEscapes& place);

    /// What a character that does not stand becomes.
    PelXercesEscapes::Treatment treatmentOf(const char16_t* characters,
                                            const PelXercesEscapes& place) const;

    /// Line feeds and spaces, which every encoding holds.
    PelXercesMarkup& addLine(std::size_t spaces);

    /// Hands what is gathered to the encoder, if there is one.
    void flush();

    std::u16string takeText();

private:
    // One step for what comes most often, short pieces.
    void append(const char16_t* characters, std::size_t length) {
        if (gathered.size() - used < length)
            grow(length);
        std::memcpy(&gathered[used], characters, length * sizeof(char16_t));
        used += length;
    }

    void append(std::u16string_view text) { append(text.data(), text.size()); }

    void flushIfEnough() {
        if (used >= enough)
            flush();
    }

    // Handed on when this many units have come together.
    static constexpr std::size_t enough = std::size_t{32} * 1024;

    void grow(std::size_t length);
    void appendLong(std::u16string_view text);
    void addReference(char32_t character);

    PelXercesCharacterSet& repertoire;
    PelXercesEncoder* const encoder;
    const bool isUniversal;
    std::u16string gathered; // room, of which the first units are
    std::size_t used = 0;
};
