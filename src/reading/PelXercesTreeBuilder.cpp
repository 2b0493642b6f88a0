// SPDX-License-Identifier: MIT
#include "reading/PelXercesTreeBuilder.h"

#include "reading/PelXercesReadMemory.h"
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
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include <utility>

using xercesc::DOMAttrImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMMemoryManager;
using xercesc::DOMNode;
using xercesc::DOMTextImpl;
using xercesc::XMLString;

namespace {

constexpr std::size_t longText = 0x8000;

constexpr std::size_t maxIds = 500'000;

// A default attribute takes the memory of many characters, whatever its value.
constexpr std::size_t defaultCost = 64;
constexpr std::size_t listedCost = 16;

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
    : XercesDOMParser(nullptr, &readMemory), memory(readMemory), limits(memory.getLimits()),
      road(ownRoad) {
    memory.getStreams().setReaders(getScanner()->getReaderMgr());
}

void PelXercesTreeBuilder::error(unsigned int code, const XMLCh* domain,
                                 xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* text,
                                 const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
                                 XMLFileLoc column) {
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
    xercesc::MemoryManager* const own = std::exchange(fMemoryManager, &PelXercesMemory::get());
    XercesDOMParser::startDocument();
    fMemoryManager = own;
}

void PelXercesTreeBuilder::startElement(const xercesc::XMLElementDecl& declaration,
                                        unsigned int uriId, const XMLCh* prefix,
                                        const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                        XMLSize_t count, bool isEmpty, bool isRoot) {
    endText();
    limits.openElement();
    if (isRoot)
        limits.watchMemory(true); // from here on the engine clears nothing up before the end
    if (isRoot && getValidationScheme() == Val_Never)
        ScannerAccess::requireEntities(*getScanner());
    const bool isPlain = road != Road::engine && fWithinElement && !declaration.hasAttDefs() &&
                         fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE;
    for (XMLSize_t i = 0; i < count; ++i)
        requirePairs(attributes.elementAt(i)->getValue());
    if (!isPlain) {
        forgetIds(attributes, count);
        XercesDOMParser::startElement(declaration, uriId, prefix, attributes, count, isEmpty,
                                      isRoot);
        reportElement();
        return;
    }
    auto* const element = new (fDocument, DOMMemoryManager::ELEMENT_OBJECT)
        DOMElementImpl(fDocument, declaration.getFullName());
    if (count > 0)
        element->fAttributes->reserve(count);
    for (XMLSize_t i = 0; i < count; ++i) {
        const xercesc::XMLAttr& source = *attributes.elementAt(i);
        auto* const attribute =
            new (fDocument, DOMMemoryManager::ATTR_OBJECT) DOMAttrImpl(fDocument, source.getName());
        element->fAttributes->setNamedItemFast(attribute);
        PelXercesLinks::append(*attribute, *new (fDocument, DOMMemoryManager::TEXT_OBJECT)
                                               DOMTextImpl(fDocument, source.getValue()));
        attribute->setSpecified(source.getSpecified());
        limits.addName(attribute->fName);
    }
    limits.addName(element->fName);
    PelXercesLinks::append(*static_cast<DOMElementImpl*>(fCurrentParent), *element);
    fCurrentNode = element;
    if (isEmpty)
        limits.closeElement();
    else
        fCurrentParent = element;
}

void PelXercesTreeBuilder::endElement(const xercesc::XMLElementDecl& declaration,
                                      unsigned int uriId, bool isRoot, const XMLCh* prefix) {
    endText();
    limits.closeElement();
    if (road != Road::engine && fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE) {
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
    const bool isText = road != Road::engine && fWithinElement && !isCdata &&
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
    XercesDOMParser::docComment(comment);
}

void PelXercesTreeBuilder::docPI(const XMLCh* target, const XMLCh* data) {
    endText();
    XercesDOMParser::docPI(target, data);
}

// The engine's table of IDs, which nothing here asks, fails when it has to hold some 720,000. The
// parser has validated them by now.
void PelXercesTreeBuilder::forgetIds(const Attributes& attributes, XMLSize_t count) {
    for (XMLSize_t i = 0; i < count; ++i) {
        auto* const attribute = const_cast<xercesc::XMLAttr*>(attributes.elementAt(i));
        if (attribute->getType() == xercesc::XMLAttDef::ID && ++ids > maxIds)
            attribute->setType(xercesc::XMLAttDef::CData);
    }
}

// Of an element that the engine made.
void PelXercesTreeBuilder::reportElement() {
    limits.addName(fCurrentNode->getNodeName());
    const xercesc::DOMNamedNodeMap* const attributes = fCurrentNode->getAttributes();
    for (XMLSize_t i = attributes->getLength(); i-- > 0;) {
        const auto* const attribute = static_cast<DOMAttrImpl*>(attributes->item(i));
        limits.addName(attribute->getName());
        if (!attribute->getSpecified())
            limits.addExpansion(defaultCost + XMLString::stringLen(attribute->getValue()));
    }
}

void PelXercesTreeBuilder::startEntityReference(const xercesc::XMLEntityDecl& entity) {
    limits.addReferenceTo(entity.getValueLen());
    XercesDOMParser::startEntityReference(entity);
}

void PelXercesTreeBuilder::elementDecl(const xercesc::DTDElementDecl& declaration,
                                       bool /*isIgnored*/) {
    limits.addDeclaration(declaration.getId());
    limits.addContentModel(declaration.getContentSpec());
    if (isInSubset)
        subset.addElement(declaration);
}

void PelXercesTreeBuilder::attDef(const xercesc::DTDElementDecl& /*element*/,
                                  const xercesc::DTDAttDef& attribute, bool isIgnored) {
    limits.addChoice(attribute.getEnumeration());
    requirePairs(attribute.getValue());
    if (isInSubset && !isIgnored)
        subset.addAttribute(attribute);
}

// The engine goes through all attributes of the element, those of earlier lists too, and makes
// nodes of the defaults among them.
void PelXercesTreeBuilder::endAttList(const xercesc::DTDElementDecl& element) {
    limits.addDeclaration(element.getId());
    if (element.hasAttDefs())
        limits.addExpansion(listedCost * element.getAttDefList().getAttDefCount());
    XercesDOMParser::endAttList(element);
}

// As the engine does it, but for the text.
void PelXercesTreeBuilder::entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter,
                                      bool isIgnored) {
    limits.addDeclaration(entity.getId());
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
    limits.addDeclaration(notation.getId());
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
    auto* const node = new (fDocument, DOMMemoryManager::TEXT_OBJECT)
        DOMTextImpl(fDocument, pendingText.data(), pendingText.size());
    PelXercesLinks::append(*static_cast<DOMElementImpl*>(fCurrentParent), *node);
    fCurrentNode = node;
    pendingText.clear();
}
