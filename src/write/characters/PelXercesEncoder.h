// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesMemory.h"

#include <xercesc/framework/XMLFormatter.hpp>

#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

class PelXercesCharacterSet;

/// Hands the formatter's bytes to a stream, unchanged. It never flushes the stream.
class PelXercesDOMPrintFormatTarget final : public xercesc::XMLFormatTarget {
public:
    explicit PelXercesDOMPrintFormatTarget(std::ostream& outputStream) : stream(outputStream) {}

    void writeChars(const XMLByte* toWrite, XMLSize_t count,
                    xercesc::XMLFormatter* /*formatter*/) override {
        stream.write(reinterpret_cast<const char*>(toWrite), static_cast<std::streamsize>(count));
    }

private:
    std::ostream& stream;
};

/// Turns text into the bytes of an encoding, and hands them to a stream.
///
/// The engine's formatter does it for all encodings but UTF-8, for which it takes ten steps where
/// one will do.
class PelXercesEncoder {
public:
    /// The name of the encoding and its characterSet, which is only looked at here.
    PelXercesEncoder(const std::u16string& encoding, const PelXercesCharacterSet& characterSet,
                     std::ostream& output);

    /// Line feeds become CR LF from now on.
    void setHasReturns(bool areWanted) { hasReturns = areWanted; }

    /// Whole surrogate pairs, and what the encoding holds. A stream that has failed gets nothing.
    void encode(std::u16string_view text);

    /// Text in UTF-8 that the encoding holds, with its own line ends.
    void encodeSource(std::string_view text);

private:
    void encodePieces(std::u16string_view text);
    void encodeAsUtf8(std::u16string_view text);

    std::ostream& stream;
    const std::size_t piece;
    bool hasReturns = false;
    std::unique_ptr<char[]> bytes; // of a piece
    PelXercesDOMPrintFormatTarget target;
    PelXercesJobMemory memory; // a formatter that cannot be made loses some
    std::optional<xercesc::XMLFormatter> formatter;
};
