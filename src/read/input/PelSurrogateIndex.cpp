// SPDX-License-Identifier: MIT
#include "read/input/PelSurrogateIndex.h"

#include "core/PelCharacters.h"

#include <algorithm>
#include <array>

namespace {

constexpr char16_t byteOrderMark = u'\uFEFF';

} // namespace

PelSurrogateIndex::PelSurrogateIndex(const char* encoding)
    : converter(PelConverter::open(encoding)) {
}

void PelSurrogateIndex::add(const void* bytes, std::size_t size) {
    const char* next = static_cast<const char*>(bytes);
    const char* const bytesEnd = next + size;
    std::array<UChar, 4096> units{};
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    auto& [line, column] = end;
    while (converter && status == U_BUFFER_OVERFLOW_ERROR) {
        UChar* target = units.data();
        status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &target, target + units.size(), &next, bytesEnd, nullptr, 0,
                       &status);
        for (const UChar* unit = units.data(); unit < target; last = *unit++) {
            if (*unit == u'\n' || *unit == u'\r') {
                line += *unit == u'\n' && last == u'\r' ? 0 : 1;
                column = 0;
                continue;
            }
            column += *unit == byteOrderMark && line == 1 && column == 0 ? 0 : 1;
            if (PelCharacters::isLowSurrogate(*unit))
                places.push_back(end);
        }
    }
    if (U_FAILURE(status))
        converter.reset();
}

bool PelSurrogateIndex::isKnown(unsigned long line, unsigned long column) const {
    return !converter || end >= Place(line, column);
}

unsigned long PelSurrogateIndex::countBefore(unsigned long line, unsigned long column) const {
    const auto begin = std::lower_bound(places.begin(), places.end(), Place(line, 0));
    const auto before = std::lower_bound(begin, places.end(), Place(line, column));
    return static_cast<unsigned long>(before - begin);
}
