// SPDX-License-Identifier: MIT
#pragma once

#include "documents.h"

// Registers the benchmarks of messages, conversion, insertion and loops; some need the catalogue.
void registerJobs(const Document& catalogue);
