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
    add(attribute.getFullName(), u' ');
    const bool isEnumeration = attribute.getType() == XMLAttDef::Enumeration;
    if (!isEnumeration)
        add(XMLAttDef::getAttTypeString(attribute.getType()));
    const XMLCh* choice = attribute.getEnumeration();
    if (choice != nullptr && *choice != 0) {
        add(isEnumeration ? u"(" : u" (");
        for (; *choice != 0; ++choice)
            add(*choice == u' ' ? u'|' : *choice);
        add(u')');
    }
    if (attribute.getDefaultType() != XMLAttDef::Default)
        add(u' ', XMLAttDef::getDefAttTypeString(attribute.getDefaultType()));
    addQuoted(attribute.getValue(), u"\"&<\t\n\r");
}

void PelXercesSubset::addElement(const xercesc::DTDElementDecl& element) {
    add(u"<!ELEMENT ", element.getFullName(), u' ');
    if (element.getModelType() == xercesc::DTDElementDecl::Empty)
        add(u"EMPTY");
    else if (element.getModelType() == xercesc::DTDElementDecl::Any)
        add(u"ANY");
    else
        addModel(*element.getContentSpec());
    add(u'>');
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
    const auto addLater = [&steps](char16_t mark) { steps.push_back({nullptr, none, mark}); };
    while (!steps.empty()) {
        const auto [node, parent, mark] = steps.back();
        steps.pop_back();
        if (node == nullptr) {
            add(mark);
            continue;
        }
        const ContentSpecNode::NodeTypes type = node->getType();
        const ContentSpecNode::NodeTypes first =
            node->getFirst() != nullptr ? node->getFirst()->getType() : none;
        bool hasBrackets = parent == none; // of a leaf
        if (isRepetition(type)) {
            hasBrackets =
                (first == ContentSpecNode::Leaf) == (parent == none) || isRepetition(first);
            addLater(markOf(type));
        } else if (type != ContentSpecNode::Leaf) {
            hasBrackets = parent != type;
        }
        if (hasBrackets) {
            add(u'(');
            addLater(u')');
        }
        if (type == ContentSpecNode::Leaf) {
            addName(*node->getElement());
        } else if (node->getSecond() != nullptr) {
            steps.push_back({node->getSecond(), type, u'\0'});
            addLater(markOf(type));
        }
        if (node->getFirst() != nullptr)
            steps.push_back({node->getFirst(), type, u'\0'});
    }
}

// Here the engine has lost the name ":".
void PelXercesSubset::addName(const xercesc::QName& name) {
    if (name.getURI() == xercesc::XMLElementDecl::fgPCDataElemId)
        add(xercesc::XMLElementDecl::fgPCDataElemName);
    else
        add(*name.getRawName() != 0 ? name.getRawName() : u":");
}

void PelXercesSubset::addComment(const XMLCh* comment) {
    add(u"<!--", comment, u"-->");
}

void PelXercesSubset::addEntity(const xercesc::DTDEntityDecl& entity, bool isParameter) {
    add(isParameter ? u"<!ENTITY % " : u"<!ENTITY ", entity.getName());
    if (entity.isExternal())
        addIdentifiers(entity.getPublicId(), entity.getSystemId(), true);
    if (entity.getNotationName() != nullptr)
        add(u" NDATA ", entity.getNotationName());
    addQuoted(entity.getValue(), u"\"&%\r");
    add(u'>');
}

void PelXercesSubset::addNotation(const xercesc::XMLNotationDecl& notation) {
    add(u"<!NOTATION ", notation.getName());
    addIdentifiers(notation.getPublicId(), notation.getSystemId(), false);
    add(u'>');
}

// The engine keeps no empty identifiers. A public one may stand alone in a notation only.
void PelXercesSubset::addIdentifiers(const XMLCh* publicId, const XMLCh* systemId,
                                     bool needsSystemId) {
    add(publicId != nullptr ? u" PUBLIC" : u" SYSTEM");
    if (publicId != nullptr)
        addIdentifier(publicId);
    if (systemId != nullptr)
        addIdentifier(systemId);
    else if (needsSystemId || publicId == nullptr)
        addIdentifier(u"");
}

// Identifiers know no references; they may hold one of the quotes, but not both.
void PelXercesSubset::addIdentifier(const XMLCh* identifier) {
    const XMLCh quote = xercesc::XMLString::indexOf(identifier, u'"') != -1 ? u'\'' : u'"';
    add(u' ', quote, identifier, quote);
}

void PelXercesSubset::addQuoted(const XMLCh* value, const char16_t* escaped) {
    if (value == nullptr)
        return;
    add(u" \"");
    for (; *value != 0; ++value) {
        const bool isControl = isXml11 && PelCharacters::needsReference11(*value);
        if (!isControl && std::u16string_view(escaped).find(*value) == std::u16string_view::npos) {
            add(*value);
            continue;
        }
        XMLCh digits[8];
        xercesc::XMLString::binToText(*value, digits, 7, 16);
        add(u"&#x", digits, u';');
    }
    add(u'"');
}
