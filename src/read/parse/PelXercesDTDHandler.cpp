// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesDTDHandler.h"

#include "core/PelCharacters.h"
#include "read/parse/PelXercesValidator.h"
#include "xerces/engine/PelXercesFields.h"

#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

using Names = PelXercesNameLimits;
using Work = PelXercesReadLimits::Work;
using xercesc::ContentSpecNode;
using xercesc::DOMNode;
using xercesc::XMLAttDef;
using xercesc::XMLString;

namespace {

// What the engine takes for each, in steps: to make an attribute's default for the document type;
// to take up an entity or a notation; to find a file.
constexpr std::size_t listedSteps = 500;
constexpr std::size_t declarationSteps = 4000;
constexpr std::size_t fileSteps = 20'000;

// The scanner puts all ignored declarations into one object, and leaves there what the next one
// does not say.
void forget(xercesc::DTDEntityDecl& ignored) {
    ignored.setValue(nullptr);
    ignored.setPublicId(nullptr);
    ignored.setSystemId(nullptr);
    ignored.setNotationName(nullptr);
    ignored.setIsExternal(false);
}

// Puts the node of an entity or a notation into its map.
template <class Node, class Declaration>
void keep(xercesc::DOMNamedNodeMap& map, Node& node, const Declaration& declaration) {
    node.setPublicId(declaration.getPublicId());
    node.setSystemId(declaration.getSystemId());
    node.setBaseURI(declaration.getBaseURI());
    if (DOMNode* const former = map.setNamedItem(&node))
        former->release();
}

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

/// Adds declarations to the text of an internal subset, such that they read back as the same ones.
/// The engine's own text does not where a value holds quotes, references or line breaks, or a
/// content model repeats what is repeated, and leaves out the sign of parameter entities, the names
/// of notations and empty identifiers.
class SubsetText {
public:
    /// In XML 1.1 more characters are written as references.
    SubsetText(xercesc::XMLBuffer& subset, const xercesc::DOMDocument& document)
        : text(subset), isXml11(XMLString::equals(document.getXmlVersion(), u"1.1")) {}

    void addElement(const xercesc::DTDElementDecl& element) {
        add(u"<!ELEMENT ", element.getFullName(), u' ');
        if (element.getModelType() == xercesc::DTDElementDecl::Empty)
            add(u"EMPTY");
        else if (element.getModelType() == xercesc::DTDElementDecl::Any)
            add(u"ANY");
        else
            addModel(*element.getContentSpec());
        add(u'>');
    }

