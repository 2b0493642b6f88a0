// SPDX-License-Identifier: MIT
#include "services/PelXercesTreeBuilder.h"

#include "xerces/PelXercesMemory.h"

#include <utility>

PelXercesTreeBuilder::PelXercesTreeBuilder(PelXercesReadMemory& memory, Road ownRoad)
    : XercesDOMParser(nullptr, &memory), road(ownRoad) {
}

// The engine makes the document with the parser's memory manager.
void PelXercesTreeBuilder::startDocument() {
    xercesc::MemoryManager* const own = std::exchange(fMemoryManager, &PelXercesMemory::get());
    XercesDOMParser::startDocument();
    fMemoryManager = own;
}

#if QRNDOM_FAST_READ_IS_ON

#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMCasts.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>

using xercesc::DOMAttrImpl;
using xercesc::DOMChildNode;
using xercesc::DOMElementImpl;
using xercesc::DOMMemoryManager;
using xercesc::DOMNode;
using xercesc::DOMTextImpl;

namespace {

// The sibling links of any child. Elements and texts, most of all children, need no run-time cast.
DOMChildNode& linksOf(DOMNode* child) {
    switch (child->getNodeType()) {
    case DOMNode::ELEMENT_NODE:
        return static_cast<DOMElementImpl*>(child)->fChild;
    case DOMNode::TEXT_NODE:
        return static_cast<DOMTextImpl*>(child)->fChild;
    default:
        return *xercesc::castToChildImpl(child);
    }
}

// Makes a new node the last child of a parent, as the engine's appendChildFast does.
template <class Parent, class Child>
void link(Parent& parent, Child& child) {
    DOMNode*& first = parent.fParent.fFirstChild;
    child.fNode.fOwnerNode = &parent;
    child.fNode.isOwned(true);
    if (first == nullptr) {
        first = &child;
        child.fNode.isFirstChild(true);
        child.fChild.previousSibling = &child;
        return;
    }
    // The first child's link to a previous sibling leads to the last child.
    DOMNode*& last = linksOf(first).previousSibling;
    linksOf(last).nextSibling = &child;
    child.fChild.previousSibling = last;
    last = &child;
}

} // namespace

void PelXercesTreeBuilder::startElement(const xercesc::XMLElementDecl& declaration,
                                        unsigned int uriId, const XMLCh* prefix,
                                        const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                        XMLSize_t count, bool isEmpty, bool isRoot) {
    const bool isPlain = road == Road::fast && fWithinElement && !declaration.hasAttDefs() &&
                         fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE;
    if (!isPlain) {
        XercesDOMParser::startElement(declaration, uriId, prefix, attributes, count, isEmpty,
                                      isRoot);
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
        link(*attribute, *new (fDocument, DOMMemoryManager::TEXT_OBJECT)
                             DOMTextImpl(fDocument, source.getValue()));
        attribute->setSpecified(source.getSpecified());
    }
    link(*static_cast<DOMElementImpl*>(fCurrentParent), *element);
    fCurrentNode = element;
    if (!isEmpty)
        fCurrentParent = element;
}

void PelXercesTreeBuilder::endElement(const xercesc::XMLElementDecl& declaration,
                                      unsigned int uriId, bool isRoot, const XMLCh* prefix) {
    if (road == Road::fast && fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE) {
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

void PelXercesTreeBuilder::docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) {
    const bool isNewText = fWithinElement && !isCdata &&
                           fCurrentNode->getNodeType() != DOMNode::TEXT_NODE &&
                           fCurrentParent->getNodeType() == DOMNode::ELEMENT_NODE;
    if (road != Road::fast || !isNewText) {
        XercesDOMParser::docCharacters(text, length, isCdata);
        return;
    }
    auto* const node =
        new (fDocument, DOMMemoryManager::TEXT_OBJECT) DOMTextImpl(fDocument, text, length);
    link(*static_cast<DOMElementImpl*>(fCurrentParent), *node);
    fCurrentNode = node;
}

#endif
