// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesRules.h"

#include "core/PelCharacters.h"

#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <cstddef>

namespace {

bool isVersion11(const xercesc::DOMDocument& document) {
    return document.getXmlVersion() == xercesc::XMLUni::fgVersion1_1;
}

bool isTextOf(std::u16string_view text, bool hasControls) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        const bool isControl = hasControls && unit != 0 && PelCharacters::isForbiddenControl(unit);
        if (isControl || PelCharacters::isCharacter(unit))
            continue;
        if (i + 1 == text.size() || !PelCharacters::isPair(unit, text[i + 1]))
            return false;
        ++i;
    }
    return true;
}

bool contains(std::u16string_view text, std::u16string_view part) {
    return text.find(part) != text.npos;
}

} // namespace

// The engine's own check misses half a surrogate pair at the end of a name in XML 1.1.
bool PelXercesRules::isName(std::u16string_view name,
                            const xercesc::DOMDocument& document) noexcept {
    if (!isTextOf(name, false))
        return false;
    return isVersion11(document) ? xercesc::XMLChar1_1::isValidName(name.data(), name.size())
                                 : xercesc::XMLChar1_0::isValidName(name.data(), name.size());
}

bool PelXercesRules::isText(std::u16string_view text,
                            const xercesc::DOMDocument& document) noexcept {
    return isTextOf(text, isVersion11(document));
}

bool PelXercesRules::isCDATA(std::u16string_view data) noexcept {
    return isTextOf(data, false) && !contains(data, u"]]>");
}

bool PelXercesRules::isComment(std::u16string_view data) noexcept {
    return isTextOf(data, false) && !contains(data, u"--") && (data.empty() || data.back() != u'-');
}

bool PelXercesRules::isInstructionTarget(std::u16string_view target,
                                         const xercesc::DOMDocument& document) noexcept {
    return !isReserved(target) && isName(target, document);
}

bool PelXercesRules::isReserved(std::u16string_view target) noexcept {
    return target.size() == 3 && (target[0] | 0x20) == u'x' && (target[1] | 0x20) == u'm' &&
           (target[2] | 0x20) == u'l';
}

bool PelXercesRules::isInstruction(std::u16string_view data) noexcept {
    return isTextOf(data, false) && !contains(data, u"?>");
}
