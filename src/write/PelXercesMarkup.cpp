// SPDX-License-Identifier: MIT
#include "write/PelXercesMarkup.h"

#include "core/PelCharacters.h"
#include "write/characters/PelXercesCharacterSet.h"
#include "write/characters/PelXercesEncoder.h"

#include <algorithm>
#include <iterator>
#include <utility>

using Action = PelXercesEscapes::Action;
using PelCharacters::isPair;
using PelCharacters::isSurrogate;

namespace {

char32_t characterAt(const char16_t* units) {
    return isPair(units[0], units[1]) ? PelCharacters::fromPair(units[0], units[1]) : units[0];
}

// Of a unit beyond ASCII.
bool isCopied(char16_t unit, const PelXercesEscapes& escapes) {
    if (unit >= 0xD800 && (isSurrogate(unit) || (unit >= 0xFFFE && escapes.isStrict)))
        return false;
    return !escapes.isVersion11 || !PelCharacters::needsReference11(unit);
}

// Of a unit that an escape table has an entity for.
std::u16string_view entityFor(char16_t unit) {
    static constexpr std::pair<char16_t, std::u16string_view> entities[] = {
        {u'&', u"&amp;"},   {u'<', u"&lt;"},   {u'>', u"&gt;"},   {u'"', u"&quot;"},
        {u'\'', u"&apos;"}, {u'\t', u"&#x9;"}, {u'\n', u"&#xA;"}, {u'\r', u"&#xD;"}};
    const auto isIt = [unit](const auto& entity) { return entity.first == unit; };
    return std::find_if(std::begin(entities), std::end(entities), isIt)->second;
}

[[noreturn]] void refuse(const char16_t* units, const PelXercesEscapes& escapes,
                         bool isInEncoding) {
    const char32_t character = characterAt(units);
    const bool isInXml = PelCharacters::isCharacter(character) ||
                         (escapes.isVersion11 && PelCharacters::isForbiddenControl(character));
    PelString reason;
    if (isSurrogate(*units) && !isPair(units[0], units[1]))
        reason.format(u"%s holds half a surrogate pair, U+%04X", escapes.name, unsigned{*units});
    else
        reason.format(!isInXml       ? u"%s holds U+%04X, which XML forbids"
                      : isInEncoding ? u"%s holds U+%04X, which XML takes as a reference only"
                                     : u"%s holds U+%04X, which the encoding does not have",
                      escapes.name, static_cast<unsigned>(character));
    throw PelXercesWriteError{reason};
}

} // namespace

PelXercesMarkup::PelXercesMarkup(PelXercesCharacterSet& outputCharacters,
                                 PelXercesEncoder* outputEncoder)
    : characterSet(outputCharacters), encoder(outputEncoder),
      isUniversal(outputCharacters.holdsEverything()),
      enough(encoder != nullptr ? std::size_t{32} * 1024 : std::u16string::npos) {
}

PelXercesMarkup& PelXercesMarkup::add(const char16_t* characters, const PelXercesEscapes& escapes) {
    if (characters == nullptr)
        return *this;
    for (;;) {
        characters = addPlain(characters, escapes);
        if (*characters == 0)
            break;
        characters = addEscaped(characters, escapes);
    }
    return *this;
}

const char16_t* PelXercesMarkup::addPlain(const char16_t* characters,
                                          const PelXercesEscapes& escapes) {
    const char16_t* end = characters;
    const auto isPlain = [&escapes](char16_t unit) {
        return unit < escapes.ascii.size() ? escapes.ascii[unit] == Action::copy
                                           : isCopied(unit, escapes);
    };
    if (isUniversal)
        while (isPlain(*end))
            ++end;
    else
        while (isPlain(*end) && characterSet.holds(*end))
            ++end;
    appendLong({characters, static_cast<std::size_t>(end - characters)});
    return end;
}

// What is long need not be gathered first: there are no surrogate pairs in it to be kept whole.
void PelXercesMarkup::appendLong(std::u16string_view text) {
    while (text.size() > enough) {
        flush();
        encoder->encode(text.substr(0, enough));
        text.remove_prefix(enough);
    }
    addRaw(text);
}

Action PelXercesMarkup::actionFor(const char16_t* characters,
                                  const PelXercesEscapes& escapes) const {
    const char16_t unit = *characters;
    if (unit < escapes.ascii.size() && escapes.ascii[unit] != Action::copy)
        return escapes.ascii[unit];
    if (isSurrogate(unit)) {
        if (!isPair(unit, characters[1]))
            return Action::refuse;
        return isUniversal || characterSet.holds(unit, characters[1]) ? Action::copy
                                                                      : escapes.otherwise;
    }
    if (unit >= 0xFFFE && escapes.isStrict)
        return Action::refuse;
    return (unit < escapes.ascii.size() || isCopied(unit, escapes)) &&
                   (isUniversal || characterSet.holds(unit))
               ? Action::copy
               : escapes.otherwise;
}

const char16_t* PelXercesMarkup::addEscaped(const char16_t* characters,
                                            const PelXercesEscapes& escapes) {
    const std::size_t units = isSurrogate(*characters) ? 2 : 1;
    switch (actionFor(characters, escapes)) {
    case Action::end:
    case Action::copy:
        append({characters, units});
        break;
    case Action::entity:
        append(entityFor(*characters));
        break;
    case Action::reference:
        addReference(characterAt(characters));
        break;
    case Action::newline:
        if (characters[1] != u'\n')
            append(u"\n");
        break;
    case Action::bracket:
        if (characters[1] == u']' && characters[2] == u'>')
            append(u"]]]]><![CDATA[>");
        else
            append(u"]");
        return characters + (characters[1] == u']' && characters[2] == u'>' ? 3 : 1);
    case Action::refuse:
        refuse(characters, escapes, isUniversal || (units == 1 && characterSet.holds(*characters)));
    }
    return characters + units;
}

PelXercesMarkup& PelXercesMarkup::addLine(std::size_t spaces) {
    append(u"\n");
    if (gathered.size() - used < spaces)
        grow(spaces);
    std::fill_n(&gathered[used], spaces, u' ');
    used += spaces;
    return flushIfEnough();
}

void PelXercesMarkup::flush() {
    if (encoder == nullptr)
        return;
    encoder->encode({gathered.data(), used});
    used = 0;
}

void PelXercesMarkup::addSource(std::string_view text) {
    flush();
    encoder->encodeSource(text);
}

std::u16string PelXercesMarkup::takeText() {
    gathered.resize(used);
    return std::move(gathered);
}

void PelXercesMarkup::grow(std::size_t length) {
    gathered.resize(std::max(used + length, 2 * gathered.size()));
}

void PelXercesMarkup::addReference(char32_t character) {
    int shift = 20;
    while (shift > 0 && character >> shift == 0)
        shift -= 4;
    append(u"&#x");
    for (; shift >= 0; shift -= 4)
        append({&u"0123456789ABCDEF"[(character >> shift) & 0xF], 1});
    append(u";");
}
