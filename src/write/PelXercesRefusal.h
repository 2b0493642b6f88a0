// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

/// Thrown, and caught, within a write: the tree holds what cannot be written. In words for people.
struct PelXercesRefusal {
    PelString reason;
};
