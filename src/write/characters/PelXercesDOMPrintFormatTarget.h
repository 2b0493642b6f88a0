// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/framework/XMLFormatter.hpp>

#include <ostream>

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
