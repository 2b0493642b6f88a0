// SPDX-License-Identifier: MIT
#include "xerces/PelXercesMemory.h"

#include "core/PelPlatform.h"

#include <xercesc/util/OutOfMemoryException.hpp>

#include <new>

namespace {

// The nodes of all but small trees lie in blocks of just this size, filled from front to back.
constexpr XMLSize_t nodeBlock = 0x80000;

} // namespace

PelXercesMemory& PelXercesMemory::get() {
    alignas(PelXercesMemory) static unsigned char storage[sizeof(PelXercesMemory)];
    static PelXercesMemory& immortal = *new (storage) PelXercesMemory;
    return immortal;
}

void* PelXercesMemory::allocate(XMLSize_t size) {
    try {
        void* const memory = ::operator new(size);
        if (size == nodeBlock)
            PelPlatform::willBeFilled(memory, size);
        return memory;
    } catch (const std::bad_alloc&) {
        throw xercesc::OutOfMemoryException();
    }
}

void PelXercesMemory::deallocate(void* memory) {
    ::operator delete(memory);
}
