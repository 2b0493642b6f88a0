// SPDX-License-Identifier: MIT
#include "reading/PelXercesReadLimits.h"

#include <xercesc/internal/XMLReader.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <vector>

using xercesc::ContentSpecNode;

void PelXercesReadLimits::addExpansion(std::size_t characters) {
    expansion += characters;
    require(expansion <= freeExpansion + expansionPerByte * input,
            u"too much text from entities, default attributes or files read again");
}

void PelXercesReadLimits::addEntity(std::size_t length) {
    longestEntity = std::max(longestEntity, length);
}

// The engine makes an automaton of a model by recursion over its nodes.
void PelXercesReadLimits::addContentModel(const ContentSpecNode* model) {
    std::size_t nodes = 0;
    std::vector<const ContentSpecNode*> open = {model};
    while (!open.empty()) {
        const ContentSpecNode* const node = open.back();
        open.pop_back();
        if (node == nullptr)
            continue;
        require(++nodes <= maxModelNodes, u"too large a content model");
        open.push_back(node->getFirst());
        open.push_back(node->getSecond());
    }
}

// The engine looks for a value from the first to the last, and for each in all that follow it.
void PelXercesReadLimits::addChoice(const XMLCh* values) {
    require(xercesc::XMLString::stringLen(values) <= maxChoice,
            u"too many values for an attribute");
}

// The engine keeps the names of a document in a table that does not grow.
void PelXercesReadLimits::addRareName(const XMLCh* name) {
    names.insert(name);
    require(names.size() <= maxNames, u"too many different names");
}

// Each reference to an entity, wherever it stands, takes one reader; nothing else tells of those in
// attribute values and in document types.
void PelXercesReadLimits::addMemory(std::size_t bytes) {
    static const std::size_t readerBytes =
        sizeof(xercesc::XMLReader) +
        xercesc::XMLPlatformUtils::alignPointerForNewBlockAllocation(sizeof(void*));
    const bool isReference = bytes == readerBytes;
    memory += bytes;
    if (isReference) {
        require(++references <= maxReferences, u"too many references to entities");
        addExpansion(longestEntity);
    }
    if (isReference || isWatched)
        require(memory <= freeMemory + memoryPerByte * input + memoryPerLevel * deepest,
                u"too much memory for parsing");
}

// Only the first time: what the engine clears up after that must not fail.
void PelXercesReadLimits::require(bool isWithin, const char16_t* what) {
    if (isWithin || excess != nullptr)
        return;
    excess = what;
    throw xercesc::OutOfMemoryException();
}
