// SPDX-License-Identifier: MIT
#include "write/PelXercesCheckedMarkup.h"

#include "write/PelXercesRefusal.h"
#include "write/characters/PelXercesSubsetScan.h"

#include <xercesc/util/XMLChar.hpp>

#include <cstdint>
#include <string_view>

using Treatment = PelXercesEscapes::Treatment;

namespace {

void require(bool isGood, const char16_t* reason) {
    if (!isGood)
        throw PelXercesRefusal{reason};
}

bool has(std::u16string_view text, std::u16string_view part) {
    return text.find(part) != text.npos;
}

bool isReserved(std::u16string_view target) {
    return target.size() == 3 && (target[0] | 0x20) == u'x' && (target[1] | 0x20) == u'm' &&
           (target[2] | 0x20) == u'l';
}

} // namespace

PelXercesCheckedMarkup::PelXercesCheckedMarkup(PelXercesMarkup& markup, bool isVersion11)
    : out(markup), places(PelXercesEscapes::of(isVersion11)) {
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::name(const char16_t* name) {
    KnownName& slot = known[(reinterpret_cast<std::uintptr_t>(name) >> 3) % known.size()];
    if (slot.characters != name)
        slot = {name, check(name)};
    out.addKnown(name, slot.length);
    return *this;
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::text(const char16_t* value) {
    out.add(value, places.text);
    return *this;
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::attribute(const char16_t* value) {
    out.add(value, places.attribute);
    return *this;
}

// A reference means nothing in a section, so it stands between two. None of them is empty unless
// all is, for readers take no notice of an empty one.
PelXercesCheckedMarkup& PelXercesCheckedMarkup::cdata(const char16_t* data) {
    bool isOpen = *data == 0;
    if (isOpen)
        out.markup(u"<![CDATA[");
    while (*data != 0) {
        const bool isInside = out.treatmentOf(data, places.cdata) != Treatment::reference;
        if (isInside && !isOpen)
            out.markup(u"<![CDATA[");
        else if (!isInside && isOpen)
            out.markup(u"]]>");
        isOpen = isInside;
        const char16_t* const next = isInside ? out.addStanding(data, places.cdata) : data;
        data = next != data ? next : out.addOther(data, places.cdata);
    }
    if (isOpen)
        out.markup(u"]]>");
    return *this;
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::comment(const char16_t* data) {
    const std::u16string_view text = data;
    require(!has(text, u"--") && (text.empty() || text.back() != u'-'),
            u"a comment holds two hyphens, or one at its end");
    out.markup(u"<!--").add(data, places.comment).markup(u"-->");
    return *this;
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::instruction(const char16_t* target,
                                                            const char16_t* data) {
    require(!isReserved(target), u"an instruction has the target xml");
    require(!has(data, u"?>"), u"an instruction holds ?>");
    out.markup(u"<?");
    name(target);
    if (*data != 0)
        out.markup(u" ").add(data, places.instruction);
    out.markup(u"?>");
    return *this;
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::identifier(const char16_t* identifier) {
    const bool hasQuote = has(identifier, u"\"");
    require(!hasQuote || !has(identifier, u"'"), u"an identifier holds quotes of both kinds");
    if (hasQuote)
        out.markup(u" '").add(identifier, places.identifier).markup(u"'");
    else
        out.markup(u" \"").add(identifier, places.identifier).markup(u"\"");
    return *this;
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::subset(const char16_t* subset) {
    PelXercesSubsetScan scan(subset);
    for (;;) {
        subset = out.addStanding(subset, places.subset);
        if (*subset == 0)
            return *this;
        subset =
            out.addOther(subset, scan.knowsReferencesAt(subset) ? places.literal : places.subset);
    }
}

PelXercesCheckedMarkup& PelXercesCheckedMarkup::newline(std::size_t spaces) {
    out.addLine(spaces);
    return *this;
}

// Gives the length. By now XML 1.0 allows the names of XML 1.1, and the engine reads them.
std::size_t PelXercesCheckedMarkup::check(const char16_t* name) const {
    const std::u16string_view whole = name;
    if (!xercesc::XMLChar1_1::isValidName(name, whole.size()))
        throw PelXercesRefusal{u"'" + PelString(whole) + u"' is no name in XML"};
    for (const char16_t* at = name; *at != 0; ++at) {
        if (out.treatmentOf(at, places.name) != Treatment::stands)
            throw PelXercesRefusal{u"the name '" + PelString(whole) +
                                   u"' holds a character that cannot be written"};
        if ((*at & 0xFC00) == 0xD800)
            ++at;
    }
    return whole.size();
}
