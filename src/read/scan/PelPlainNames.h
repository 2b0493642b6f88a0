// SPDX-License-Identifier: MIT
#pragma once

#include "read/limits/PelXercesNameLimits.h"
#include "read/limits/PelXercesReadLimits.h"

#include <xercesc/util/XercesDefs.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocumentImpl;
XERCES_CPP_NAMESPACE_END

/// The names of elements and attributes in a document that is being made, found by the bytes with
/// which the text spells them. The engine's own pool has a hash that can be foreseen, so asking it
/// each time, as the engine does, can be made slow on purpose.
class PelPlainNames {
public:
    /// `document` must have no name so far.
    PelPlainNames(xercesc::DOMDocumentImpl& document,
                  const PelXercesReadLimits::Bounds& readBounds);

    /// The name that is spelled by these bytes, which have to stay, as all nodes of the document
    /// have it; null when it is new.
    const XMLCh* find(const void* bytes, std::size_t size) {
        sought = hash(bytes, size);
        for (std::size_t i = static_cast<std::size_t>(sought) & mask; slots[i].bytes != nullptr;
             i = (i + 1) & mask)
            if (slots[i].hash == sought && slots[i].size == size &&
                std::memcmp(slots[i].bytes, bytes, size) == 0)
                return slots[i].name;
        return nullptr;
    }

    /// Adds the name that was not found just now; null when there are more than the engine's parser
    /// may read, or more that its tables can hardly tell apart.
    const XMLCh* add(const void* bytes, std::size_t size, const std::u16string& name);

private:
    struct Slot {
        std::uint64_t hash;
        const void* bytes; // null in an empty slot
        std::size_t size;
        const XMLCh* name;
    };

    std::uint64_t hash(const void* bytes, std::size_t size) const;
    bool areTooAlike(const Slot& newest);
    bool isTooAlike(const Slot& slot);
    Slot& freeSlot(std::uint64_t slotHash);
    void grow();

    xercesc::DOMDocumentImpl& document;
    const PelXercesReadLimits::Bounds& bounds;
    std::vector<Slot> slots;
    std::size_t mask;
    std::size_t count = 0;
    std::uint64_t sought = 0;
    const std::uint64_t seed;

    // What the engine would keep names of this tree and of its elements in.
    PelXercesNameTable treeNames{PelXercesAllocations::treeNames};
    PelXercesNameTable elementNames{PelXercesAllocations::undeclaredElements};
};
