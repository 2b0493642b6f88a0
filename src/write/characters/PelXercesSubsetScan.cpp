// SPDX-License-Identifier: MIT
#include "write/characters/PelXercesSubsetScan.h"

#include <string_view>

bool PelXercesSubsetScan::knowsReferencesAt(const char16_t* place) {
    while (at < place)
        step();
    return quote != 0 && hasValues && !isReference;
}

void PelXercesSubsetScan::step() {
    if (end != nullptr) {
        if (begins(end)) {
            at += std::u16string_view(end).size();
            end = nullptr;
            return;
        }
    } else if (quote != 0) {
        if (*at == quote)
            quote = 0;
        else if (*at == u'&')
            isReference = true;
        else if (*at == u';')
            isReference = false;
    } else if (begins(u"<!--")) {
        at += 3;
        end = u"-->";
    } else if (begins(u"<?")) {
        end = u"?>";
    } else if (begins(u"<!")) {
        hasValues = begins(u"<!ENTITY") || begins(u"<!ATTLIST");
    } else if (begins(u"SYSTEM") || begins(u"PUBLIC")) {
        hasValues = false;
    } else if (*at == u'"' || *at == u'\'') {
        quote = *at;
        isReference = false;
    }
    ++at;
}

bool PelXercesSubsetScan::begins(const char16_t* word) const {
    const std::u16string_view wanted = word;
    for (std::size_t i = 0; i < wanted.size(); ++i)
        if (at[i] != wanted[i])
            return false;
    return true;
}
