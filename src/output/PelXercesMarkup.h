// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/framework/XMLFormatter.hpp>

#include <cstddef>
#include <string>

class PelXercesRepertoire;

/// Gathers the text of a document as it will stand in the output, escaped and with references for
/// what the encoding cannot hold, and hands it on in large pieces.
///
/// It throws the engine's TranscodingException for a lone surrogate, on which the formatter would
/// never end.
class PelXercesMarkup {
public:
    /// With a formatter, pieces go there; without one, everything stays here for takeText.
    PelXercesMarkup(PelXercesRepertoire& outputRepertoire, xercesc::XMLFormatter* outputFormatter);

    /// Markup of the writer's own: a literal of ASCII characters.
    template <std::size_t size>
    PelXercesMarkup& markup(const char16_t (&literal)[size]) {
        return addKnown(literal);
    }

    /// NUL-terminated text as it stands; null adds nothing.
    PelXercesMarkup& plain(const char16_t* characters);

    /// A name, in which XML allows nothing that would have to be looked at.
    PelXercesMarkup& name(const char16_t* characters) { return addKnown(characters); }

    /// Text with what the formatter's CharEscapes mode escapes: `&`, `<`, `>` and CR.
    PelXercesMarkup& text(const char16_t* characters);

    /// Text with what its AttrEscapes mode escapes: `&`, `<`, `"`, LF, CR and TAB.
    PelXercesMarkup& attributeValue(const char16_t* characters);

    /// Hands what is gathered to the formatter, if there is one.
    void flush();

    std::u16string takeText() { return std::move(gathered); }

private:
    PelXercesMarkup& addKnown(const char16_t* characters);
    PelXercesMarkup& add(const char16_t* characters, unsigned char mode);
    void addReference(char32_t character);
    void flushIfEnough();

    PelXercesRepertoire& repertoire;
    xercesc::XMLFormatter* const formatter;
    std::u16string gathered;
};
