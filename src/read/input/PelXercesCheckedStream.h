// SPDX-License-Identifier: MIT
#pragma once

#include "read/input/PelEncodingCheck.h"

#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/util/BinInputStream.hpp>

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>

class PelXercesCheckedStream;

/// The streams of one read that are open.
struct PelXercesOpenStreams {
    PelXercesOpenStreams() = default;
    PelXercesOpenStreams(const PelXercesOpenStreams&) = delete;
    PelXercesOpenStreams& operator=(const PelXercesOpenStreams&) = delete;

    /// Closes those that the engine, without memory for a reader, has lost.
    ~PelXercesOpenStreams();

    std::list<PelXercesCheckedStream*> streams;
    const xercesc::ReaderMgr* readers = nullptr; ///< Who reads the streams.
};

/// An entity's bytes on their way to the engine, which lets much pass that is ill-formed: it ends
/// at a NUL, drops or replaces what it cannot decode, does not miss the rest of a sequence, and
/// believes a declaration that cannot be true. This stream ends before the first fault and then
/// throws the engine's exception, so that the fault is reported at its place.
class PelXercesCheckedStream final : public xercesc::BinInputStream {
public:
    /// What an encoding's characters are made of, in bytes.
    struct Unit {
        std::size_t size;
        bool isLittleEndian;
    };

    /// The bytes are in `knownEncoding`; without one, in the encoding that they begin with.
    PelXercesCheckedStream(PelXercesOpenStreams& streams,
                           std::unique_ptr<xercesc::BinInputStream> ownStream,
                           const XMLCh* knownEncoding);
    ~PelXercesCheckedStream() override;

    XMLFilePos curPos() const override { return stream->curPos(); }
    const XMLCh* getContentType() const override { return stream->getContentType(); }
    const XMLCh* getEncoding() const override { return stream->getEncoding(); }
    XMLSize_t readBytes(XMLByte* bytes, XMLSize_t wanted) override;

private:
    std::size_t passBytes(const XMLByte* bytes, std::size_t size);
    std::size_t passFirstBytes(XMLByte* bytes, std::size_t size);
    bool isEngineAtEnd(XMLSize_t wanted) const;
    [[noreturn]] void throwFault() const;

    const std::unique_ptr<xercesc::BinInputStream> stream;
    std::string encoding;
    std::unique_ptr<PelEncodingCheck> check;
    XMLSize_t calls = 0;
    XMLSize_t room = 0;    // in the engine's buffer when it is empty
    bool hasFault = false; // the bytes before it have been read
    Unit unit{1, false};
    std::optional<unsigned> faultyUnit;
    PelXercesOpenStreams& openStreams;
    const std::list<PelXercesCheckedStream*>::iterator place;
};
