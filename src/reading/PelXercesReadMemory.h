// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelXercesReadLimits.h"
#include "xerces/PelXercesMemory.h"

/// The memory of one read but for its tree, and the limits that it keeps to.
class PelXercesReadMemory final : public PelXercesJobMemory {
public:
    PelXercesReadLimits& getLimits() noexcept { return limits; }

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
};