    void addAttribute(const xercesc::DTDAttDef& attribute) {
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

    void addComment(const XMLCh* comment) { add(u"<!--", comment, u"-->"); }

    void addEntity(const xercesc::DTDEntityDecl& entity, bool isParameter) {
        add(isParameter ? u"<!ENTITY % " : u"<!ENTITY ", entity.getName());
        if (entity.isExternal())
            addIdentifiers(entity.getPublicId(), entity.getSystemId(), true);
        if (entity.getNotationName() != nullptr)
            add(u" NDATA ", entity.getNotationName());
        addQuoted(entity.getValue(), u"\"&%\r");
        add(u'>');
    }

    void addNotation(const xercesc::XMLNotationDecl& notation) {
        add(u"<!NOTATION ", notation.getName());
        addIdentifiers(notation.getPublicId(), notation.getSystemId(), false);
        add(u'>');
    }

private:
    template <class... Parts>
    void add(Parts... parts) {
        (text.append(parts), ...);
    }

    // With the brackets of the engine's own text, and those that it forgets around a repetition.
    // Models may be deep, so that what is still to come waits on the heap.
    void addModel(const ContentSpecNode& model) {
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
    void addName(const xercesc::QName& name) {
        if (name.getURI() == xercesc::XMLElementDecl::fgPCDataElemId)
            add(xercesc::XMLElementDecl::fgPCDataElemName);
        else
            add(*name.getRawName() != 0 ? name.getRawName() : u":");
    }

    // The engine keeps no empty identifiers. A public one may stand alone in a notation only.
    void addIdentifiers(const XMLCh* publicId, const XMLCh* systemId, bool needsSystemId) {
        add(publicId != nullptr ? u" PUBLIC" : u" SYSTEM");
        if (publicId != nullptr)
            addIdentifier(publicId);
        if (systemId != nullptr)
            addIdentifier(systemId);
        else if (needsSystemId || publicId == nullptr)
            addIdentifier(u"");
    }

    // Identifiers know no references; they may hold one of the quotes, but not both.
    void addIdentifier(const XMLCh* identifier) {
        const XMLCh quote = XMLString::indexOf(identifier, u'"') != -1 ? u'\'' : u'"';
        add(u' ', quote, identifier, quote);
    }

    void addQuoted(const XMLCh* value, const char16_t* escaped) {
        if (value == nullptr)
            return;
        add(u" \"");
        for (; *value != 0; ++value) {
            const bool isControl = isXml11 && PelCharacters::needsReference11(*value);
            if (!isControl &&
                std::u16string_view(escaped).find(*value) == std::u16string_view::npos) {
                add(*value);
                continue;
            }
            XMLCh digits[8];
            XMLString::binToText(*value, digits, 7, 16);
            add(u"&#x", digits, u';');
        }
        add(u'"');
    }

    xercesc::XMLBuffer& text;
    const bool isXml11;
};

// Where the engine's own words say little.
std::u16string inPlainWords(const XMLCh* domain, unsigned int code, std::u16string_view words) {
    const bool isOfScanner = XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain);
    if (isOfScanner && code == xercesc::XMLErrs::InvalidDocumentStructure)
        return u"this is not XML: a document begins with a declaration or an element";
    if (isOfScanner && code == xercesc::XMLErrs::ExpectedCommentOrPI)
        return u"only comments and processing instructions may follow the root element";
    const bool isThrown = XMLString::equals(domain, xercesc::XMLUni::fgExceptDomain);
    const std::size_t quote = words.find(u'\'');
    if (isThrown && code == xercesc::XMLExcepts::Trans_CantCreateCvtrFor && quote < words.size())
        return std::u16string(u"the encoding ")
            .append(words, quote, words.rfind(u'\'') + 1 - quote)
            .append(u" is unknown or not that of the bytes");
    return std::u16string(words);
}

} // namespace

PelXercesDTDHandler::PelXercesDTDHandler(PelXercesReadMemory& readMemory)
    : XercesDOMParser(new (&readMemory) PelXercesValidator(readMemory), &readMemory),
      limits(readMemory.getLimits()), names(readMemory.getNames()), memory(readMemory),
      entities(readMemory.getEntities()) {
    getScanner()->getValidator()->setErrorReporter(this); // the engine does so for its own only
    readMemory.getStreams().readers = getScanner()->getReaderMgr();
}

void PelXercesDTDHandler::error(unsigned int code, const XMLCh* domain,
                                xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* text,
                                const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
                                XMLFileLoc column) {
    limits.addReport(XMLString::stringLen(text));
    const std::u16string words = inPlainWords(domain, code, text);
    XercesDOMParser::error(code, domain, type, words.c_str(), systemId, publicId, line, column);
}

void PelXercesDTDHandler::reportHere(const XMLCh* text) {
    xercesc::ReaderMgr::LastExtEntityInfo place;
    getScanner()->getReaderMgr()->getLastExtEntityInfo(place);
    XercesDOMParser::error(0, xercesc::XMLUni::fgZeroLenString, ErrType_Fatal, text, place.systemId,
                           place.publicId, place.lineNumber, place.colNumber);
}

// The engine moves the rest of a path for each step up in it and for each escape.
xercesc::InputSource* PelXercesDTDHandler::resolveEntity(xercesc::XMLResourceIdentifier* resource) {
    const std::u16string_view name = resource->getSystemId();
    const auto costly = std::count_if(name.begin(), name.end(),
                                      [](XMLCh unit) { return unit == u'/' || unit == u'%'; });
    limits.addWork(Work::files, fileSteps + static_cast<std::size_t>(costly) * name.size());
    return XercesDOMParser::resolveEntity(resource);
}

void PelXercesDTDHandler::doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* publicId,
                                      const XMLCh* systemId, bool hasSubset, bool hasExternal) {
    if (areTypesRefused) {
        reportHere(u"documents with a document type are refused, as it was set");
        throw xercesc::XMLErrs::NoError; // as the engine ends a parse after a fatal error
    }
    requirePairs(systemId);
    hasExternalSubset = hasExternal;
    entities.expectSubset(hasExternal && !hasSubset);
    XercesDOMParser::doctypeDecl(root, publicId, systemId, hasSubset, hasExternal);
    refuseUndeclaredReferences();
}

void PelXercesDTDHandler::startIntSubset() {
    isInSubset = true;
    XercesDOMParser::startIntSubset();
}

void PelXercesDTDHandler::endIntSubset() {
    isInSubset = false;
    entities.expectSubset(hasExternalSubset);
    XercesDOMParser::endIntSubset();
    refuseUndeclaredReferences();
}

void PelXercesDTDHandler::endExtSubset() {
    XercesDOMParser::endExtSubset();
    refuseUndeclaredReferences();
}

// Where something external might declare an entity, the engine drops references to one that is not
// declared, unless it validates.
void PelXercesDTDHandler::refuseUndeclaredReferences() {
    if (getValidationScheme() == Val_Never)
        getScanner()->setHasNoDTD(true);
}

void PelXercesDTDHandler::doctypeComment(const XMLCh* comment) {
    if (isInSubset)
        SubsetText(fInternalSubset, *fDocument).addComment(comment);
}

void PelXercesDTDHandler::elementDecl(const xercesc::DTDElementDecl& declaration,
                                      bool /*isIgnored*/) {
    limits.addEvent();
    names.addDeclaredElements();
    const std::size_t most = limits.getBounds().modelParts;
    const std::size_t parts =
        PelXercesValidator::countParts(declaration.getContentSpec(), std::max(most, most + 1));
    limits.require(parts <= most, u"too large a content model");
    limits.requireStackFor(parts); // the engine makes an automaton by recursion over them
    if (isInSubset)
        SubsetText(fInternalSubset, *fDocument).addElement(declaration);
}

