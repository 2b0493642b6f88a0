// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/PelXercesMemory.h"

#include <cstddef>

class PelXercesReadLimits;

/// The parser's memory in one read, within its limits. What the engine has lost track of by the
/// end, as it does in external DTDs and after failures, goes with it.
class PelXercesReadMemory final : public PelXercesMemory {
public:
    explicit PelXercesReadMemory(PelXercesReadLimits& readLimits) : limits(readLimits) {}
    ~PelXercesReadMemory() override;
    PelXercesReadMemory(const PelXercesReadMemory&) = delete;
    PelXercesReadMemory& operator=(const PelXercesReadMemory&) = delete;

    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;

private:
    struct alignas(std::max_align_t) Block {
        Block* previous;
        Block* next;
        XMLSize_t size;
    };

    PelXercesReadLimits& limits;
    Block* newest = nullptr;
};
