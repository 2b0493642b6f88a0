// SPDX-License-Identifier: MIT
#include "services/PelXercesTreeBuilder.h"

#include "xerces/PelXercesMemory.h"

#include <utility>

PelXercesTreeBuilder::PelXercesTreeBuilder(PelXercesReadMemory& memory)
    : XercesDOMParser(nullptr, &memory) {
}

// The engine makes the document with the parser's memory manager.
void PelXercesTreeBuilder::startDocument() {
    xercesc::MemoryManager* const own = std::exchange(fMemoryManager, &PelXercesMemory::get());
    XercesDOMParser::startDocument();
    fMemoryManager = own;
}
