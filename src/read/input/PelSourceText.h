// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesKeptSource.h"

#include <cstddef>
#include <memory>

/// Makes the text that a tree keeps of the bytes that it was read from.
namespace PelSourceText {

using Bytes = std::shared_ptr<const unsigned char[]>;

/// The bytes as UTF-8. Where these would not give the same bytes again in their encoding, or are
/// too many, the source cannot be cut: it is good for an unchanged document only.
std::unique_ptr<PelXercesKeptSource> make(const Bytes& bytes, std::size_t size,
                                          const char16_t* encoding);

} // namespace PelSourceText
