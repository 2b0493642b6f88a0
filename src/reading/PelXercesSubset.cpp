// SPDX-License-Identifier: MIT
#include "reading/PelXercesSubset.h"

#include <xercesc/util/XMLString.hpp>

#include <string_view>

using xercesc::XMLAttDef;

void PelXercesSubset::addAttribute(const xercesc::DTDAttDef& attribute) {
    text.append(attribute.getFullName());
    text.append(u' ');
    const bool isEnumeration = attribute.getType() == XMLAttDef::Enumeration;
    if (!isEnumeration)
        text.append(XMLAttDef::getAttTypeString(attribute.getType()));
    const XMLCh* choice = attribute.getEnumeration();
    if (choice != nullptr && *choice != 0) {
        text.append(isEnumeration ? u"(" : u" (");
        for (; *choice != 0; ++choice)
            text.append(*choice == u' ' ? u'|' : *choice);
        text.append(u')');
    }
    if (attribute.getDefaultType() != XMLAttDef::Default) {
        text.append(u' ');
        text.append(XMLAttDef::getDefAttTypeString(attribute.getDefaultType()));
    }
    if (attribute.getValue() != nullptr) {
        text.append(u' ');
        addQuoted(attribute.getValue(), u"\"&<\t\n\r");
    }
}

void PelXercesSubset::addComment(const XMLCh* comment) {
    text.append(u"<!--");
    text.append(comment);
    text.append(u"-->");
}

void PelXercesSubset::addEntity(const xercesc::DTDEntityDecl& entity, bool isParameter) {
    text.append(isParameter ? u"<!ENTITY % " : u"<!ENTITY ");
    text.append(entity.getName());
    addIdentifiers(entity.getPublicId(), entity.getSystemId());
    if (entity.getNotationName() != nullptr) {
        text.append(u" NDATA ");
        text.append(entity.getNotationName());
    }
    if (entity.getValue() != nullptr) {
        text.append(u' ');
        addQuoted(entity.getValue(), u"\"&%\r");
    }
    text.append(u'>');
}

void PelXercesSubset::addNotation(const xercesc::XMLNotationDecl& notation) {
    text.append(u"<!NOTATION ");
    text.append(notation.getName());
    addIdentifiers(notation.getPublicId(), notation.getSystemId());
    text.append(u'>');
}

void PelXercesSubset::addIdentifiers(const XMLCh* publicId, const XMLCh* systemId) {
    if (publicId != nullptr) {
        text.append(u" PUBLIC");
        addIdentifier(publicId);
    } else if (systemId != nullptr) {
        text.append(u" SYSTEM");
    }
    if (systemId != nullptr)
        addIdentifier(systemId);
}

// Identifiers know no references; they may hold one of the quotes, but not both.
void PelXercesSubset::addIdentifier(const XMLCh* identifier) {
    const bool hasQuote = xercesc::XMLString::indexOf(identifier, u'"') != -1;
    text.append(hasQuote ? u" '" : u" \"");
    text.append(identifier);
    text.append(hasQuote ? u'\'' : u'"');
}

void PelXercesSubset::addQuoted(const XMLCh* value, const char16_t* escaped) {
    text.append(u'"');
    for (; *value != 0; ++value) {
        if (std::u16string_view(escaped).find(*value) == std::u16string_view::npos) {
            text.append(*value);
            continue;
        }
        XMLCh digits[8];
        xercesc::XMLString::binToText(*value, digits, 7, 16);
        text.append(u"&#x");
        text.append(digits);
        text.append(u';');
    }
    text.append(u'"');
}
