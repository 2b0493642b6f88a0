// SPDX-License-Identifier: MIT
#include "output/PelXercesPlace.h"

#include <string_view>

namespace {

using Fate = PelXercesPlace::Fate;

constexpr std::u16string_view textEntities = u"&<>\r";
constexpr std::u16string_view attributeEntities = u"&<\"\n\r\t";

constexpr PelXercesPlace unchecked(std::u16string_view entities) {
    PelXercesPlace place{u"the document", Fate::reference, false, false, {}};
    place.ascii[0] = Fate::ends;
    for (const char16_t unit : entities)
        place.ascii[unit] = Fate::entity;
    return place;
}

constexpr bool isControl(char16_t unit) {
    return (unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit == 0x7F;
}

constexpr PelXercesPlace unchecked11(std::u16string_view entities) {
    PelXercesPlace place = unchecked(entities);
    place.isVersion11 = true;
    for (char16_t unit = 1; unit <= 0x7F; ++unit)
        if (isControl(unit))
            place.ascii[unit] = Fate::reference;
    return place;
}

constexpr PelXercesPlace checked(const char16_t* name, std::u16string_view entities, Fate otherwise,
                                 bool isVersion11) {
    PelXercesPlace place = unchecked(entities);
    place.name = name;
    place.otherwise = otherwise;
    place.isChecked = true;
    place.isVersion11 = isVersion11;
    for (char16_t unit = 1; unit <= 0x7F; ++unit)
        if (isControl(unit) && (isVersion11 || unit < u' '))
            place.ascii[unit] = isVersion11 ? otherwise : Fate::refused;
    if (entities.empty())
        place.ascii[u'\r'] = Fate::newline;
    return place;
}

constexpr PelXercesPlace makeCdata(bool isVersion11) {
    PelXercesPlace place = checked(u"a CDATA section", u"", Fate::reference, isVersion11);
    place.ascii[u'\r'] = Fate::reference;
    place.ascii[u']'] = Fate::bracket;
    return place;
}

constexpr PelXercesPlace::Set makeSet(bool isVersion11) {
    return {checked(u"a text", textEntities, Fate::reference, isVersion11),
            checked(u"an attribute", attributeEntities, Fate::reference, isVersion11),
            makeCdata(isVersion11),
            checked(u"a name", u"", Fate::refused, isVersion11),
            checked(u"a comment", u"", Fate::refused, isVersion11),
            checked(u"an instruction", u"", Fate::refused, isVersion11),
            checked(u"an identifier", u"", Fate::refused, isVersion11),
            checked(u"an internal subset", u"", Fate::refused, isVersion11),
            checked(u"an internal subset", u"", Fate::reference, isVersion11)};
}

constexpr PelXercesPlace::Set version10 = makeSet(false);
constexpr PelXercesPlace::Set version11 = makeSet(true);

} // namespace

constexpr PelXercesPlace PelXercesPlace::anywhere = unchecked(u"");
constexpr PelXercesPlace PelXercesPlace::uncheckedText = unchecked(textEntities);
constexpr PelXercesPlace PelXercesPlace::uncheckedAttribute = unchecked(attributeEntities);
constexpr PelXercesPlace PelXercesPlace::uncheckedText11 = unchecked11(textEntities);
constexpr PelXercesPlace PelXercesPlace::uncheckedAttribute11 = unchecked11(attributeEntities);

const PelXercesPlace::Set& PelXercesPlace::of(bool isVersion11) {
    return isVersion11 ? version11 : version10;
}
