// SPDX-License-Identifier: MIT
#pragma once

#include "read/limits/PelXercesReadLimits.h"
#include "xerces/tree/PelXercesTree.h"

#include <cstddef>
#include <memory>

/// Reads plain documents, those of XML 1.0 in UTF-8 (or UTF-16 in memory) that have no document
/// type, several times as fast as the engine's parser does, into the same tree.
///
/// It is strict and has no messages: what it does not accept, be it wrong, near a limit or only
/// rare, is for the engine's parser to read from the beginning and to judge.
namespace PelPlainScanner {

enum class Encoding { utf8, nativeUtf16 };

/// The engine's name of the encoding.
const XMLCh* nativeUtf16();

/// Whether a document that begins with these bytes can be a plain one in UTF-8.
bool mayBePlain(const void* bytes, std::size_t size);

/// None when this is no plain document within these bounds. UTF-16 is aligned as its units are.
/// In a source, which is that of the bytes, each node gets its place.
PelXercesNewDocument read(const void* bytes, std::size_t size, Encoding encoding,
                          const XMLCh* systemId, const PelXercesReadLimits::Bounds& bounds = {},
                          std::unique_ptr<PelXercesKeptSource> source = nullptr);

} // namespace PelPlainScanner
