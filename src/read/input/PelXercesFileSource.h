// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelPlatform.h"

#include <qrndom/PelString.h>

#include <xercesc/framework/LocalFileInputSource.hpp>

#include <cstddef>
#include <memory>
#include <string>

class PelXercesReadMemory;

/// A local file as the parser reads it. Unlike the engine's own source, it finds its file by the
/// UTF-8 form of the name, whatever converter the process has set for the engine.
class PelXercesFileSource final : public xercesc::LocalFileInputSource {
public:
    /// The file that a caller names, relative to the current directory: a pipe will do as well.
    PelXercesFileSource(const PelString& name, PelXercesReadMemory& memory);

    /// The regular file that a document names, relative to the entity with the system identifier
    /// `base`.
    PelXercesFileSource(const PelString& base, const PelString& name, PelXercesReadMemory& memory);

    bool isReadable() const;

    /// Reads the file ahead and keeps its bytes, from which streams are made from then on. False
    /// for what is no regular file, or no plain document at first sight.
    bool load();
    const XMLByte* getBytes() const { return bytes.get(); }
    std::size_t getSize() const { return size; }

    /// Null when the file cannot be opened.
    xercesc::BinInputStream* makeStream() const override;

private:
    PelXercesReadMemory& readMemory;
    PelPlatform::InputFile::Kind kind;
    std::string path;
    std::unique_ptr<XMLByte[]> bytes;
    std::size_t size = 0;
};