void PelXercesDTDHandler::attDef(const xercesc::DTDElementDecl& element,
                                 const xercesc::DTDAttDef& attribute, bool isIgnored) {
    limits.addEvent();
    limits.require(XMLString::stringLen(attribute.getEnumeration()) <=
                       limits.getBounds().listCharacters,
                   u"too many values for an attribute");
    if (!isIgnored)
        names.addDeclared(element, attribute);
    if (!isIgnored && attribute.getType() == xercesc::XMLAttDef::ID)
        declaredIds.emplace(element.getFullName(), attribute.getFullName());
    requirePairs(attribute.getValue());
    if (isInSubset && !isIgnored)
        SubsetText(fInternalSubset, *fDocument).addAttribute(attribute);
}

// In defaults only those documents miss an entity that have to be valid in any case.
void PelXercesDTDHandler::startAttList(const xercesc::DTDElementDecl& element) {
    XercesDOMParser::startAttList(element);
    if (getValidationScheme() == Val_Always)
        return;
    mayBeDeclared = !getScanner()->getHasNoDTD();
    getScanner()->setHasNoDTD(true);
    memory.setListScanner(getScanner());
}

// The engine makes nodes of all defaults of the element anew, those of earlier lists too, each at
// its place among the others.
void PelXercesDTDHandler::endAttList(const xercesc::DTDElementDecl& element) {
    limits.addEvent();
    if (element.hasAttDefs()) {
        const xercesc::XMLAttDefList& list = element.getAttDefList();
        std::size_t steps = 0;
        std::size_t defaults = 0;
        for (XMLSize_t i = 0; i < list.getAttDefCount(); ++i) {
            const XMLCh* const value = list.getAttDef(i).getValue();
            steps += declaredSteps;
            if (value != nullptr)
                steps += listedSteps + ++defaults + XMLString::stringLen(value);
        }
        limits.addWork(Work::declarations, steps);
        names.addList(element);
    }
    growNameTable(1);
    if (mayBeDeclared)
        getScanner()->setHasNoDTD(false);
    memory.setListScanner(nullptr);
    XercesDOMParser::endAttList(element);
}

// As the engine does it, but for the text.
void PelXercesDTDHandler::entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter,
                                     bool isIgnored) {
    limits.addWork(Work::declarations, declarationSteps);
    names.addDeclared(isParameter ? Names::Kind::parameterEntity : Names::Kind::entity,
                      entity.getName(), !isIgnored);
    growNameTable(1);
    limits.addEntity(entity.getValueLen());
    requirePairs(entity.getValue());
    requirePairs(entity.getSystemId());
    if (!isInSubset) {
        XercesDOMParser::entityDecl(entity, isParameter, isIgnored);
        return;
    }
    // Those that XML itself declares count as ignored too, and are no second ones.
    xercesc::DOMNamedNodeMap& known = *fDocumentType->getEntities();
    if (!isIgnored || known.getNamedItem(entity.getName()) == nullptr) {
        auto* const node =
            static_cast<xercesc::DOMEntityImpl*>(fDocument->createEntity(entity.getName()));
        node->setNotationName(entity.getNotationName());
        keep(known, *node, entity);
        SubsetText(fInternalSubset, *fDocument).addEntity(entity, isParameter);
    }
    if (isIgnored)
        forget(const_cast<xercesc::DTDEntityDecl&>(entity));
}

void PelXercesDTDHandler::notationDecl(const xercesc::XMLNotationDecl& notation, bool isIgnored) {
    limits.addWork(Work::declarations, declarationSteps);
    names.addDeclared(Names::Kind::notation, notation.getName(), !isIgnored);
    growNameTable(1);
    requirePairs(notation.getSystemId());
    if (!isInSubset) {
        XercesDOMParser::notationDecl(notation, isIgnored);
        return;
    }
    if (isIgnored)
        return;
    auto* const node =
        static_cast<xercesc::DOMNotationImpl*>(fDocument->createNotation(notation.getName()));
    keep(*fDocumentType->getNotations(), *node, notation);
    SubsetText(fInternalSubset, *fDocument).addNotation(notation);
}

// The engine keeps the names of a tree in a table that does not grow.
void PelXercesDTDHandler::growNameTable(std::size_t more) {
    while (PelXercesFields::areKnown() &&
           names.countInTree() + more > PelXercesFields::namePlacesOf(*fDocument))
        PelXercesFields::growNameTable(*fDocument);
}

// The scanner looks for the other half of a surrogate pair everywhere but at the end of a literal.
void PelXercesDTDHandler::requirePairs(const XMLCh* literal) {
    const XMLSize_t length = XMLString::stringLen(literal);
    if (length > 0 && PelCharacters::isHighSurrogate(literal[length - 1]))
        getScanner()->emitError(xercesc::XMLErrs::Expected2ndSurrogateChar);
}
