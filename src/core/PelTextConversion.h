// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// Conversions between UTF-16 and the narrow character sets of the library's edges.
namespace PelTextConversion {

/// UTF-8 to UTF-16; each ill-formed sequence becomes U+FFFD.
std::u16string fromUtf8(std::string_view utf8);

/// UTF-16 to UTF-8; each lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view utf16);

/// Whether fromUtf8 would give just that text.
bool isSame(std::u16string_view utf16, std::string_view utf8) noexcept;

} // namespace PelTextConversion
