// SPDX-License-Identifier: MIT
#include "xerces/engine/PelXercesMemory.h"

#include "core/PelPlatform.h"

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
        throw PelXercesOutOfMemory();
    }
}

void PelXercesMemory::deallocate(void* memory) {
    ::operator delete(memory);
}

PelXercesJobMemory::~PelXercesJobMemory() {
    for (Block* block = newest; block != nullptr;) {
        Block* const older = block->previous;
        PelXercesMemory::deallocate(block);
        block = older;
    }
}

void* PelXercesJobMemory::allocate(XMLSize_t size) {
    auto* const block =
        new (PelXercesMemory::allocate(sizeof(Block) + size)) Block{newest, nullptr, size};
    if (newest != nullptr)
        newest->next = block;
    newest = block;
    return block + 1;
}

void PelXercesJobMemory::deallocate(void* memory) {
    if (memory == nullptr)
        return;
    Block* const block = static_cast<Block*>(memory) - 1;
    (block->next != nullptr ? block->next->previous : newest) = block->previous;
    if (block->previous != nullptr)
        block->previous->next = block->next;
    PelXercesMemory::deallocate(block);
}

XMLSize_t PelXercesJobMemory::sizeOf(const void* memory) {
    return (static_cast<const Block*>(memory) - 1)->size;
}
