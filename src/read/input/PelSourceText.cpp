// SPDX-License-Identifier: MIT
#include "read/input/PelSourceText.h"

#include "core/PelTextConversion.h"
#include "read/input/PelEncodingCheck.h"

#include <cstring>
#include <limits>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t mostUnits = std::numeric_limits<int>::max() / 2; // of a call of ICU

// The name with the order of the bytes, which the mark or the first character shows.
std::u16string exactName(const unsigned char* bytes, std::size_t size, const char16_t* encoding) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const auto begins = [text](std::string_view with) { return text.substr(0, 2) == with; };
    using namespace std::string_view_literals;
    const std::string_view first = text.substr(0, 4);
    if (first == "\xFF\xFE\0\0"sv || first == "<\0\0\0"sv)
        return u"UTF-32LE";
    if (first == "\0\0\xFE\xFF"sv || first == "\0\0\0<"sv)
        return u"UTF-32BE";
    if (begins("\xFF\xFE"sv) || begins("<\0"sv))
        return u"UTF-16LE";
    if (begins("\xFE\xFF"sv) || begins("\0<"sv))
        return u"UTF-16BE";
    return encoding;
}

// Nothing where the converter meets what it does not know, or the way back leads elsewhere.
std::string toUtf8AndBack(const unsigned char* bytes, std::size_t size, const char* name) {
    const PelConverter::Handle converter = PelConverter::open(name);
    if (!converter || size > mostUnits)
        return {};
    const auto* const source = reinterpret_cast<const char*>(bytes);
    const auto length = static_cast<int32_t>(size);
    UErrorCode status = U_ZERO_ERROR;
    std::u16string units(size + 1, u'\0');
    units.resize(static_cast<std::size_t>(ucnv_toUChars(converter.get(), units.data(),
                                                        static_cast<int32_t>(units.size()), source,
                                                        length, &status)));
    std::string back(size + 1, '\0');
    ucnv_reset(converter.get());
    const int32_t backSize =
        ucnv_fromUChars(converter.get(), back.data(), static_cast<int32_t>(back.size()),
                        units.data(), static_cast<int32_t>(units.size()), &status);
    const bool isSame =
        U_SUCCESS(status) && backSize == length && std::memcmp(back.data(), source, size) == 0;
    return isSame ? PelTextConversion::toUtf8(units) : std::string();
}

} // namespace

std::unique_ptr<PelXercesKeptSource> PelSourceText::make(const Bytes& bytes, std::size_t size,
                                                         const char16_t* encoding) {
    using Source = PelXercesKeptSource;
    const std::u16string name = exactName(bytes.get(), size, encoding);
    const std::string narrow = PelTextConversion::toUtf8(name);
    if (size > Source::mostBytes)
        return nullptr;
    if (PelEncodingCheck::areSame(narrow.c_str(), "UTF-8") ||
        PelEncodingCheck::areSame(narrow.c_str(), "US-ASCII"))
        return std::make_unique<Source>(bytes, size, name);
    const std::string text = toUtf8AndBack(bytes.get(), size, narrow.c_str());
    if (text.empty() || text.size() > Source::mostBytes)
        return std::make_unique<Source>(bytes, size, name, false);
    std::shared_ptr<unsigned char[]> decoded(new unsigned char[text.size()]);
    std::memcpy(decoded.get(), text.data(), text.size());
    return std::make_unique<Source>(std::move(decoded), text.size(), name);
}
