// SPDX-License-Identifier: MIT
#pragma once

#include "read/input/PelXercesCheckedStream.h"
#include "read/input/PelXercesReadMemory.h"

#include <memory>
#include <utility>

/// An input source of the engine whose streams are checked.
template <class Source>
class PelXercesChecked final : public Source {
public:
    template <class... Arguments>
    explicit PelXercesChecked(PelXercesReadMemory& readMemory, Arguments&&... arguments)
        : Source(std::forward<Arguments>(arguments)..., &readMemory),
          streams(readMemory.getStreams()) {}

    xercesc::BinInputStream* makeStream() const override {
        std::unique_ptr<xercesc::BinInputStream> stream(Source::makeStream());
        if (!stream)
            return nullptr;
        const XMLCh* const known = Source::getEncoding();
        const XMLCh* const found = known != nullptr ? known : stream->getEncoding();
        return new (Source::getMemoryManager())
            PelXercesCheckedStream(streams, std::move(stream), found);
    }

private:
    PelXercesOpenStreams& streams;
};
