// SPDX-License-Identifier: MIT
#pragma once

#include "documents.h"

// Registers reads that keep the source, saves after one edit, and the same without.
void registerKeptWorkloads(const Document& document);
