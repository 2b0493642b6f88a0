// SPDX-License-Identifier: MIT
#include "output/PelOutputSettings.h"

namespace {

std::u16string settled; // empty: not yet

} // namespace

const std::u16string& PelOutputSettings::encoding(const std::u16string& wanted) {
    if (settled.empty())
        settled = wanted;
    return settled;
}
