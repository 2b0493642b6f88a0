// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>

/// The memory of trees, and of the exceptions that come from them: plain heap, through an object
/// that is never destroyed. The engine's own manager goes with the engine, which an exception on
/// its way to the caller can outlive.
class PelXercesMemory : public xercesc::MemoryManager {
public:
    static PelXercesMemory& get();

    xercesc::MemoryManager* getExceptionMemoryManager() override { return &get(); }

    /// Throws the engine's OutOfMemoryException.
    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;
};
