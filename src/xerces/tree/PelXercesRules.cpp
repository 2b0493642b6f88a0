// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesRules.h"

#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <cstddef>

namespace {

bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool isCharacter(char16_t unit) {
    if (unit < u' ')
        return unit == u'\t' || unit == u'\n' || unit == u'\r';
    return unit < 0xFFFE && !isHighSurrogate(unit) && !isLowSurrogate(unit);
}

bool isVersion11(const xercesc::DOMDocument& document) {
    return document.getXmlVersion() == xercesc::XMLUni::fgVersion1_1;
}

// XML 1.1 allows these too, as references.
bool isLowControl(char16_t unit) {
    return unit != 0 && unit < u' ';
}

bool isTextOf(std::u16string_view text, bool hasControls) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isCharacter(text[i]) || (hasControls && isLowControl(text[i])))
            continue;
        const bool isPair =
            isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1]);
        if (!isPair)
            return false;
        ++i;
    }
    return true;
}

bool contains(std::u16string_view text, std::u16string_view part) {
    return text.find(part) != text.npos;
}

bool isLetter(char16_t unit, char16_t lowerCase) {
    return unit == lowerCase || unit == lowerCase - u'a' + u'A';
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
    const bool isReserved = target.size() == 3 && isLetter(target[0], u'x') &&
                            isLetter(target[1], u'm') && isLetter(target[2], u'l');
    return !isReserved && isName(target, document);
}

bool PelXercesRules::isInstruction(std::u16string_view data) noexcept {
    return isTextOf(data, false) && !contains(data, u"?>");
}
