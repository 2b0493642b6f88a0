// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/framework/XMLFormatter.hpp>

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

    /// NUL-terminated text as it stands; null adds nothing.
    PelXercesMarkup& operator<<(const char16_t* text);

    /// Text with what the formatter's CharEscapes mode escapes: `&`, `<`, `>` and CR.
    void addText(const char16_t* text);

    /// Text with what its AttrEscapes mode escapes: `&`, `<`, `"`, LF, CR and TAB.
    void addAttributeValue(const char16_t* text);

    /// Hands what is gathered to the formatter, if there is one.
    void flush();

    std::u16string takeText() { return std::move(gathered); }

private:
    void add(const char16_t* text, unsigned char mode);
    void addReference(char32_t character);

    PelXercesRepertoire& repertoire;
    xercesc::XMLFormatter* const formatter;
    std::u16string gathered;
};
