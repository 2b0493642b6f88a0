// SPDX-License-Identifier: MIT
#pragma once

#include "documents.h"

// Adds the benchmarks of single operations that suit the document: loops by index over the flat
// one, reads of attributes and texts in the catalogue, and filling a new document.
void registerHandleWorkloads(const Document& document);
