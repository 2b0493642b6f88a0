// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// The printf-style patterns of PelString::format.
namespace PelFormat {

/// The pattern with `modifier` as its one conversion's length modifier. Empty unless the pattern
/// holds exactly one conversion, which is one of `kinds`, takes no other argument and has no width
/// or precision beyond 100,000.
std::u16string forOneValue(std::u16string_view pattern, std::u16string_view kinds,
                           std::u16string_view modifier);

} // namespace PelFormat
