// SPDX-License-Identifier: MIT
#include "reading/PelXercesTreeBuilder.h"

#include "core/PelPlatform.h"
#include "reading/PelXercesModelCost.h"
#include "reading/PelXercesReadMemory.h"
#include "reading/PelXercesValidator.h"
#include "xerces/PelXercesLinks.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentTypeImpl.hpp>
#include <xercesc/dom/impl/DOMEntityImpl.hpp>
#include <xercesc/dom/impl/DOMNotationImpl.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

using Names = PelXercesNameLimits;
using Work = PelXercesReadLimits::Work;
using xercesc::DOMAttrImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMNode;
using xercesc::DOMTextImpl;
using xercesc::XMLString;

namespace {

constexpr std::size_t longText = 0x8000;
constexpr std::size_t longTag = 64;

// What the engine takes for each, in steps: to look whether a declared attribute is there; to make
// one of a default; to make one for the document type; to take up an entity or a notation; to find
// a file.
constexpr std::size_t declaredSteps = 15;
constexpr std::size_t defaultSteps = 1000;
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

// Without validation the engine drops references to entities that are declared nowhere, as soon as
// there is a DTD that might declare them.
struct ScannerAccess : xercesc::XMLScanner {
    static void requireEntities(xercesc::XMLScanner& scanner) {
        scanner.*& ScannerAccess::fHasNoDTD = true;
    }
};

// Where the engine's own words say little.
const XMLCh* inPlainWords(unsigned int code, const XMLCh* words) {
    switch (code) {
    case xercesc::XMLErrs::InvalidDocumentStructure:
        return u"this is not XML: a document begins with a declaration or an element";
    case xercesc::XMLErrs::ExpectedCommentOrPI:
        return u"only comments and processing instructions may follow the root element";
    default:
        return words;
    }
}

} // namespace

PelXercesTreeBuilder::PelXercesTreeBuilder(PelXercesReadMemory& readMemory, Road ownRoad)
    : XercesDOMParser(new (&readMemory) PelXercesValidator(readMemory), &readMemory),
      memory(readMemory), limits(memory.getLimits()), names(memory.getNames()), road(ownRoad),
      report(limits) {
    getScanner()->getValidator()->setErrorReporter(this); // the engine does so for its own only
    memory.getStreams().setReaders(getScanner()->getReaderMgr());
}

void PelXercesTreeBuilder::error(unsigned int code, const XMLCh* domain,
                                 xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* text,
                                 const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
                                 XMLFileLoc column) {
    limits.addReport(XMLString::stringLen(text));
    const bool isOfScanner = XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain);
    XercesDOMParser::error(code, domain, type, isOfScanner ? inPlainWords(code, text) : text,
                           systemId, publicId, line, column);
}

void PelXercesTreeBuilder::reportHere(const XMLCh* text) {
    xercesc::ReaderMgr::LastExtEntityInfo place;
    getScanner()->getReaderMgr()->getLastExtEntityInfo(place);
    XercesDOMParser::error(0, xercesc::XMLUni::fgZeroLenString, ErrType_Fatal, text, place.systemId,
                           place.publicId, place.lineNumber, place.colNumber);
}

void PelXercesTreeBuilder::XMLDecl(const XMLCh* version, const XMLCh* encoding,
                                   const XMLCh* standalone, const XMLCh* actualEncoding) {
    try {
        XercesDOMParser::XMLDecl(version, encoding, standalone, actualEncoding);
    } catch (const xercesc::DOMException&) { // which knows no place
        reportHere(u"only the versions 1.0 and 1.1 of XML are read");
        throw;
    }
}

// The engine makes the document with the parser's memory manager.
void PelXercesTreeBuilder::startDocument() {
    xercesc::MemoryManager* const own = std::exchange(fMemoryManager, &PelXercesTreeMemory::get());
    XercesDOMParser::startDocument();
    fMemoryManager = own;
    if (road != Road::engine && PelPlainNodes::areKnown())
        fast.emplace(*fDocument, names);
}

