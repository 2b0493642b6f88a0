// SPDX-License-Identifier: MIT
#include "read/input/PelConverterCheck.h"

#include <unicode/ucnv_err.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr std::size_t longestPiece = 4096;

} // namespace

PelConverter::Handle PelConverter::open(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    Handle converter(ucnv_open(name, &status));
    if (status == U_MEMORY_ALLOCATION_ERROR)
        throw std::bad_alloc();
    if (converter)
        ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                            &status);
    return converter;
}

PelConverterCheck::PelConverterCheck(PelConverter::Handle ownConverter)
    : converter(std::move(ownConverter)) {
}

// A byte 0 is fed alone: it may or may not be a U+0000, and where is known.
std::size_t PelConverterCheck::passBytes(const Byte* bytes, std::size_t size) {
    for (std::size_t done = 0; done < size;) {
        const std::size_t longest = std::min(size - done, longestPiece);
        const auto* const zero = static_cast<const Byte*>(std::memchr(bytes + done, 0, longest));
        const std::size_t before =
            zero != nullptr ? static_cast<std::size_t>(zero - bytes) - done : longest;
        const std::size_t piece = std::max<std::size_t>(before, 1);
        const std::size_t taken = convert(bytes + done, piece);
        if (taken < piece)
            return done + taken;
        done += piece;
    }
    return size;
}

bool PelConverterCheck::mayEnd() {
    feed(nullptr, nullptr, true);
    return isGood();
}

std::size_t PelConverterCheck::convert(const Byte* bytes, std::size_t size) {
    const char* next = reinterpret_cast<const char*>(bytes);
    const char* const end = next + size;
    do {
        next = feed(next, end, false);
    } while (isGood() && (next < end || status == U_BUFFER_OVERFLOW_ERROR));
    if (isGood())
        return hasNul ? 0 : size;
    std::array<char, 32> invalid{};
    auto count = static_cast<std::int8_t>(invalid.size());
    UErrorCode ignored = U_ZERO_ERROR;
    ucnv_getInvalidChars(converter.get(), invalid.data(), &count, &ignored);
    const auto taken = next - reinterpret_cast<const char*>(bytes);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(taken - count, 0));
}

const char* PelConverterCheck::feed(const char* next, const char* end, bool isEnd) {
    UChar* target = units.data();
    status = U_ZERO_ERROR;
    ucnv_toUnicode(converter.get(), &target, target + units.size(), &next, end, nullptr,
                   static_cast<UBool>(isEnd), &status);
    hasNul = hasNul || std::find(units.data(), target, u'\0') != target;
    return next;
}
