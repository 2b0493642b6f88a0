// SPDX-License-Identifier: MIT
#include "read/input/PelXercesReadMemory.h"

#include "xerces/engine/PelXercesAllocations.h"

#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <cstring>
#include <new>
#include <utility>

namespace Allocations = PelXercesAllocations;

namespace {

// What a block takes besides, here and in the heap.
constexpr std::size_t blockOverhead = 48;

// One of ICU's converters goes through the engine's array of places twice as fast as it makes
// characters, and no unit passes through more than four layers of a converter that do so.
constexpr std::size_t converterLayers = 4;

// Of what a tree takes: what it may give back while it is made, such as texts that grow.
constexpr std::size_t largeBlock = 0x10000;

thread_local PelXercesTreeMemory::Report* current = nullptr;

} // namespace

void* PelXercesReadMemory::allocate(XMLSize_t size) {
    if (Allocations::isFor<xercesc::ContentSpecNode>(size)) {
        names.addDeclaredElements();
        limits.addModelPart();
    }
    if (listScanner != nullptr && Allocations::isFor<xercesc::XMLReader>(size))
        listScanner->setHasNoDTD(true);
    if (size == Allocations::converterPlaces)
        size *= converterLayers;
    limits.addMemory(size, blockOverhead);
    void* const memory = PelXercesJobMemory::allocate(size);
    return isCleared ? std::memset(memory, 0, size) : memory;
}

void PelXercesReadMemory::deallocate(void* memory) {
    if (memory != nullptr)
        limits.removeMemory(sizeOf(memory) + blockOverhead);
    PelXercesJobMemory::deallocate(memory);
}

PelXercesTreeMemory& PelXercesTreeMemory::get() {
    alignas(PelXercesTreeMemory) static unsigned char storage[sizeof(PelXercesTreeMemory)];
    static PelXercesTreeMemory& immortal = *new (storage) PelXercesTreeMemory;
    return immortal;
}

void* PelXercesTreeMemory::allocate(XMLSize_t size) {
    if (current == nullptr)
        return PelXercesMemory::allocate(size);
    current->limits.addTreeMemory(size);
    void* const memory = PelXercesMemory::allocate(size);
    if (size >= largeBlock) {
        try {
            current->large[memory] = size;
        } catch (const std::bad_alloc&) { // then it counts for good
        }
    }
    return memory;
}

void PelXercesTreeMemory::deallocate(void* memory) {
    if (current != nullptr) {
        const auto found = current->large.find(memory);
        if (found != current->large.end()) {
            current->limits.removeMemory(found->second);
            current->large.erase(found);
        }
    }
    PelXercesMemory::deallocate(memory);
}

PelXercesTreeMemory::Report::Report(PelXercesReadLimits& readLimits) noexcept
    : limits(readLimits), previous(std::exchange(current, this)) {
}

PelXercesTreeMemory::Report::~Report() {
    current = previous;
}