void PelXercesTreeBuilder::startElement(const xercesc::XMLElementDecl& declaration,
                                        unsigned int uriId, const XMLCh* prefix,
                                        const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                        XMLSize_t count, bool isEmpty, bool isRoot) {
    endText();
    limits.addEvent();
    if (isRoot)
        limits.watchMemory(true); // from here on the engine clears nothing up before the end
    if (isRoot && getValidationScheme() == Val_Never)
        ScannerAccess::requireEntities(*getScanner());
    names.addStartTag(attributes, count);
    for (XMLSize_t i = 0; i < count; ++i)
        requirePairs(attributes.elementAt(i)->getValue());
    growNameTable(count + 1);
    addDefaults(declaration, attributes, count);
    if (!makeElement(declaration, attributes, count, isEmpty))
        makeEnginesElement(declaration, uriId, prefix, attributes, count, isEmpty, isRoot);
}

// False where the engine has to make it.
bool PelXercesTreeBuilder::makeElement(const xercesc::XMLElementDecl& declaration,
                                       const Attributes& attributes, XMLSize_t count,
                                       bool isEmpty) {
    if (!fast || !fWithinElement || fCurrentParent->getNodeType() != DOMNode::ELEMENT_NODE)
        return false;
    DOMElementImpl* const element = fast->makeElement(declaration, attributes, count);
    if (element == nullptr)
        return false;
    PelXercesLinks::append(*static_cast<DOMElementImpl*>(fCurrentParent), *element);
    fCurrentNode = element;
    if (!isEmpty)
        fCurrentParent = element;
    return true;
}

void PelXercesTreeBuilder::makeEnginesElement(const xercesc::XMLElementDecl& declaration,
                                              unsigned int uriId, const XMLCh* prefix,
                                              const Attributes& attributes, XMLSize_t count,
                                              bool isEmpty, bool isRoot) {
    Attributes sorted(count > longTag ? count : 1, false, fMemoryManager);
    if (count > longTag)
        sort(attributes, count, sorted);
    forgetIds(attributes, count);
    XercesDOMParser::startElement(declaration, uriId, prefix, count > longTag ? sorted : attributes,
                                  count, isEmpty, isRoot);
    reportElement();
    if (fast)
        fast->learn(declaration, *static_cast<DOMElementImpl*>(fCurrentNode));
}

void PelXercesTreeBuilder::endElement(const xercesc::XMLElementDecl& declaration,
                                      unsigned int uriId, bool isRoot, const XMLCh* prefix) {
    endText();
    if (fast && fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE) {
        const auto* const element = static_cast<DOMElementImpl*>(fCurrentParent);
        DOMNode* const parent = element->fNode.fOwnerNode;
        if (element->fNode.isOwned() && parent->getNodeType() == DOMNode::ELEMENT_NODE) {
            fCurrentNode = fCurrentParent;
            fCurrentParent = parent;
            return;
        }
    }
    XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
}

// A text arrives in pieces, one for each reference in it and for each buffer of the scanner. Each
// growth of a node's buffer makes the engine search all the buffers of the document, so the node is
// made at the text's end. Long texts, of which there are few, grow by themselves from there.
void PelXercesTreeBuilder::docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) {
    limits.addEvent();
    const bool isText = fast && fWithinElement && !isCdata &&
                        fCurrentNode->getNodeType() != DOMNode::TEXT_NODE &&
                        fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE;
    if (isText) {
        pendingText.append(text, length);
        if (pendingText.size() >= longText)
            endText();
        return;
    }
    endText();
    XercesDOMParser::docCharacters(text, length, isCdata);
}

void PelXercesTreeBuilder::docComment(const XMLCh* comment) {
    endText();
    limits.addEvent();
    XercesDOMParser::docComment(comment);
}

