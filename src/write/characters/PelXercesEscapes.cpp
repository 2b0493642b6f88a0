// SPDX-License-Identifier: MIT
#include "write/characters/PelXercesEscapes.h"

#include "core/PelCharacters.h"

#include <string_view>

namespace {

using Action = PelXercesEscapes::Action;

constexpr std::u16string_view textEntities = u"&<>\r";
constexpr std::u16string_view attributeEntities = u"&<\"\n\r\t";
constexpr std::u16string_view singleQuotedEntities = u"&<'\n\r\t";

constexpr PelXercesEscapes asIs(std::u16string_view entities) {
    PelXercesEscapes escapes{u"the document", Action::reference, false, false, {}};
    escapes.ascii[0] = Action::end;
    for (const char16_t unit : entities)
        escapes.ascii[unit] = Action::entity;
    return escapes;
}

constexpr PelXercesEscapes asIs(std::u16string_view entities, bool isVersion11) {
    PelXercesEscapes escapes = asIs(entities);
    escapes.isVersion11 = isVersion11;
    for (char16_t unit = 1; isVersion11 && unit <= 0x7F; ++unit)
        if (PelCharacters::needsReference11(unit))
            escapes.ascii[unit] = Action::reference;
    return escapes;
}

constexpr PelXercesEscapes strict(const char16_t* name, std::u16string_view entities,
                                  Action otherwise, bool isVersion11) {
    PelXercesEscapes escapes = asIs(entities);
    escapes.name = name;
    escapes.otherwise = otherwise;
    escapes.isStrict = true;
    escapes.isVersion11 = isVersion11;
    for (char16_t unit = 1; unit <= 0x7F; ++unit)
        if (isVersion11 ? PelCharacters::needsReference11(unit)
                        : PelCharacters::isForbiddenControl(unit))
            escapes.ascii[unit] = isVersion11 ? otherwise : Action::refuse;
    if (entities.empty())
        escapes.ascii[u'\r'] = Action::newline;
    return escapes;
}

constexpr PelXercesEscapes strictCdata(bool isVersion11) {
    PelXercesEscapes escapes = strict(u"a CDATA section", u"", Action::reference, isVersion11);
    escapes.ascii[u'\r'] = Action::reference;
    escapes.ascii[u']'] = Action::bracket;
    return escapes;
}

constexpr PelXercesEscapes::Set asIsSet(bool isVersion11) {
    constexpr PelXercesEscapes none = asIs(u"");
    return {asIs(textEntities, isVersion11),
            asIs(attributeEntities, isVersion11),
            asIs(singleQuotedEntities, isVersion11),
            none,
            none,
            none,
            none,
            none,
            none,
            none};
}

constexpr PelXercesEscapes::Set strictSet(bool isVersion11) {
    return {strict(u"a text", textEntities, Action::reference, isVersion11),
            strict(u"an attribute", attributeEntities, Action::reference, isVersion11),
            strict(u"an attribute", singleQuotedEntities, Action::reference, isVersion11),
            strictCdata(isVersion11),
            strict(u"a name", u"", Action::refuse, isVersion11),
            strict(u"a comment", u"", Action::refuse, isVersion11),
            strict(u"an instruction", u"", Action::refuse, isVersion11),
            strict(u"an identifier", u"", Action::refuse, isVersion11),
            strict(u"an internal subset", u"", Action::refuse, isVersion11),
            strict(u"an internal subset", u"", Action::reference, isVersion11)};
}

constexpr std::array<PelXercesEscapes::Set, 2> asIsSets{asIsSet(false), asIsSet(true)};
constexpr std::array<PelXercesEscapes::Set, 2> strictSets{strictSet(false), strictSet(true)};

} // namespace

constexpr PelXercesEscapes PelXercesEscapes::anywhere = ::asIs(u"");

const PelXercesEscapes::Set& PelXercesEscapes::asIs(bool isVersion11) {
    return asIsSets[isVersion11 ? 1 : 0];
}

const PelXercesEscapes::Set& PelXercesEscapes::strict(bool isVersion11) {
    return strictSets[isVersion11 ? 1 : 0];
}
