// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelCharacters.h"
#include "read/scan/PelPlainText.h"

#include <xercesc/util/XMLChar.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Which characters of ASCII may begin a name, and which may stand in it.
class PelPlainNameCharacters {
public:
    static bool mayBegin(unsigned c) { return isInName[c] && !(c <= '9' && c != ':'); }
    static bool mayStand(unsigned c) { return isInName[c]; }

private:
    static constexpr std::array<bool, 128> isInName = [] {
        std::array<bool, 128> table{};
        for (std::size_t c = 0; c < table.size(); ++c)
            table[c] = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= ':') ||
                       c == '_' || c == '-' || c == '.';
        return table;
    }();
};

/// A place in the text of a plain document, and the steps by which its grammar goes on from there:
/// words, names, references, and the characters of a text. None goes past the end.
template <class Source>
class PelPlainCursor {
protected:
    using Unit = typename Source::Unit;

    PelPlainCursor(const Unit* begin, const Unit* sourceEnd, xercesc::DOMDocumentImpl& document)
        : at(begin), end(sourceEnd), text(document) {}

    bool isAt(char expected) const { return at != end && *at == static_cast<Unit>(expected); }

    bool skip(char expected) {
        if (!isAt(expected))
            return false;
        ++at;
        return true;
    }

    bool isAt(std::string_view expected) const {
        if (static_cast<std::size_t>(end - at) < expected.size())
            return false;
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (at[i] != static_cast<Unit>(expected[i]))
                return false;
        return true;
    }

    bool skip(std::string_view expected) {
        if (!isAt(expected))
            return false;
        at += expected.size();
        return true;
    }

    bool skipSpace() {
        const Unit* const begin = at;
        while (at != end && PelCharacters::isSpace(*at))
            ++at;
        return at != begin;
    }

    // Leaves `at` behind a name. Names beyond the basic plane are too rare.
    bool skipName() {
        if (at == end)
            return false;
        if (*at >= 0x80)
            return skipWideName(true);
        if (!PelPlainNameCharacters::mayBegin(*at))
            return false;
        do
            ++at;
        while (at != end && *at < 0x80 && PelPlainNameCharacters::mayStand(*at));
        return at == end || *at < 0x80 || skipWideName(false);
    }

    std::u16string unitsFrom(const Unit* begin) const {
        std::u16string units(static_cast<std::size_t>(at - begin) + plainSlack, u'\0');
        char16_t* unitsEnd = units.data();
        Source::template copy<PelPlainName>(begin, at, unitsEnd);
        units.resize(static_cast<std::size_t>(unitsEnd - units.data()));
        return units;
    }

    bool readReference() {
        ++at;
        if (skip('#'))
            return readCharacterReference();
        for (const Entity& entity : entities)
            if (skip(entity.reference)) {
                text.put(entity.character);
                return true;
            }
        return false;
    }

    // Copies a run and the runs behind line ends and characters outside ASCII, up to an ASCII
    // character that is for the caller to judge. False at the end of the text.
    template <class Run>
    bool copy(std::string_view terminator) {
        for (;;) {
            text.makeRoom([&] { return unitsUpTo(terminator); });
            const Unit* const stop = at + std::min(static_cast<std::size_t>(end - at), text.room());
            at = Source::template copy<Run>(at, stop, text.end);
            if (at == end)
                return false;
            if (at == stop)
                continue;
            if (*at >= 0x80) {
                if (!Source::copyCharacter(at, end, text.end))
                    return false;
            } else if (Run::keepsBreaks && *at == '\r') {
                if (!skip(std::string_view("\r\n")))
                    ++at;
                text.put(u'\n');
            } else {
                return true;
            }
        }
    }

    const Unit* at;
    const Unit* const end;
    PelPlainText text;

private:
    struct Entity {
        std::string_view reference;
        char16_t character;
    };

    static constexpr Entity entities[] = {
        {"amp;", u'&'}, {"lt;", u'<'}, {"gt;", u'>'}, {"quot;", u'"'}, {"apos;", u'\''}};

    bool skipWideName(bool isFirstOne) {
        for (; at != end; isFirstOne = false) {
            if (*at < 0x80) {
                if (!PelPlainNameCharacters::mayStand(*at))
                    return true;
                ++at;
                continue;
            }
            char16_t units[2];
            char16_t* unitsEnd = units;
            if (!Source::copyCharacter(at, end, unitsEnd) || unitsEnd != units + 1)
                return false;
            if (!(isFirstOne ? xercesc::XMLChar1_0::isFirstNameChar(units[0])
                             : xercesc::XMLChar1_0::isNameChar(units[0])))
                return false;
        }
        return true;
    }

    bool readCharacterReference() {
        const bool isHex = skip('x');
        const Unit* const begin = at;
        char32_t value = 0;
        for (; at != end && value <= 0x10FFFF; ++at) {
            const Unit unit = *at;
            if (unit >= '0' && unit <= '9')
                value = value * (isHex ? 16 : 10) + (unit - '0');
            else if (isHex && ((unit >= 'A' && unit <= 'F') || (unit >= 'a' && unit <= 'f')))
                value = value * 16 + ((unit | 0x20U) - 'a' + 10);
            else
                break;
        }
        if (at == begin || !PelCharacters::isCharacter(value) || !skip(';'))
            return false;
        if (value < 0x10000) {
            text.put(static_cast<char16_t>(value));
        } else {
            text.put(PelCharacters::highSurrogateOf(value));
            text.put(PelCharacters::lowSurrogateOf(value));
        }
        return true;
    }

    std::size_t unitsUpTo(std::string_view terminator) const {
        const Unit* const found = std::search(at, end, terminator.begin(), terminator.end());
        return Source::countUnits(at, found);
    }
};
