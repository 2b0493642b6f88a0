// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesAllocations.h"

#include <xercesc/util/XercesDefs.hpp>

#include <cstddef>
#include <cstdint>
#include <vector>

/// One of the engine's hash tables of names, as far as its chains go. The engine's hash is a fixed
/// one, so that names can be made to share a place, and each look-up goes through the chain there.
class PelXercesNameTable {
public:
    explicit PelXercesNameTable(const PelXercesAllocations::Table& engines)
        : places(engines.places), fill(engines.namesPerFour) {}

    /// Takes a name that it does not have yet. Gives the length of the chain that the name is in.
    std::size_t add(const XMLCh* name);

    bool grows() const noexcept { return fill != 0; }

    /// The number of names.
    std::size_t size() const noexcept { return hashes.size(); }

private:
    std::vector<std::uint32_t> chains; // one for each place, once there is a name
    std::vector<std::size_t> hashes;
    std::size_t places;
    std::size_t fill;
};
