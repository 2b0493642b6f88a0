// SPDX-License-Identifier: MIT
#include "read/limits/PelXercesNameTable.h"

#include <xercesc/util/XMLString.hpp>

std::size_t PelXercesNameTable::add(const XMLCh* name) {
    if (fill != 0 && hashes.size() >= places * fill / 4)
        places = places * 2 + 1;
    if (chains.size() != places) {
        chains.assign(places, 0);
        for (const std::size_t hash : hashes)
            ++chains[hash % places];
    }
    hashes.push_back(xercesc::XMLString::hash(name, SIZE_MAX));
    return ++chains[hashes.back() % places];
}