void PelXercesTreeBuilder::docPI(const XMLCh* target, const XMLCh* data) {
    endText();
    limits.addEvent();
    XercesDOMParser::docPI(target, data);
}

// The engine's table of IDs, which nothing here asks, fails when it has to hold some 720,000, and
// many can be made to share a place in it. The parser has validated them by now.
void PelXercesTreeBuilder::forgetIds(const Attributes& attributes, XMLSize_t count) {
    for (XMLSize_t i = 0; i < count; ++i) {
        auto* const attribute = const_cast<xercesc::XMLAttr*>(attributes.elementAt(i));
        if (attribute->getType() == xercesc::XMLAttDef::ID)
            attribute->setType(xercesc::XMLAttDef::CData);
    }
}

// The scanner and the engine's builder go through all declared attributes for each element, and
// make nodes of defaults.
void PelXercesTreeBuilder::addDefaults(const xercesc::XMLElementDecl& declaration,
                                       const Attributes& attributes, XMLSize_t count) {
    if (!declaration.hasAttDefs())
        return;
    std::size_t steps = declaredSteps * declaration.getAttDefList().getAttDefCount();
    for (XMLSize_t i = 0; i < count; ++i) {
        const xercesc::XMLAttr& attribute = *attributes.elementAt(i);
        if (attribute.getSpecified())
            continue;
        const std::size_t length = XMLString::stringLen(attribute.getValue());
        steps += defaultSteps + length;
        limits.addExpansion(length);
    }
    limits.addWork(Work::attributes, steps);
}

// The tree keeps attributes sorted, in an array: in any other order each would move those behind
// it.
void PelXercesTreeBuilder::sort(const Attributes& attributes, XMLSize_t count, Attributes& sorted) {
    std::vector<xercesc::XMLAttr*> list(count);
    for (XMLSize_t i = 0; i < count; ++i)
        list[i] = const_cast<xercesc::XMLAttr*>(attributes.elementAt(i));
    std::sort(list.begin(), list.end(), [](const auto* left, const auto* right) {
        return XMLString::compareString(left->getName(), right->getName()) < 0;
    });
    for (xercesc::XMLAttr* const attribute : list)
        sorted.addElement(attribute);
}

// The engine keeps the names of a tree in a table that does not grow.
void PelXercesTreeBuilder::growNameTable(std::size_t more) {
    while (PelXercesLinks::areKnown && names.countInTree() + more > namePlaces)
        namePlaces = PelXercesLinks::growNameTable(*fDocument);
}

// Of an element that the engine made.
void PelXercesTreeBuilder::reportElement() {
    names.addElement(fCurrentNode->getNodeName());
    const xercesc::DOMNamedNodeMap* const attributes = fCurrentNode->getAttributes();
    for (XMLSize_t i = attributes->getLength(); i-- > 0;) {
        const auto* const attribute = static_cast<DOMAttrImpl*>(attributes->item(i));
        names.addAttribute(attribute->getName());
    }
}

void PelXercesTreeBuilder::startEntityReference(const xercesc::XMLEntityDecl& entity) {
    limits.addReferenceTo(entity.getValueLen());
    XercesDOMParser::startEntityReference(entity);
}

void PelXercesTreeBuilder::elementDecl(const xercesc::DTDElementDecl& declaration,
                                       bool /*isIgnored*/) {
    limits.addEvent();
    names.addDeclaredElements();
    requireSmall(declaration.getContentSpec());
    if (isInSubset)
        subset.addElement(declaration);
}

// The engine makes an automaton of a model by recursion over its parts.
void PelXercesTreeBuilder::requireSmall(const xercesc::ContentSpecNode* model) {
    constexpr std::size_t few = 200;
    constexpr std::size_t stackPerPart = 256;
    const std::size_t most = limits.getBounds().modelParts;
    const std::size_t parts = PelXercesModelCost::countParts(model, most + 1);
    limits.require(parts <= most, u"too large a content model");
    limits.require(parts <= few || parts * stackPerPart <= PelPlatform::stackLeft(),
                   u"too large a content model for the stack of this thread");
}

