// SPDX-License-Identifier: MIT
#include "write/characters/PelXercesEscapes.h"

#include <string_view>

namespace {

using Treatment = PelXercesEscapes::Treatment;

constexpr std::u16string_view textEntities = u"&<>\r";
constexpr std::u16string_view attributeEntities = u"&<\"\n\r\t";

constexpr PelXercesEscapes unchecked(std::u16string_view entities) {
    PelXercesEscapes place{u"the document", Treatment::reference, false, false, {}};
    place.ascii[0] = Treatment::ends;
    for (const char16_t unit : entities)
        place.ascii[unit] = Treatment::entity;
    return place;
}

constexpr bool isControl(char16_t unit) {
    return (unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit == 0x7F;
}

constexpr PelXercesEscapes unchecked11(std::u16string_view entities) {
    PelXercesEscapes place = unchecked(entities);
    place.isVersion11 = true;
    for (char16_t unit = 1; unit <= 0x7F; ++unit)
        if (isControl(unit))
            place.ascii[unit] = Treatment::reference;
    return place;
}

constexpr PelXercesEscapes checked(const char16_t* name, std::u16string_view entities,
                                   Treatment otherwise, bool isVersion11) {
    PelXercesEscapes place = unchecked(entities);
    place.name = name;
    place.otherwise = otherwise;
    place.isChecked = true;
    place.isVersion11 = isVersion11;
    for (char16_t unit = 1; unit <= 0x7F; ++unit)
        if (isControl(unit) && (isVersion11 || unit < u' '))
            place.ascii[unit] = isVersion11 ? otherwise : Treatment::refused;
    if (entities.empty())
        place.ascii[u'\r'] = Treatment::newline;
    return place;
}

constexpr PelXercesEscapes makeCdata(bool isVersion11) {
    PelXercesEscapes place = checked(u"a CDATA section", u"", Treatment::reference, isVersion11);
    place.ascii[u'\r'] = Treatment::reference;
    place.ascii[u']'] = Treatment::bracket;
    return place;
}

constexpr PelXercesEscapes::Set makeSet(bool isVersion11) {
    return {checked(u"a text", textEntities, Treatment::reference, isVersion11),
            checked(u"an attribute", attributeEntities, Treatment::reference, isVersion11),
            makeCdata(isVersion11),
            checked(u"a name", u"", Treatment::refused, isVersion11),
            checked(u"a comment", u"", Treatment::refused, isVersion11),
            checked(u"an instruction", u"", Treatment::refused, isVersion11),
            checked(u"an identifier", u"", Treatment::refused, isVersion11),
            checked(u"an internal subset", u"", Treatment::refused, isVersion11),
            checked(u"an internal subset", u"", Treatment::reference, isVersion11)};
}

constexpr PelXercesEscapes::Set version10 = makeSet(false);
constexpr PelXercesEscapes::Set version11 = makeSet(true);

} // namespace

constexpr PelXercesEscapes PelXercesEscapes::anywhere = unchecked(u"");
constexpr PelXercesEscapes PelXercesEscapes::uncheckedText = unchecked(textEntities);
constexpr PelXercesEscapes PelXercesEscapes::uncheckedAttribute = unchecked(attributeEntities);
constexpr PelXercesEscapes PelXercesEscapes::uncheckedText11 = unchecked11(textEntities);
constexpr PelXercesEscapes PelXercesEscapes::uncheckedAttribute11 = unchecked11(attributeEntities);

const PelXercesEscapes::Set& PelXercesEscapes::of(bool isVersion11) {
    return isVersion11 ? version11 : version10;
}
