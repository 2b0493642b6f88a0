// SPDX-License-Identifier: MIT
#include "read/scan/PelPlainMarkup.h"

#include "core/PelCharacters.h"
#include "read/scan/PelPlainUtf16.h"
#include "read/scan/PelPlainUtf8.h"

#include <xercesc/util/XMLString.hpp>

#include <cstring>

using namespace std::literals;

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
    if (!isAt("<?xml"sv) || end - at < 6 || !PelCharacters::isSpace(at[5]))
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
    tree.declare(encoding, standalone);
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
    const Unit* last = at;
    while (last != end && *last > ' ' && *last < 0x80 && *last != static_cast<Unit>(quote))
        ++last;
    value.assign(at, last);
    at = last;
    return skip(quote) && !value.empty();
}

// The name that ends here.
template <class Source>
const XMLCh* PelPlainMarkup<Source>::nameFrom(const Unit* begin) {
    const std::size_t size = static_cast<std::size_t>(at - begin) * sizeof(Unit);
    const XMLCh* const known = names.find(begin, size);
    return known != nullptr ? known : names.add(begin, size, unitsFrom(begin));
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
    const XMLCh* const name = nameFrom(begin);
    if (name == nullptr)
        return false;
    tree.openElement(name, spanFrom(begin).begin - 1);
    for (;;) {
        const bool hasSpace = skipSpace();
        if (skip('>'))
            return tree.endTag();
        if (isAt('/')) {
            open.pop_back();
            if (!skip("/>"sv) || !tree.endTag())
                return false;
            tree.closeElement(spanFrom(at).end);
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
    const XMLCh* const name = nameFrom(begin);
    if (name == nullptr)
        return false;
    skipSpace();
    if (!skip('='))
        return false;
    skipSpace();
    text.clear();
    if (!(skip('"') ? readValue<'"'>() : skip('\'') && readValue<'\''>()))
        return false;
    tree.addAttribute(name, text);
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
        } else if (PelCharacters::isSpace(*at)) { // no blank, so it becomes one
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
    if (!skip('>'))
        return false;
    tree.closeElement(spanFrom(at).end);
    return true;
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
    const Unit* const begin = at;
    text.clear();
    while (copy<PelPlainContent>("<"sv)) {
        if (isAt('<')) {
            tree.addText(text, spanFrom(begin));
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
bool PelPlainMarkup<Source>::readComment() {
    const Unit* const begin = at;
    at += 4;
    if (!readUpTo<PelPlainComment>("-->"sv, "--"sv))
        return false;
    tree.addComment(text, spanFrom(begin));
    return true;
}

template <class Source>
bool PelPlainMarkup<Source>::readCdata() {
    const Unit* const begin = at;
    at += 9;
    if (!readUpTo<PelPlainCdata>("]]>"sv))
        return false;
    tree.addCdata(text, spanFrom(begin));
    return true;
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
    if (skipSpace() ? !readUpTo<PelPlainInstruction>("?>"sv) : !skip("?>"sv))
        return false;
    tree.addInstruction(target, text, spanFrom(begin - 2));
    return true;
}

// Reads a text that ends with a terminator. Its first character alone means nothing, unless what it
// begins is forbidden in the text.
template <class Source>
template <class Run>
bool PelPlainMarkup<Source>::readUpTo(std::string_view terminator, std::string_view forbidden) {
    text.clear();
    while (copy<Run>(terminator)) {
        if (skip(terminator))
            return true;
        if (!isAt(terminator[0]) || (!forbidden.empty() && isAt(forbidden)))
            return false;
        text.put(static_cast<char16_t>(terminator[0]));
        ++at;
    }
    return false;
}

template class PelPlainMarkup<PelPlainUtf8>;
template class PelPlainMarkup<PelPlainUtf16>;
