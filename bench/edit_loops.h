// SPDX-License-Identifier: MIT
#pragma once

/// Registers the loops that change the tree which they go through, each over elements whose number
/// doubles: the time has to double too.
void registerEditLoops();
