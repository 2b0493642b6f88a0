// SPDX-License-Identifier: MIT
#pragma once

#include <unicode/ucnv.h>

#include <cstddef>
#include <memory>
#include <string>

/// Converters of ICU.
namespace PelConverter {

struct Close {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Handle = std::unique_ptr<UConverter, Close>;

/// Null when nobody knows the name. The converter stops at what it cannot convert, and replaces
/// nothing.
Handle open(const char* name);

} // namespace PelConverter

/// Watches the bytes of a text pass, piece by piece, for the first that no text in their encoding
/// holds: ill-formed sequences, and U+0000.
class PelEncodingCheck {
public:
    using Byte = unsigned char;

    PelEncodingCheck() = default;
    virtual ~PelEncodingCheck() = default;
    PelEncodingCheck(const PelEncodingCheck&) = delete;
    PelEncodingCheck& operator=(const PelEncodingCheck&) = delete;

    /// For an encoding by any of its names; null when nobody knows the name.
    static std::unique_ptr<PelEncodingCheck> forEncoding(const char* name);

    /// What the bytes of a text begin with in an encoding, up to `most` UTF-16 units or the first
    /// fault; empty when nobody knows the encoding's name.
    static std::u16string beginning(const char* name, const Byte* bytes, std::size_t size,
                                    std::size_t most);

    /// Whether two names mean the same encoding, and somebody knows it.
    static bool areSame(const char* name, const char* otherName);

    /// How many of the bytes come before the first fault; all of them when there is none. After a
    /// fault nothing more is asked. The fault may have begun in the piece before: then none.
    virtual std::size_t passBytes(const Byte* bytes, std::size_t size) = 0;

    /// Whether the text may end here, and cuts no sequence in two.
    virtual bool mayEnd() = 0;
};
