// SPDX-License-Identifier: MIT
#include "write/PelOutputSettings.h"

#include <array>

namespace {

// Neither made nor destroyed at run time: in a static build, objects of the program write before
// this library's are made, and after they are gone. Names that are longer than this are of no
// encoding, cut or not.
std::array<char16_t, 128> settled; // empty: not yet

} // namespace

std::u16string PelOutputSettings::encoding(const std::u16string& wanted) {
    if (settled[0] == 0)
        wanted.copy(settled.data(), settled.size() - 1);
    return settled.data();
}
