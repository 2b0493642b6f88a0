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

// The formatter leaves the bytes of a piece behind that do not fit its buffer of 16 KiB. No
// encoding takes more than 16 bytes for a unit.
constexpr std::size_t narrowPiece = 1024;

bool isHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

bool isLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
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

PelXercesMarkup& PelXercesMarkup::operator<<(const char16_t* text) {
    if (text != nullptr)
        add(text, {});
    return *this;
}

void PelXercesMarkup::addText(std::u16string_view text) {
    add(text, u"&<>\r");
}

void PelXercesMarkup::addAttributeValue(std::u16string_view text) {
    add(text, u"&<\"\n\r\t");
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

void PelXercesMarkup::add(std::u16string_view text, std::u16string_view escapes) {
    const bool isUniversal = repertoire.holdsEverything();
    std::size_t runBegin = 0;
    const auto endRun = [&](std::size_t end, std::size_t next) {
        gathered.append(text, runBegin, end - runBegin);
        runBegin = next;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (escapes.find(unit) != escapes.npos) {
            endRun(i, i + 1);
            gathered.append(entityFor(unit));
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            const char16_t low = i + 1 < text.size() ? text[i + 1] : u'\0';
            if (!isHighSurrogate(unit) || !isLowSurrogate(low))
                ThrowXML(xercesc::TranscodingException, xercesc::XMLExcepts::Trans_BadSrcSeq);
            if (!isUniversal && !repertoire.holds(unit, low)) {
                endRun(i, i + 2);
                addReference(0x10000 + ((unit - 0xD800U) << 10) + (low - 0xDC00U));
            }
            ++i;
        } else if (!isUniversal && !repertoire.holds(unit)) {
            endRun(i, i + 1);
            addReference(unit);
        }
    }
    endRun(text.size(), text.size());
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
