// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesBuffers.h"

#include <algorithm>
#include <cstring>

using xercesc::DOMBuffer;

namespace {

constexpr std::size_t smallest = 8; // units, in which the link to the next spare one has room
constexpr std::size_t steps = 4;    // classes to each doubling

static_assert(sizeof(DOMBuffer*) <= smallest * sizeof(XMLCh));

} // namespace

std::size_t PelXercesBuffers::capacityOf(std::size_t index) {
    return (steps + index % steps) * (smallest / steps) << index / steps;
}

// The last class whose capacity is not above.
std::size_t PelXercesBuffers::classOf(std::size_t capacity) {
    std::size_t doublings = 0;
    while (capacity >> doublings >= 2 * smallest)
        ++doublings;
    return doublings * steps + (capacity >> doublings) / (smallest / steps) - steps;
}

DOMBuffer& PelXercesBuffers::make(xercesc::DOMDocumentImpl& document, const XMLCh* data,
                                  std::size_t length) {
    const std::size_t needed = std::max(length + 1, smallest);
    std::size_t index = classOf(needed);
    if (capacityOf(index) < needed)
        ++index;
    const std::size_t beyond = std::min(index + steps + 1, classes); // up to twice the size
    DOMBuffer* buffer = nullptr;
    for (std::size_t i = index; i < beyond && buffer == nullptr; ++i)
        buffer = take(i);
    if (buffer == nullptr)
        buffer = new (&document) DOMBuffer(&document, capacityOf(index));
    buffer->set(data, length);
    return *buffer;
}

// The link lies in the buffer's own memory; the buffer counts as full, as reading one ends its
// text.
DOMBuffer* PelXercesBuffers::take(std::size_t index) noexcept {
    DOMBuffer* const taken = spare[index];
    if (taken != nullptr)
        std::memcpy(&spare[index], taken->getRawBuffer(), sizeof(DOMBuffer*));
    return taken;
}

void PelXercesBuffers::takeBack(DOMBuffer& buffer) noexcept {
    if (buffer.getCapacity() < smallest)
        return;
    const std::size_t index = classOf(buffer.getCapacity());
    if (index >= classes)
        return;
    buffer.chop(buffer.getCapacity());
    std::memcpy(const_cast<XMLCh*>(buffer.getRawBuffer()), &spare[index], sizeof(DOMBuffer*));
    spare[index] = &buffer;
}
