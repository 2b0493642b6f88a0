// SPDX-License-Identifier: MIT
#include "read/input/PelEncodingCheck.h"

#include "core/PelCharacters.h"

#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace {

using Byte = PelEncodingCheck::Byte;

constexpr int isCutOff = 0;
constexpr int isIllFormed = -1;

constexpr bool continues(Byte byte) {
    return (byte & 0xC0) == 0x80;
}

// The length of the UTF-8 sequence at the front of so many bytes, at least one.
int utf8Sequence(const Byte* bytes, std::size_t size) {
    const Byte lead = bytes[0];
    if (lead < 0x80)
        return lead != 0 ? 1 : isIllFormed;
    if (lead < 0xC2 || lead > 0xF4)
        return isIllFormed;
    const int length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const auto present = std::min(size, static_cast<std::size_t>(length));
    if (present > 1) {
        // The second byte tells overlong forms, surrogates and what is above U+10FFFF.
        const Byte least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        const Byte most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        if (bytes[1] < least || bytes[1] > most)
            return isIllFormed;
    }
    for (std::size_t i = 2; i < present; ++i)
        if (!continues(bytes[i]))
            return isIllFormed;
    return present == static_cast<std::size_t>(length) ? length : isCutOff;
}

// Whether there is one of 1 to 7F in each of eight bytes.
bool areAsciiWithoutNul(const Byte* bytes) {
    constexpr std::uint64_t ones = 0x0101010101010101;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return (((word - ones) | word) & (ones << 7)) == 0;
}

// How many bytes at the front are of 1 to 7F; not all that are, but no more than a few are left.
std::size_t asciiRun(const Byte* bytes, std::size_t size) {
    std::size_t done = 0;
    while (size - done >= 32 && areAsciiWithoutNul(bytes + done) &&
           areAsciiWithoutNul(bytes + done + 8) && areAsciiWithoutNul(bytes + done + 16) &&
           areAsciiWithoutNul(bytes + done + 24))
        done += 32;
    while (size - done >= 8 && areAsciiWithoutNul(bytes + done))
        done += 8;
    return done;
}

/// Sequences of up to `longest` bytes, one of which may lie across two pieces.
template <std::size_t longest>
class SequenceCheck : public PelEncodingCheck {
public:
    std::size_t passBytes(const Byte* bytes, std::size_t size) final {
        std::size_t taken = 0;
        while (openSize > 0 && taken < size) {
            open[openSize++] = bytes[taken++];
            const int length = sequence(open.data(), openSize);
            if (length == isIllFormed)
                return 0;
            if (length != isCutOff)
                openSize = 0;
        }
        const std::size_t good = taken + passWhole(bytes + taken, size - taken);
        if (good < size && sequence(bytes + good, size - good) == isCutOff) {
            openSize = size - good;
            std::copy(bytes + good, bytes + size, open.begin());
            return size;
        }
        return good;
    }

    bool mayEnd() final { return openSize == 0; }

private:
    virtual int sequence(const Byte* bytes, std::size_t size) const = 0;

    // How many of the bytes are whole and good sequences.
    virtual std::size_t passWhole(const Byte* bytes, std::size_t size) const = 0;

    std::array<Byte, longest> open{};
    std::size_t openSize = 0;
};

class Utf8Check final : public SequenceCheck<4> {
    int sequence(const Byte* bytes, std::size_t size) const override {
        return utf8Sequence(bytes, size);
    }

    std::size_t passWhole(const Byte* bytes, std::size_t size) const override {
        std::size_t done = 0;
        while (done < size) {
            done += asciiRun(bytes + done, size - done);
            // What stands here is rarely alone.
            const std::size_t end = std::min(size, done + 64);
            while (done < end) {
                const Byte lead = bytes[done];
                if (lead < 0x80 && lead != 0) {
                    ++done;
                    continue;
                }
                if (lead >= 0xC2 && lead < 0xE0 && size - done > 1 && continues(bytes[done + 1])) {
                    done += 2;
                    continue;
                }
                const int length = utf8Sequence(bytes + done, size - done);
                if (length <= 0)
                    return done;
                done += static_cast<std::size_t>(length);
            }
        }
        return done;
    }
};

template <bool isBigEndian>
class Utf16Check final : public SequenceCheck<4> {
    static unsigned unitAt(const Byte* bytes) {
        return static_cast<unsigned>(isBigEndian ? bytes[0] << 8 | bytes[1]
                                                 : bytes[1] << 8 | bytes[0]);
    }

    int sequence(const Byte* bytes, std::size_t size) const override {
        if (size < 2)
            return isCutOff;
        const unsigned unit = unitAt(bytes);
        if (unit == 0 || PelCharacters::isLowSurrogate(unit))
            return isIllFormed;
        if (!PelCharacters::isHighSurrogate(unit))
            return 2;
        if (size < 4)
            return isCutOff;
        return PelCharacters::isLowSurrogate(unitAt(bytes + 2)) ? 4 : isIllFormed;
    }

