// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelXercesCheckedStream.h"
#include "reading/PelXercesReadLimits.h"
#include "xerces/PelXercesMemory.h"

/// The memory of one read but for its tree, the limits that it keeps to, and its open streams.
class PelXercesReadMemory final : public PelXercesJobMemory {
public:
    PelXercesReadLimits& getLimits() noexcept { return limits; }
    PelXercesOpenStreams& getStreams() noexcept { return streams; }

    void* allocate(XMLSize_t size) override {
        limits.addMemory(size);
        return PelXercesJobMemory::allocate(size);
    }

    void deallocate(void* memory) override {
        if (memory != nullptr)
            limits.removeMemory(sizeOf(memory));
        PelXercesJobMemory::deallocate(memory);
    }

private:
    PelXercesReadLimits limits;
    PelXercesOpenStreams streams; // goes before the limits, and these before the memory
};
