// SPDX-License-Identifier: MIT
#include "reading/PelPlainMarkup.h"

#include "reading/PelPlainUtf16.h"
#include "reading/PelPlainUtf8.h"

#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <array>
#include <cstring>

using namespace std::literals;
using xercesc::XMLChar1_0;

namespace {

constexpr bool isLetter(std::size_t c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

constexpr bool isDigit(std::size_t c) {
    return c >= '0' && c <= '9';
}

// The ASCII characters of names.
constexpr std::array<bool, 128> nameCharacters = [] {
    std::array<bool, 128> table{};
    for (std::size_t c = 0; c < table.size(); ++c)
        table[c] = isLetter(c) || isDigit(c) || c == '_' || c == ':' || c == '-' || c == '.';
    return table;
}();

constexpr bool isFirst(std::size_t c) {
    return isLetter(c) || c == '_' || c == ':';
}

struct Entity {
    std::string_view reference;
    char16_t character;
};

constexpr Entity entities[] = {
    {"amp;", u'&'}, {"lt;", u'<'}, {"gt;", u'>'}, {"quot;", u'"'}, {"apos;", u'\''}};

bool isCharacter(unsigned long value) {
    return value == '\t' || value == '\n' || value == '\r' || (value >= ' ' && value < 0xD800) ||
           (value >= 0xE000 && value <= 0xFFFD) || (value >= 0x10000 && value <= 0x10FFFF);
}

} // namespace

template <class Source>
bool PelPlainMarkup<Source>::read() {
    skipMark();
    return readDeclaration() && readOutside() && readStartTag() && readContent() && readOutside() &&
           at == end;
}

template <class Source>
void PelPlainMarkup<Source>::skipMark() {
    if (Source::isUtf8)
        skip("\xEF\xBB\xBF"sv);
}

template <class Source>
bool PelPlainMarkup<Source>::readDeclaration() {
    if (!isAt("<?xml"sv) || end - at < 6 || !isSpace(at[5]))
        return true;
    at += 5;
    std::u16string version;
    std::u16string encoding;
    std::u16string standalone;
    if (!readDeclared("version"sv, version) || version != u"1.0" ||
        !readDeclared("encoding"sv, encoding) || !readDeclared("standalone"sv, standalone))
        return false;
    // UTF-16 in memory is what it is, whatever it says.
    const bool isKnown =
        encoding.empty() ||
        (Source::isUtf8 ? xercesc::XMLString::compareIStringASCII(encoding.c_str(), u"UTF-8") == 0
                        : xercesc::XMLString::isValidEncName(encoding.c_str()));
    if (!isKnown || !(standalone.empty() || standalone == u"yes" || standalone == u"no"))
        return false;
    skipSpace();
    tree.declare(encoding, standalone == u"yes");
    return skip("?>"sv);
}

// One of the declaration's three pairs, if it is the next; else the value stays empty.
template <class Source>
bool PelPlainMarkup<Source>::readDeclared(std::string_view name, std::u16string& value) {
    const Unit* const begin = at;
    if (!skipSpace() || !skip(name)) {
        at = begin;
        return true;
    }
    skipSpace();
    if (!skip('='))
        return false;
    skipSpace();
    const char quote = isAt('"') ? '"' : '\'';
    if (!skip(quote))
        return false;
    const Unit* const first = at;
    while (at != end && *at > ' ' && *at < 0x80 && *at != static_cast<Unit>(quote))
        ++at;
    value.assign(first, at);
    return skip(quote) && !value.empty();
}

// Leaves `at` behind a name. Names beyond the basic plane are too rare.
template <class Source>
bool PelPlainMarkup<Source>::skipName() {
    if (at == end)
        return false;
    if (*at >= 0x80)
        return skipWideName(true);
    if (!isFirst(*at))
        return false;
    do
        ++at;
    while (at != end && *at < 0x80 && nameCharacters[*at]);
    return at == end || *at < 0x80 || skipWideName(false);
}

template <class Source>
bool PelPlainMarkup<Source>::skipWideName(bool isFirstOne) {
    for (; at != end; isFirstOne = false) {
        if (*at < 0x80) {
            if (!nameCharacters[*at])
                return true;
            ++at;
            continue;
        }
        char16_t units[2];
        char16_t* unitsEnd = units;
        if (!Source::copyCharacter(at, end, unitsEnd) || unitsEnd != units + 1)
            return false;
        if (!(isFirstOne ? XMLChar1_0::isFirstNameChar(units[0])
                         : XMLChar1_0::isNameChar(units[0])))
            return false;
    }
    return true;
}

// The name that ends here.
template <class Source>
const PelPlainNames::Name* PelPlainMarkup<Source>::nameFrom(const Unit* begin) {
    const std::size_t size = static_cast<std::size_t>(at - begin) * sizeof(Unit);
    const PelPlainNames::Name* const known = names.find(begin, size);
    return known != nullptr ? known : names.add(begin, size, unitsFrom(begin));
}

template <class Source>
std::u16string PelPlainMarkup<Source>::unitsFrom(const Unit* begin) const {
    std::u16string units(static_cast<std::size_t>(at - begin) + plainSlack, u'\0');
    char16_t* unitsEnd = units.data();
    Source::template copy<PelPlainName>(begin, at, unitsEnd);
    units.resize(static_cast<std::size_t>(unitsEnd - units.data()));
    return units;
}

// What may stand before and after the root, up to the root or the end.
template <class Source>
bool PelPlainMarkup<Source>::readOutside() {
    for (;;) {
        skipSpace();
        if (isAt("<!--"sv)) {
            if (!readComment())
                return false;
        } else if (isAt("<?"sv)) {
            if (!readInstruction())
                return false;
        } else {
            return true;
        }
    }
}

template <class Source>
bool PelPlainMarkup<Source>::readStartTag() {
    if (!skip('<'))
        return false;
    const Unit* const begin = at;
    if (!skipName())
        return false;
    open.push_back({begin, static_cast<std::size_t>(at - begin)});
    const PelPlainNames::Name* const name = nameFrom(begin);
    if (name == nullptr)
        return false;
    tree.openElement(*name);
    for (;;) {
        const bool hasSpace = skipSpace();
        if (skip('>'))
            return tree.endTag();
        if (isAt('/')) {
            open.pop_back();
            if (!skip("/>"sv) || !tree.endTag())
                return false;
            tree.closeElement();
            return true;
        }
        if (!hasSpace || !readAttribute())
            return false;
    }
}

template <class Source>
bool PelPlainMarkup<Source>::readAttribute() {
    const Unit* const begin = at;
    if (!skipName())
        return false;
    const PelPlainNames::Name* const name = nameFrom(begin);
    if (name == nullptr)
        return false;
    skipSpace();
    if (!skip('='))
        return false;
    skipSpace();
    text.clear();
    if (!(skip('"') ? readValue<'"'>() : skip('\'') && readValue<'\''>()))
        return false;
    tree.addAttribute(*name, text);
    return true;
}

template <class Source>
template <char quote>
bool PelPlainMarkup<Source>::readValue() {
    constexpr std::string_view terminator = quote == '"' ? "\""sv : "'"sv;
    while (copy<PelPlainQuoted<quote>>(terminator)) {
        if (skip(quote))
            return true;
        if (isAt('&')) {
            if (!readReference())
                return false;
        } else if (isSpace(*at)) { // no blank, so it becomes one
            if (!skip("\r\n"sv))
                ++at;
            text.put(u' ');
        } else {
            return false;
        }
    }
    return false;
}

template <class Source>
bool PelPlainMarkup<Source>::readEndTag() {
    const Tag tag = open.back();
    at += 2;
    if (static_cast<std::size_t>(end - at) < tag.length ||
        std::memcmp(at, tag.name, tag.length * sizeof(Unit)) != 0)
        return false;
    at += tag.length;
    skipSpace();
    open.pop_back();
    tree.closeElement();
    return skip('>');
}

// Up to the end of the root.
template <class Source>
bool PelPlainMarkup<Source>::readContent() {
    while (!open.empty()) {
        if (!isAt('<') && !readText())
            return false;
        if (!readMarkup())
            return false;
    }
    return true;
}

template <class Source>
bool PelPlainMarkup<Source>::readMarkup() {
    if (end - at < 2)
        return false;
    switch (at[1]) {
    case '/':
        return readEndTag();
    case '!':
        return isAt("<!--"sv) ? readComment() : isAt("<![CDATA["sv) && readCdata();
    case '?':
        return readInstruction();
    default:
        return readStartTag();
    }
}

template <class Source>
bool PelPlainMarkup<Source>::readText() {
    text.clear();
    while (copy<PelPlainContent>("<"sv)) {
        if (isAt('<')) {
            tree.addText(text);
            return true;
        }
        if (isAt('&')) {
            if (!readReference())
                return false;
        } else if (isAt(']') && !isAt("]]>"sv)) {
            text.put(u']');
            ++at;
        } else {
            return false;
        }
    }
    return false;
}

template <class Source>
bool PelPlainMarkup<Source>::readReference() {
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

template <class Source>
bool PelPlainMarkup<Source>::readCharacterReference() {
    const bool isHex = skip('x');
    const Unit* const begin = at;
    unsigned long value = 0;
    for (; at != end && value <= 0x10FFFF; ++at) {
        const Unit unit = *at;
        if (isDigit(unit))
            value = value * (isHex ? 16 : 10) + (unit - '0');
        else if (isHex && ((unit >= 'A' && unit <= 'F') || (unit >= 'a' && unit <= 'f')))
            value = value * 16 + ((unit | 0x20U) - 'a' + 10);
        else
            break;
    }
    if (at == begin || !isCharacter(value) || !skip(';'))
        return false;
    if (value < 0x10000) {
        text.put(static_cast<char16_t>(value));
    } else {
        text.put(static_cast<char16_t>(0xD7C0 + (value >> 10)));
        text.put(static_cast<char16_t>(0xDC00 | (value & 0x3FF)));
    }
    return true;
}

template <class Source>
bool PelPlainMarkup<Source>::readComment() {
    at += 4;
    text.clear();
    while (copy<PelPlainComment>("-->"sv)) {
        if (!isAt('-'))
            return false;
        if (isAt("--"sv)) {
            tree.addComment(text);
            return skip("-->"sv);
        }
        text.put(u'-');
        ++at;
    }
    return false;
}

template <class Source>
bool PelPlainMarkup<Source>::readCdata() {
    at += 9;
    text.clear();
    while (copy<PelPlainCdata>("]]>"sv)) {
        if (!isAt(']'))
            return false;
        if (skip("]]>"sv)) {
            tree.addCdata(text);
            return true;
        }
        text.put(u']');
        ++at;
    }
    return false;
}

template <class Source>
bool PelPlainMarkup<Source>::readInstruction() {
    at += 2;
    const Unit* const begin = at;
    if (!skipName())
        return false;
    const std::u16string target = unitsFrom(begin);
    if (xercesc::XMLString::compareIStringASCII(target.c_str(), u"xml") == 0)
        return false;
    text.clear();
    if (!skipSpace()) {
        tree.addInstruction(target, text);
        return skip("?>"sv);
    }
    while (copy<PelPlainInstruction>("?>"sv)) {
        if (!isAt('?'))
            return false;
        if (skip("?>"sv)) {
            tree.addInstruction(target, text);
            return true;
        }
        text.put(u'?');
        ++at;
    }
    return false;
}

// Copies a run and the runs behind line ends and characters outside ASCII, up to an ASCII character
// that is for the caller to judge. False at the end of the text.
template <class Source>
template <class Run>
bool PelPlainMarkup<Source>::copy(std::string_view terminator) {
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
            if (!skip("\r\n"sv))
                ++at;
            text.put(u'\n');
        } else {
            return true;
        }
    }
}

template <class Source>
std::size_t PelPlainMarkup<Source>::unitsUpTo(std::string_view terminator) const {
    const Unit* const found = std::search(at, end, terminator.begin(), terminator.end());
    return Source::countUnits(at, found);
}

template class PelPlainMarkup<PelPlainUtf8>;
template class PelPlainMarkup<PelPlainUtf16>;