    std::size_t passWhole(const Byte* bytes, std::size_t size) const override {
        std::size_t done = 0;
        while (done < size) {
            while (size - done >= block && isPlain(bytes + done))
                done += block;
            const std::size_t end = std::min(size, done + block);
            while (done < end) {
                const int length = sequence(bytes + done, size - done);
                if (length <= 0)
                    return done;
                done += static_cast<std::size_t>(length);
            }
        }
        return done;
    }

    // Without branches, for the compiler to take many units at once, in whatever order of bytes.
    static bool isPlain(const Byte* bytes) {
        constexpr bool isSwapped = isBigEndian == (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);
        constexpr std::uint16_t mask = isSwapped ? 0x00F8 : 0xF800;
        constexpr std::uint16_t surrogate = isSwapped ? 0x00D8 : 0xD800;
        std::array<std::uint16_t, block / 2> units{};
        std::memcpy(units.data(), bytes, block);
        std::uint16_t others = 0;
        for (const std::uint16_t unit : units)
            others |= static_cast<std::uint16_t>(unit == 0) |
                      static_cast<std::uint16_t>((unit & mask) == surrogate);
        return others == 0;
    }

    static constexpr std::size_t block = 64;
};

/// Encodings in which every byte up to `last` is a character.
class ByteCheck final : public PelEncodingCheck {
public:
    explicit ByteCheck(Byte lastByte) : last(lastByte) {}

    std::size_t passBytes(const Byte* bytes, std::size_t size) override {
        std::size_t done = asciiRun(bytes, size);
        while (done < size && bytes[done] != 0 && bytes[done] <= last)
            done += 1 + asciiRun(bytes + done + 1, size - done - 1);
        return done;
    }

    bool mayEnd() override { return true; }

private:
    const Byte last;
};

/// The check of an encoding by its converter, which has to take every byte.
class ConverterCheck final : public PelEncodingCheck {
public:
    explicit ConverterCheck(PelConverter::Handle ownConverter)
        : converter(std::move(ownConverter)) {}

    // A byte 0 is fed alone: it may or may not be a U+0000, and where is known.
    std::size_t passBytes(const Byte* bytes, std::size_t size) override {
        for (std::size_t done = 0; done < size;) {
            const std::size_t longest = std::min(size - done, longestPiece);
            const auto* const zero =
                static_cast<const Byte*>(std::memchr(bytes + done, 0, longest));
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

    bool mayEnd() override {
        feed(nullptr, nullptr, true);
        return isGood();
    }

private:
    std::size_t convert(const Byte* bytes, std::size_t size) {
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

    const char* feed(const char* next, const char* end, bool isEnd) {
        UChar* target = units.data();
        status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &target, target + units.size(), &next, end, nullptr,
                       static_cast<UBool>(isEnd), &status);
        hasNul = hasNul || std::find(units.data(), target, u'\0') != target;
        return next;
    }

    bool isGood() const { return U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR; }

    static constexpr std::size_t longestPiece = 4096;

    const PelConverter::Handle converter;
    std::array<UChar, 1024> units{};
    UErrorCode status = U_ZERO_ERROR;
    bool hasNul = false;
};

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

std::unique_ptr<PelEncodingCheck> PelEncodingCheck::forEncoding(const char* name) {
    PelConverter::Handle converter = PelConverter::open(name);
    if (!converter)
        return nullptr;
    switch (ucnv_getType(converter.get())) {
    case UCNV_UTF8:
        return std::make_unique<Utf8Check>();
    case UCNV_UTF16_LittleEndian:
        return std::make_unique<Utf16Check<false>>();
    case UCNV_UTF16_BigEndian:
        return std::make_unique<Utf16Check<true>>();
    case UCNV_US_ASCII:
        return std::make_unique<ByteCheck>(Byte{0x7F});
    case UCNV_LATIN_1:
        return std::make_unique<ByteCheck>(Byte{0xFF});
    default:
        return std::make_unique<ConverterCheck>(std::move(converter));
    }
}

std::u16string PelEncodingCheck::beginning(const char* name, const Byte* bytes, std::size_t size,
                                           std::size_t most) {
    const PelConverter::Handle converter = PelConverter::open(name);
    std::u16string text(most, u'\0');
    if (!converter)
        return {};
    UChar* target = text.data();
    const char* source = reinterpret_cast<const char*>(bytes);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(converter.get(), &target, target + most, &source, source + size, nullptr, 0,
                   &status);
    text.resize(static_cast<std::size_t>(target - text.data()));
    return text;
}

bool PelEncodingCheck::areSame(const char* name, const char* otherName) {
    const PelConverter::Handle one = PelConverter::open(name);
    const PelConverter::Handle other = PelConverter::open(otherName);
    UErrorCode status = U_ZERO_ERROR;
    return one && other &&
           std::strcmp(ucnv_getName(one.get(), &status), ucnv_getName(other.get(), &status)) == 0;
}
