// SPDX-License-Identifier: MIT
#include "write/characters/PelXercesEncoder.h"

#include "core/PelCharacters.h"
#include "core/PelTextConversion.h"
#include "write/characters/PelXercesCharacterSet.h"

#include <algorithm>

using xercesc::XMLFormatter;

namespace {

// The formatter converts into a buffer of 16 KiB. Pieces that always fit leave no encoder with
// bytes to keep for the next call: no encoding takes more than 16 bytes for a unit.
constexpr std::size_t narrowPiece = 1024;
constexpr std::size_t universalPiece = std::size_t{32} * 1024;

constexpr std::size_t block = 16;

// A block of ASCII, of which most of most documents consists. The compiler makes a few instructions
// of each loop.
bool narrowBlock(const char16_t* units, char* bytes) {
    unsigned all = 0;
    for (std::size_t i = 0; i < block; ++i)
        all |= units[i];
    if (all >= 0x80)
        return false;
    for (std::size_t i = 0; i < block; ++i)
        bytes[i] = static_cast<char>(units[i]);
    return true;
}

// The six bits of a character from `shift` on, as a byte that continues a sequence.
char continuation(char32_t character, int shift) {
    return static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
}

// One character; gives where the next one begins.
const char16_t* encodeOne(const char16_t* at, char*& bytes) {
    const char16_t unit = *at++;
    if (unit < 0x80) {
        *bytes++ = static_cast<char>(unit);
    } else if (unit < 0x800) {
        bytes[0] = static_cast<char>(0xC0U | (unit >> 6));
        bytes[1] = continuation(unit, 0);
        bytes += 2;
    } else if (!PelCharacters::isHighSurrogate(unit)) {
        bytes[0] = static_cast<char>(0xE0U | (unit >> 12));
        bytes[1] = continuation(unit, 6);
        bytes[2] = continuation(unit, 0);
        bytes += 3;
    } else {
        const char32_t character = PelCharacters::fromPair(unit, *at++);
        bytes[0] = static_cast<char>(0xF0U | (character >> 18));
        bytes[1] = continuation(character, 12);
        bytes[2] = continuation(character, 6);
        bytes[3] = continuation(character, 0);
        bytes += 4;
    }
    return at;
}

} // namespace

PelXercesEncoder::PelXercesEncoder(const std::u16string& encoding,
                                   const PelXercesCharacterSet& characterSet, std::ostream& output)
    : stream(output), piece(characterSet.holdsEverything() ? universalPiece : narrowPiece),
      target(output) {
    if (characterSet.isUtf8())
        bytes.reset(new char[3 * universalPiece]); // not filled with zeros first
    else
        formatter.emplace(encoding.c_str(), &target, XMLFormatter::NoEscapes,
                          XMLFormatter::UnRep_CharRef, &memory);
}

void PelXercesEncoder::encode(std::u16string_view text) {
    if (!stream)
        return;
    if (!hasReturns) {
        encodePieces(text);
        return;
    }
    std::u16string expanded;
    expanded.reserve(text.size() + text.size() / 16);
    while (!text.empty()) {
        const std::size_t line = std::min(text.find(u'\n'), text.size());
        expanded.append(text.substr(0, line));
        if (line < text.size())
            expanded.append(u"\r\n");
        text.remove_prefix(std::min(line + 1, text.size()));
    }
    encodePieces(expanded);
}

void PelXercesEncoder::encodeSource(std::string_view text) {
    if (!formatter) {
        stream.write(text.data(), static_cast<std::streamsize>(text.size()));
        return;
    }
    while (stream && !text.empty()) {
        std::size_t size = std::min(piece, text.size());
        while (size < text.size() && (text[size] & 0xC0) == 0x80)
            --size; // within a character
        encodePieces(PelTextConversion::fromUtf8(text.substr(0, size)));
        text.remove_prefix(size);
    }
}

void PelXercesEncoder::encodePieces(std::u16string_view text) {
    while (!text.empty()) {
        std::size_t size = std::min(piece, text.size());
        if (PelCharacters::isHighSurrogate(text[size - 1]))
            --size;
        if (formatter)
            formatter->formatBuf(text.data(), size, XMLFormatter::NoEscapes,
                                 XMLFormatter::UnRep_Fail);
        else
            encodeAsUtf8(text.substr(0, size));
        text.remove_prefix(size);
    }
}

void PelXercesEncoder::encodeAsUtf8(std::u16string_view text) {
    char* end = bytes.get();
    const char16_t* at = text.data();
    const char16_t* const last = at + text.size();
    while (at < last) {
        const bool isBlock = last - at >= static_cast<std::ptrdiff_t>(block);
        if (isBlock && narrowBlock(at, end)) {
            at += block;
            end += block;
            continue;
        }
        for (const char16_t* const stop = isBlock ? at + block : last; at < stop;)
            at = encodeOne(at, end);
    }
    stream.write(bytes.get(), end - bytes.get());
}
