// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

#include <cstddef>
#include <memory>
#include <new>

/// No memory is left: to the engine in its own words, to the library's callers in the standard's.
class PelXercesOutOfMemory final : public xercesc::OutOfMemoryException, public std::bad_alloc {};

/// The memory of trees, and of the exceptions that come from them: plain heap, through an object
/// that is never destroyed. The engine's own manager goes with the engine, which an exception on
/// its way to the caller can outlive.
class PelXercesMemory : public xercesc::MemoryManager {
public:
    static PelXercesMemory& get();

    xercesc::MemoryManager* getExceptionMemoryManager() override { return &get(); }

    /// Throws PelXercesOutOfMemory.
    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;
};

struct PelXercesDocumentRelease {
    void operator()(xercesc::DOMDocument* document) const { document->release(); }
};

/// An engine document that no one shares yet.
using PelXercesDocumentPtr = std::unique_ptr<xercesc::DOMDocument, PelXercesDocumentRelease>;

/// The memory of one job. What the engine has lost track of by its end, as it does in external DTDs
/// and after failures, goes with it.
class PelXercesJobMemory : public PelXercesMemory {
public:
    PelXercesJobMemory() = default;
    ~PelXercesJobMemory() override;
    PelXercesJobMemory(const PelXercesJobMemory&) = delete;
    PelXercesJobMemory& operator=(const PelXercesJobMemory&) = delete;

    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;

protected:
    /// The size of an allocation.
    static XMLSize_t sizeOf(const void* memory);

private:
    struct alignas(std::max_align_t) Block {
        Block* previous;
        Block* next;
        XMLSize_t size;
    };

    Block* newest = nullptr;
};
