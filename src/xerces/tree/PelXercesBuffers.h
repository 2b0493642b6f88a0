// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesFields.h"

#include <array>
#include <cstddef>

/// The buffers for the data of a document's texts: made, taken back and used again. They are kept
/// by their capacity, four classes to each doubling, so that one that fits is found at once.
class PelXercesBuffers {
public:
    /// A buffer with that data.
    xercesc::DOMBuffer& make(xercesc::DOMDocumentImpl& document, const XMLCh* data,
                             std::size_t length);

    /// Takes back what no node uses any more.
    void takeBack(xercesc::DOMBuffer& buffer) noexcept;

private:
    static constexpr std::size_t classes = 120; // up to 2^33 units

    static std::size_t capacityOf(std::size_t index);
    static std::size_t classOf(std::size_t capacity);

    xercesc::DOMBuffer* take(std::size_t index) noexcept;

    std::array<xercesc::DOMBuffer*, classes> spare{};
};
