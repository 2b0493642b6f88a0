// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelPlatform.h"

#include <qrndom/PelString.h>

#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

class PelXercesReadMemory;

/// A local file that is to be read. Its path is the UTF-8 form of its name, whatever converter the
/// process has set for the engine.
struct PelXercesFile {
    /// The file that a caller names, relative to the current directory: a pipe will do as well.
    PelXercesFile(const PelString& name, PelXercesReadMemory& memory);

    /// The regular file that a document names, relative to the entity with the system identifier
    /// `base`.
    PelXercesFile(const PelString& base, const PelString& name, PelXercesReadMemory& memory);

    bool isReadable() const;

    /// Reads the whole file. False for what is no regular file and, unless everything is wanted,
    /// for what is no plain document at first sight.
    bool load(bool isWantedAnyhow = false);

    PelString id; ///< The full path, for the engine.
    PelPlatform::InputFile::Kind kind;
    std::string path;
    std::shared_ptr<XMLByte[]> bytes; ///< Once it is loaded.
    std::size_t size = 0;
};

/// What the engine reads the document or an external entity from. Its streams are checked; see
/// PelXercesCheckedStream.
class PelXercesSource final : public xercesc::InputSource {
public:
    using Stream = std::unique_ptr<xercesc::BinInputStream>;

    /// Bytes in memory, which stay there. They count as input when they are opened.
    PelXercesSource(PelXercesReadMemory& memory, const PelString& id, const void* bytes,
                    std::size_t size);

    /// A file; what is read of it counts as it is read, unless it is loaded.
    PelXercesSource(PelXercesReadMemory& memory, const PelXercesFile& file);

    /// What `open` opens. Where it gives no stream, it tells the entities of the read why.
    PelXercesSource(PelXercesReadMemory& memory, const PelString& id, std::function<Stream()> open);

    xercesc::BinInputStream* makeStream() const override;

private:
    PelXercesReadMemory& readMemory;
    const std::function<Stream()> openStream;
};
