// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesTreeBuilder.h"

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesAttributeOrder.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <utility>

using Work = PelXercesReadLimits::Work;
using xercesc::DOMAttrImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMNode;
using xercesc::DOMTextImpl;
using xercesc::XMLString;

namespace {

constexpr std::size_t longText = 0x8000;
constexpr std::size_t longTag = 64;

// What the engine takes to make an attribute of a default, in steps.
constexpr std::size_t defaultSteps = 1000;

} // namespace

PelXercesTreeBuilder::PelXercesTreeBuilder(PelXercesReadMemory& readMemory, bool areFastNodesMade)
    : PelXercesDTDHandler(readMemory), isFast(areFastNodesMade), report(limits) {
}

void PelXercesTreeBuilder::XMLDecl(const XMLCh* version, const XMLCh* encoding,
                                   const XMLCh* standalone, const XMLCh* actualEncoding) {
    isNotStandalone = XMLString::equals(standalone, u"no");
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
    if (isFast && PelXercesFields::areKnown())
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
    names.addStartTag(attributes, count);
    for (XMLSize_t i = 0; i < count; ++i)
        requirePairs(attributes.elementAt(i)->getValue());
    growNameTable(count + 1);
    addDefaults(declaration, attributes, count);
    const DOMNode* const parent = fCurrentParent;
    if (!makeElement(declaration, attributes, count, isEmpty))
        makeEnginesElement(declaration, uriId, prefix, attributes, count, isEmpty, isRoot);
    noteMarkup(parent);
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
    for (XMLSize_t i = 0; i < count; ++i)
        if (auto* const attribute = static_cast<DOMElementImpl*>(fCurrentNode)
                                        ->getAttributeNode(attributes.elementAt(i)->getName()))
            PelXercesAttributeOrder::setNumber(*attribute, static_cast<std::uint32_t>(i + 1));
    if (fast)
        fast->learn(declaration, *static_cast<DOMElementImpl*>(fCurrentNode));
}

void PelXercesTreeBuilder::endElement(const xercesc::XMLElementDecl& declaration,
                                      unsigned int uriId, bool isRoot, const XMLCh* prefix) {
    endText();
    if (fast && fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE) {
        auto& node = PelXercesFields::nodeOf(*static_cast<DOMElementImpl*>(fCurrentParent));
        DOMNode* const parent = PelXercesFields::ownerOf(node);
        if (node.isOwned() && parent->getNodeType() == DOMNode::ELEMENT_NODE) {
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
    if (!isCdata && length > 0)
        noteText();
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
    if (isCdata)
        noteMarkup(fCurrentParent);
}

void PelXercesTreeBuilder::docComment(const XMLCh* comment) {
    endText();
    limits.addEvent();
    XercesDOMParser::docComment(comment);
    noteMarkup(fCurrentParent);
}

// As the engine does it, but for a check of the target that knows no characters beyond the basic
// plane. The scanner has checked it.
void PelXercesTreeBuilder::docPI(const XMLCh* target, const XMLCh* data) {
    endText();
    limits.addEvent();
    auto* const instruction =
        new (fDocument, xercesc::DOMMemoryManager::PROCESSING_INSTRUCTION_OBJECT)
            xercesc::DOMProcessingInstructionImpl(fDocument, target, data);
    xercesc::castToParentImpl(fCurrentParent)->appendChildFast(instruction);
    fCurrentNode = instruction;
    noteMarkup(fCurrentParent);
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
    if (areReferencesNoted && referenceDepth++ == 0) {
        brought.emplace_back();
        referenceParent = fCurrentParent;
    }
    XercesDOMParser::startEntityReference(entity);
}

void PelXercesTreeBuilder::endEntityReference(const xercesc::XMLEntityDecl& entity) {
    if (areReferencesNoted)
        --referenceDepth;
    XercesDOMParser::endEntityReference(entity);
}

// Character data of a reference itself, not of an element that it brings.
void PelXercesTreeBuilder::noteText() {
    if (referenceDepth == 0 || fCurrentParent != referenceParent)
        return;
    PelXercesBroughtNodes& nodes = brought.back();
    nodes.beginsWithText = nodes.beginsWithText || nodes.lastMarkup == nullptr;
    nodes.endsWithText = true;
}

// The current node is a child of `parent` and no text.
void PelXercesTreeBuilder::noteMarkup(const DOMNode* parent) {
    if (referenceDepth == 0 || parent != referenceParent)
        return;
    brought.back().lastMarkup = fCurrentNode;
    brought.back().endsWithText = false;
}

void PelXercesTreeBuilder::endText() {
    if (pendingText.empty())
        return;
    DOMTextImpl& node = fast->makeText(pendingText.data(), pendingText.size());
    PelXercesLinks::append(*static_cast<DOMElementImpl*>(fCurrentParent), node);
    fCurrentNode = &node;
    pendingText.clear();
}
