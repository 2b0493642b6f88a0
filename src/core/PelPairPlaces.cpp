// SPDX-License-Identifier: MIT
#include "core/PelPairPlaces.h"

#include <unicode/ucnv.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <memory>

namespace {

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

constexpr char16_t byteOrderMark = u'\uFEFF';

} // namespace

PelPairPlaces::PelPairPlaces(const char* encoding, const void* bytes, std::size_t size) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, CloseConverter> converter(ucnv_open(encoding, &status));
    const char* next = static_cast<const char*>(bytes);
    const char* const end = next + size;
    std::array<UChar, 4096> units{};
    unsigned long line = 1;
    unsigned long column = 0;
    UChar last = 0;
    while (converter && next < end) {
        UChar* target = units.data();
        status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &target, target + units.size(), &next, end, nullptr, 0,
                       &status);
        for (const UChar* unit = units.data(); unit < target; last = *unit++) {
            if (*unit == u'\n' || *unit == u'\r') {
                line += *unit == u'\n' && last == u'\r' ? 0 : 1;
                column = 0;
                continue;
            }
            column += *unit == byteOrderMark && line == 1 && column == 0 ? 0 : 1;
            if (U16_IS_TRAIL(*unit))
                places.emplace_back(line, column);
        }
        if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR)
            break;
    }
}

unsigned long PelPairPlaces::countBefore(unsigned long line, unsigned long column) const {
    const auto begin = std::lower_bound(places.begin(), places.end(), Place(line, 0));
    const auto end = std::lower_bound(begin, places.end(), Place(line, column));
    return static_cast<unsigned long>(end - begin);
}
