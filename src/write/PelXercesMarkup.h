// SPDX-License-Identifier: MIT
#pragma once

#include "write/characters/PelXercesEscapes.h"

#include <qrndom/PelString.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

class PelXercesEncoder;
class PelXercesCharacterSet;

/// What cannot be written, in words for people. Thrown, and caught, within a write.
struct PelXercesWriteError {
    PelString reason;
};

/// Gathers the text of a document as it will stand in the output, escaped and with references for
/// what the encoding cannot hold, and hands it on in large pieces.
///
/// A character that its escape table refuses is a PelXercesWriteError, and so is half a surrogate
/// pair anywhere: the engine's formatter would never end on it.
class PelXercesMarkup {
public:
    /// With an encoder, pieces go there; without one, everything stays here for takeText.
    PelXercesMarkup(PelXercesCharacterSet& outputCharacters, PelXercesEncoder* outputEncoder);

    /// A literal of ASCII characters.
    template <std::size_t size>
    PelXercesMarkup& markup(const char16_t (&literal)[size]) {
        return addKnown(literal, size - 1);
    }

    /// NUL-terminated text of `length` units in which nothing has to be escaped. What the encoding
    /// does not hold becomes a reference.
    PelXercesMarkup& addKnown(const char16_t* characters, std::size_t length) {
        return isUniversal ? addRaw({characters, length})
                           : add(characters, PelXercesEscapes::anywhere);
    }

    /// Text that the encoding holds, as it is. A surrogate pair may not be split between two calls.
    PelXercesMarkup& addRaw(std::u16string_view text) {
        append(text);
        return flushIfEnough();
    }

    /// NUL-terminated text, escaped; null adds nothing.
    PelXercesMarkup& add(const char16_t* characters, const PelXercesEscapes& escapes);

    /// The two steps of `add`: what is copied, up to where it gives; then one character that is
    /// not, to where the next one begins.
    const char16_t* addPlain(const char16_t* characters, const PelXercesEscapes& escapes);
    const char16_t* addEscaped(const char16_t* characters, const PelXercesEscapes& escapes);

    PelXercesEscapes::Action actionFor(const char16_t* characters,
                                       const PelXercesEscapes& escapes) const;

    /// A line feed and spaces.
    PelXercesMarkup& addLine(std::size_t spaces);

    /// A piece of a document in UTF-8, as it is: the encoding holds it. There has to be an encoder.
    void addSource(std::string_view text);

    /// Hands what is gathered to the encoder, if there is one.
    void flush();

    std::u16string takeText();

private:
    // Called most often with short pieces.
    void append(std::u16string_view text) {
        if (gathered.size() - used < text.size())
            grow(text.size());
        std::memcpy(&gathered[used], text.data(), text.size() * sizeof(char16_t));
        used += text.size();
    }

    PelXercesMarkup& flushIfEnough() {
        if (used >= enough)
            flush();
        return *this;
    }

    void grow(std::size_t length);
    void appendLong(std::u16string_view text);
    void addReference(char32_t character);

    PelXercesCharacterSet& characterSet;
    PelXercesEncoder* const encoder;
    const bool isUniversal;
    const std::size_t enough; // handed on when this many units have come together
    std::u16string gathered;  // a buffer, of which the first `used` units are taken
    std::size_t used = 0;
};
