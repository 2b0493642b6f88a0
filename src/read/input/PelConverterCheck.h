// SPDX-License-Identifier: MIT
#pragma once

#include "read/input/PelEncodingCheck.h"

#include <unicode/ucnv.h>

#include <array>
#include <cstddef>
#include <memory>

/// A converter of ICU.
class PelConverter {
public:
    struct Close {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };
    using Handle = std::unique_ptr<UConverter, Close>;

    /// Null when nobody knows the name. The converter stops at what it cannot convert, and replaces
    /// nothing.
    static Handle open(const char* name);
};

/// The check of an encoding by its converter, which has to take every byte.
class PelConverterCheck final : public PelEncodingCheck {
public:
    explicit PelConverterCheck(PelConverter::Handle ownConverter);

    std::size_t passBytes(const Byte* bytes, std::size_t size) override;
    bool mayEnd() override;

private:
    std::size_t convert(const Byte* bytes, std::size_t size);
    const char* feed(const char* next, const char* end, bool isEnd);
    bool isGood() const { return U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR; }

    const PelConverter::Handle converter;
    std::array<UChar, 1024> units{};
    UErrorCode status = U_ZERO_ERROR;
    bool hasNul = false;
};
