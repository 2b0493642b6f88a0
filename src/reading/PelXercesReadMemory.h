// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelXercesCheckedStream.h"
#include "reading/PelXercesEntities.h"
#include "reading/PelXercesReadLimits.h"
#include "xerces/PelXercesMemory.h"

/// The memory of one read but for its tree, the limits that it keeps to, its open streams, and
/// what its entities are called.
class PelXercesReadMemory final : public PelXercesJobMemory {
public:
    PelXercesReadLimits& getLimits() noexcept { return limits; }
    PelXercesOpenStreams& getStreams() noexcept { return streams; }
    PelXercesEntities& getEntities() noexcept { return entities; }

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
    PelXercesEntities entities;
    PelXercesReadLimits limits;
    PelXercesOpenStreams streams; // goes before the limits, and these before the memory
};
