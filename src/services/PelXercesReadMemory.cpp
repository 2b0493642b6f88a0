// SPDX-License-Identifier: MIT
#include "services/PelXercesReadMemory.h"

#include "services/PelXercesReadLimits.h"

#include <new>

PelXercesReadMemory::~PelXercesReadMemory() {
    for (Block* block = newest; block != nullptr;) {
        Block* const older = block->previous;
        PelXercesMemory::deallocate(block);
        block = older;
    }
}

void* PelXercesReadMemory::allocate(XMLSize_t size) {
    limits.addMemory(size);
    auto* const block =
        new (PelXercesMemory::allocate(sizeof(Block) + size)) Block{newest, nullptr, size};
    if (newest != nullptr)
        newest->next = block;
    newest = block;
    return block + 1;
}

void PelXercesReadMemory::deallocate(void* memory) {
    if (memory == nullptr)
        return;
    Block* const block = static_cast<Block*>(memory) - 1;
    (block->next != nullptr ? block->next->previous : newest) = block->previous;
    if (block->previous != nullptr)
        block->previous->next = block->next;
    limits.removeMemory(block->size);
    PelXercesMemory::deallocate(block);
}
