// SPDX-License-Identifier: MIT
#include "output/PelXercesMarkup.h"

#include "output/PelXercesRepertoire.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TranscodingException.hpp>

#include <algorithm>
#include <array>
#include <charconv>

using xercesc::XMLFormatter;

namespace {

// Handed on when this many units have come together.
constexpr std::size_t enough = std::size_t{32} * 1024;

// The formatter converts into a buffer of 16 KiB. Pieces that always fit leave no encoder with
// bytes to keep for the next call: no encoding takes more than 16 bytes for a unit.
constexpr std::size_t narrowPiece = 1024;

bool isHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

bool isSurrogate(char16_t unit) {
    return (unit & 0xF800) == 0xD800;
}

bool isLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// The formatter's escape modes, as bits.
constexpr unsigned char noEscapes = 1;
constexpr unsigned char textEscapes = 2;      // CharEscapes
constexpr unsigned char attributeEscapes = 4; // AttrEscapes

constexpr std::array<unsigned char, 64> makeSpecials() {
    std::array<unsigned char, 64> table{};
    table[0] = noEscapes | textEscapes | attributeEscapes; // ends the text in every mode
    for (const char16_t unit : {u'&', u'<', u'>', u'\r'})
        table[unit] |= textEscapes;
    for (const char16_t unit : {u'&', u'<', u'"', u'\n', u'\r', u'\t'})
        table[unit] |= attributeEscapes;
    return table;
}

constexpr std::array<unsigned char, 64> specials = makeSpecials();

// Whether a mode does not let a unit stand as it is.
bool isSpecial(char16_t unit, unsigned char mode) {
    return unit < specials.size() && (specials[unit] & mode) != 0;
}

std::u16string_view entityFor(char16_t unit) {
    switch (unit) {
    case u'&':
        return u"&amp;";
    case u'<':
        return u"&lt;";
    case u'>':
        return u"&gt;";
    case u'"':
        return u"&quot;";
    case u'\n':
        return u"&#xA;";
    case u'\r':
        return u"&#xD;";
    default:
        return u"&#x9;";
    }
}

} // namespace

PelXercesMarkup::PelXercesMarkup(PelXercesRepertoire& outputRepertoire,
                                 XMLFormatter* outputFormatter)
    : repertoire(outputRepertoire), formatter(outputFormatter) {
}

PelXercesMarkup& PelXercesMarkup::plain(const char16_t* characters) {
    return add(characters, noEscapes);
}

PelXercesMarkup& PelXercesMarkup::text(const char16_t* characters) {
    return add(characters, textEscapes);
}

PelXercesMarkup& PelXercesMarkup::attributeValue(const char16_t* characters) {
    return add(characters, attributeEscapes);
}

PelXercesMarkup& PelXercesMarkup::addKnown(const char16_t* characters) {
    if (!repertoire.holdsEverything())
        return add(characters, noEscapes);
    gathered.append(characters);
    flushIfEnough();
    return *this;
}

void PelXercesMarkup::flush() {
    if (formatter == nullptr)
        return;
    const std::u16string_view all = gathered;
    const std::size_t piece = repertoire.holdsEverything() ? enough : narrowPiece;
    for (std::size_t begin = 0; begin < all.size();) {
        std::size_t end = std::min(begin + piece, all.size());
        if (isHighSurrogate(all[end - 1]))
            --end;
        formatter->formatBuf(all.data() + begin, end - begin, XMLFormatter::NoEscapes,
                             XMLFormatter::UnRep_Fail);
        begin = end;
    }
    gathered.clear();
}

PelXercesMarkup& PelXercesMarkup::add(const char16_t* characters, unsigned char mode) {
    if (characters == nullptr)
        return *this;
    const bool isUniversal = repertoire.holdsEverything();
    for (;;) {
        const char16_t* const run = characters;
        if (isUniversal)
            while (!isSpecial(*characters, mode) && !isSurrogate(*characters))
                ++characters;
        else
            while (!isSpecial(*characters, mode) && !isSurrogate(*characters) &&
                   repertoire.holds(*characters))
                ++characters;
        gathered.append(run, characters);
        const char16_t unit = *characters;
        if (unit == 0)
            break;
        ++characters;
        if (isSpecial(unit, mode)) {
            gathered.append(entityFor(unit));
        } else if (!isSurrogate(unit)) {
            addReference(unit);
        } else {
            if (!isHighSurrogate(unit) || !isLowSurrogate(*characters))
                ThrowXML(xercesc::TranscodingException, xercesc::XMLExcepts::Trans_BadSrcSeq);
            const char16_t low = *characters++;
            if (isUniversal || repertoire.holds(unit, low))
                gathered.append({unit, low});
            else
                addReference(0x10000 + ((unit - 0xD800U) << 10) + (low - 0xDC00U));
        }
    }
    flushIfEnough();
    return *this;
}

void PelXercesMarkup::flushIfEnough() {
    if (gathered.size() >= enough)
        flush();
}

void PelXercesMarkup::addReference(char32_t character) {
    std::array<char, 8> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(),
                                      static_cast<unsigned long>(character), 16);
    gathered.append(u"&#x");
    std::transform(digits.data(), result.ptr, std::back_inserter(gathered), [](char digit) {
        return static_cast<char16_t>(digit >= 'a' ? digit - 'a' + 'A' : digit);
    });
    gathered.push_back(u';');
}
