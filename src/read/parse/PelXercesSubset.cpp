// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesSubset.h"

#include "core/PelCharacters.h"

#include <xercesc/util/XMLString.hpp>

#include <string_view>
#include <vector>

using xercesc::ContentSpecNode;
using xercesc::XMLAttDef;

namespace {

bool isRepetition(ContentSpecNode::NodeTypes type) {
    return type == ContentSpecNode::ZeroOrOne || type == ContentSpecNode::ZeroOrMore ||
           type == ContentSpecNode::OneOrMore;
}

char16_t markOf(ContentSpecNode::NodeTypes type) {
    switch (type) {
    case ContentSpecNode::ZeroOrOne:
        return u'?';
    case ContentSpecNode::ZeroOrMore:
        return u'*';
    case ContentSpecNode::OneOrMore:
        return u'+';
    case ContentSpecNode::Choice:
        return u'|';
    default:
        return u',';
    }
}

} // namespace

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

void PelXercesSubset::addElement(const xercesc::DTDElementDecl& element) {
    text.append(u"<!ELEMENT ");
    text.append(element.getFullName());
    text.append(u' ');
    if (element.getModelType() == xercesc::DTDElementDecl::Empty)
        text.append(u"EMPTY");
    else if (element.getModelType() == xercesc::DTDElementDecl::Any)
        text.append(u"ANY");
    else
        addModel(*element.getContentSpec());
    text.append(u'>');
}

// With the brackets of the engine's own text, and those that it forgets around a repetition. Models
// may be deep, so that what is still to come waits on the heap.
void PelXercesSubset::addModel(const ContentSpecNode& model) {
    struct Step {
        const ContentSpecNode* node; ///< Or null: the mark alone.
        ContentSpecNode::NodeTypes parent;
        char16_t mark;
    };
    constexpr auto none = ContentSpecNode::UnknownType;
    std::vector<Step> steps = {{&model, none, u'\0'}};
    const auto add = [&steps](char16_t mark) { steps.push_back({nullptr, none, mark}); };
    while (!steps.empty()) {
        const auto [node, parent, mark] = steps.back();
        steps.pop_back();
        if (node == nullptr) {
            text.append(mark);
            continue;
        }
        const ContentSpecNode::NodeTypes type = node->getType();
        const ContentSpecNode::NodeTypes first =
            node->getFirst() != nullptr ? node->getFirst()->getType() : none;
        bool hasBrackets = parent == none; // of a leaf
        if (isRepetition(type)) {
            hasBrackets =
                (first == ContentSpecNode::Leaf) == (parent == none) || isRepetition(first);
            add(markOf(type));
        } else if (type != ContentSpecNode::Leaf) {
            hasBrackets = parent != type;
        }
        if (hasBrackets) {
            text.append(u'(');
            add(u')');
        }
        if (type == ContentSpecNode::Leaf) {
            addName(*node->getElement());
        } else if (node->getSecond() != nullptr) {
            steps.push_back({node->getSecond(), type, u'\0'});
            add(markOf(type));
        }
        if (node->getFirst() != nullptr)
            steps.push_back({node->getFirst(), type, u'\0'});
    }
}

// Here the engine has lost the name ":".
void PelXercesSubset::addName(const xercesc::QName& name) {
    if (name.getURI() == xercesc::XMLElementDecl::fgPCDataElemId)
        text.append(xercesc::XMLElementDecl::fgPCDataElemName);
    else
        text.append(*name.getRawName() != 0 ? name.getRawName() : u":");
}

void PelXercesSubset::addComment(const XMLCh* comment) {
    text.append(u"<!--");
    text.append(comment);
    text.append(u"-->");
}

void PelXercesSubset::addEntity(const xercesc::DTDEntityDecl& entity, bool isParameter) {
    text.append(isParameter ? u"<!ENTITY % " : u"<!ENTITY ");
    text.append(entity.getName());
    if (entity.isExternal())
        addIdentifiers(entity.getPublicId(), entity.getSystemId(), true);
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
    addIdentifiers(notation.getPublicId(), notation.getSystemId(), false);
    text.append(u'>');
}

// The engine keeps no empty identifiers. A public one may stand alone in a notation only.
void PelXercesSubset::addIdentifiers(const XMLCh* publicId, const XMLCh* systemId,
                                     bool needsSystemId) {
    if (publicId != nullptr) {
        text.append(u" PUBLIC");
        addIdentifier(publicId);
    } else {
        text.append(u" SYSTEM");
    }
    if (systemId != nullptr)
        addIdentifier(systemId);
    else if (needsSystemId || publicId == nullptr)
        addIdentifier(u"");
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
        const bool isControl = isXml11 && PelCharacters::needsReference11(*value);
        if (!isControl && std::u16string_view(escaped).find(*value) == std::u16string_view::npos) {
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
