// SPDX-License-Identifier: MIT
#include "read/scan/PelPlainNames.h"

#include "xerces/engine/PelXercesFields.h"

#include <algorithm>
#include <random>

using xercesc::DOMDocumentImpl;

namespace {

constexpr std::size_t firstSize = 32; // of the table; a power of two

// Random per process, so that colliding names cannot be prepared.
std::uint64_t processSeed() {
    static const std::uint64_t seed = [] {
        std::random_device device;
        return std::uint64_t{device()} << 32 | device();
    }();
    return seed;
}

std::uint64_t mixed(std::uint64_t value) {
    value = (value ^ value >> 32) * 0x9FB21C651E98DF25U;
    value = (value ^ value >> 29) * 0xC6A4A7935BD1E995U;
    return value ^ value >> 32;
}

template <class Number>
Number read(const void* bytes) {
    Number number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

} // namespace

PelPlainNames::PelPlainNames(DOMDocumentImpl& ownDocument,
                             const PelXercesReadLimits::Bounds& readBounds)
    : document(ownDocument), bounds(readBounds), slots(firstSize), mask(firstSize - 1),
      seed(processSeed()) {
}

const XMLCh* PelPlainNames::add(const void* bytes, std::size_t size, const std::u16string& name) {
    if (++count > bounds.names)
        return nullptr;
    if (count * 2 > slots.size())
        grow();
    if (count > PelXercesFields::namePlacesOf(document))
        PelXercesFields::growNameTable(document);
    Slot& slot = freeSlot(sought);
    slot = {sought, bytes, size, PelXercesFields::addName(document, name)};
    return areTooAlike(slot) ? nullptr : slot.name;
}

std::uint64_t PelPlainNames::hash(const void* bytes, std::size_t size) const {
    const char* at = static_cast<const char*>(bytes);
    std::uint64_t value = seed ^ size;
    for (; size > 8; at += 8, size -= 8)
        value = mixed(value ^ read<std::uint64_t>(at));
    // The last eight bytes or fewer, each at least once.
    if (size >= 4)
        return mixed(value ^ (std::uint64_t{read<std::uint32_t>(at)} << 32 |
                              read<std::uint32_t>(at + size - 4)));
    std::uint64_t rest = 0;
    for (; size > 0; ++at, --size)
        rest = rest << 8 | static_cast<unsigned char>(*at);
    return mixed(value ^ rest);
}

// As long as there are few names, all of them may share a place.
bool PelPlainNames::areTooAlike(const Slot& newest) {
    const std::size_t few = bounds.alikeNames;
    if (count != few + 1)
        return count > few && isTooAlike(newest);
    return std::any_of(slots.begin(), slots.end(), [this](const Slot& slot) {
        return slot.bytes != nullptr && isTooAlike(slot);
    });
}

// That a name is one of attributes only does not matter here: this is about being near a bound.
bool PelPlainNames::isTooAlike(const Slot& slot) {
    const std::size_t most = bounds.alikeNames;
    return treeNames.add(slot.name) > most || elementNames.add(slot.name) > most;
}

PelPlainNames::Slot& PelPlainNames::freeSlot(std::uint64_t slotHash) {
    std::size_t i = static_cast<std::size_t>(slotHash) & mask;
    while (slots[i].bytes != nullptr)
        i = (i + 1) & mask;
    return slots[i];
}

void PelPlainNames::grow() {
    std::vector<Slot> old(slots.size() * 4);
    old.swap(slots);
    mask = slots.size() - 1;
    for (const Slot& slot : old)
        if (slot.bytes != nullptr)
            freeSlot(slot.hash) = slot;
}