void PelXercesTreeBuilder::attDef(const xercesc::DTDElementDecl& element,
                                  const xercesc::DTDAttDef& attribute, bool isIgnored) {
    limits.addEvent();
    limits.require(XMLString::stringLen(attribute.getEnumeration()) <=
                       limits.getBounds().listCharacters,
                   u"too many values for an attribute");
    if (!isIgnored)
        names.addDeclared(element, attribute);
    requirePairs(attribute.getValue());
    if (isInSubset && !isIgnored)
        subset.addAttribute(attribute);
}

// The engine makes nodes of all defaults of the element anew, those of earlier lists too, each at
// its place among the others.
void PelXercesTreeBuilder::endAttList(const xercesc::DTDElementDecl& element) {
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
    XercesDOMParser::endAttList(element);
}

// As the engine does it, but for the text.
void PelXercesTreeBuilder::entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter,
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
        subset.addEntity(entity, isParameter);
    }
    if (isIgnored)
        forget(const_cast<xercesc::DTDEntityDecl&>(entity));
}

void PelXercesTreeBuilder::notationDecl(const xercesc::XMLNotationDecl& notation, bool isIgnored) {
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
    subset.addNotation(notation);
}

// The engine moves the rest of a path for each step up in it and for each escape.
xercesc::InputSource*
PelXercesTreeBuilder::resolveEntity(xercesc::XMLResourceIdentifier* resource) {
    const std::u16string_view name = resource->getSystemId();
    const auto costly = std::count_if(name.begin(), name.end(),
                                      [](XMLCh unit) { return unit == u'/' || unit == u'%'; });
    limits.addWork(Work::files, fileSteps + static_cast<std::size_t>(costly) * name.size());
    return XercesDOMParser::resolveEntity(resource);
}

void PelXercesTreeBuilder::doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* publicId,
                                       const XMLCh* systemId, bool hasSubset, bool hasExternal) {
    if (areTypesRefused) {
        reportHere(u"documents with a document type are refused, as it was set");
        throw xercesc::XMLErrs::NoError; // as the engine ends a parse after a fatal error
    }
    requirePairs(systemId);
    hasExternalSubset = hasExternal;
    memory.getEntities().expectSubset(hasExternal && !hasSubset);
    XercesDOMParser::doctypeDecl(root, publicId, systemId, hasSubset, hasExternal);
}

void PelXercesTreeBuilder::startIntSubset() {
    isInSubset = true;
    subset.setVersion11(XMLString::equals(fDocument->getXmlVersion(), u"1.1"));
    XercesDOMParser::startIntSubset();
}

void PelXercesTreeBuilder::endIntSubset() {
    isInSubset = false;
    memory.getEntities().expectSubset(hasExternalSubset);
    XercesDOMParser::endIntSubset();
}

void PelXercesTreeBuilder::doctypeComment(const XMLCh* comment) {
    if (isInSubset)
        subset.addComment(comment);
}

// The scanner looks for the other half of a surrogate pair everywhere but at the end of a literal.
void PelXercesTreeBuilder::requirePairs(const XMLCh* literal) {
    const XMLSize_t length = XMLString::stringLen(literal);
    if (length > 0 && (literal[length - 1] & 0xFC00) == 0xD800)
        getScanner()->emitError(xercesc::XMLErrs::Expected2ndSurrogateChar);
}

void PelXercesTreeBuilder::endText() {
    if (pendingText.empty())
        return;
    DOMTextImpl& node = fast->makeText(pendingText.data(), pendingText.size());
    PelXercesLinks::append(*static_cast<DOMElementImpl*>(fCurrentParent), node);
    fCurrentNode = &node;
    pendingText.clear();
}
