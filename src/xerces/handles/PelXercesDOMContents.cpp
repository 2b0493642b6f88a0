// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMContents.h"

#include "xerces/edit/PelXercesAttributes.h"
#include "xerces/edit/PelXercesContent.h"
#include "xerces/edit/PelXercesEditing.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/handles/PelXercesCursor.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/handles/PelXercesDOMNodeList.h"
#include "xerces/tree/PelXercesAttributeOrder.h"
#include "xerces/tree/PelXercesRules.h"
#include "xerces/tree/PelXercesWalk.h"

#include <qrndom/PelDOMNodeList.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMText.hpp>

#include <string_view>

using xercesc::DOMElement;

namespace {

// An object over a new node without a parent, for the caller to own; null when the content has no
// node.
template <class Make, class... Texts>
PelDOMNodeImp* create(const PelDOMNodeContentImp& content, Make make, const Texts&... texts) {
    const PelXercesNodeRef* const document = PelXercesDOMNode::of(content);
    if (document == nullptr)
        return nullptr;
    PelXercesTree& tree = document->getTree();
    tree.orphans.prepare();
    xercesc::DOMNode& made = (tree.nodes.*make)(texts.view().data()...);
    tree.orphans.add(made);
    return PelXercesDOMNode::makeUntraced(*document, &made);
}

// The engine element of a content object; null when the content has no owner.
DOMElement* elementOf(const PelDOMNodeContentImp& content) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(content);
    return node != nullptr ? node->as<DOMElement>() : nullptr;
}

xercesc::DOMNamedNodeMap* attributesOf(const PelDOMNodeContentImp& content) {
    return callImp(elementOf(content), &DOMElement::getAttributes);
}

// The attribute at a position, or of a name; null when there is none.
xercesc::DOMNode* attributeAt(const PelDOMNodeContentImp& content, long index) {
    return index >= 0 ? callImp(attributesOf(content), &xercesc::DOMNamedNodeMap::item,
                                static_cast<XMLSize_t>(index))
                      : nullptr;
}
xercesc::DOMNode* attributeNamed(const PelDOMNodeContentImp& content, const PelString& name) {
    return callImp(attributesOf(content), &xercesc::DOMNamedNodeMap::getNamedItem,
                   name.view().data());
}

PelString valueOf(const xercesc::DOMNode* attribute) {
    return attribute != nullptr ? PelXercesLinks::valueOf(*attribute) : PelString();
}

// Makes a change to the content's node with texts, none of which may be empty.
template <class Change, class... Texts>
PelDOM::Error apply(Change change, const PelDOMNodeContentImp& content, const Texts&... texts) {
    if (((PelDOM::checkString(texts, 0) != PelDOM::SUCCESS) || ...))
        return PelDOM::INVALID_VALUE;
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(content);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    change(*node, texts.view().data()...);
    return PelDOM::SUCCESS;
}

} // namespace

PelDOMElement PelXercesDOMDocument::getDocumentElement() {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOMElement();
    return PelDOMElement(PelXercesDOMNode::make(*node, node->getDocument()->getDocumentElement()));
}

// A name that XML forbids ends with the engine's exception.
PelDOMElement PelXercesDOMDocument::createElement(const PelString& tagName) {
    if (const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this))
        node->getTree().nodes.requireName(tagName.view().data());
    return PelDOMElement(create(*this, &PelXercesNodePool::makeElement, tagName));
}

PelDOMText PelXercesDOMDocument::createTextNode(const PelString& text) {
    return PelDOMText(create(*this, &PelXercesNodePool::makeText, text));
}

PelDOMNode PelXercesDOMDocument::importNode(const PelDOMNode& source, bool deep) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    const PelXercesNodeRef from = PelXercesDOMNode::of(source);
    if (node == nullptr || !from)
        return PelDOMNode();
    return PelDOMNode(PelXercesDOMNode::makeUntraced(PelXercesContent::copy(*node, from, deep)));
}

PelDOMNode PelXercesDOMDocument::createComment(const PelString& data) {
    if (!PelXercesRules::isComment(data.view()))
        return PelDOMNode();
    return PelDOMNode(create(*this, &PelXercesNodePool::makeComment, data));
}

PelDOMNode PelXercesDOMDocument::createCDATASection(const PelString& data) {
    if (!PelXercesRules::isCDATA(data.view()))
        return PelDOMNode();
    return PelDOMNode(create(*this, &PelXercesNodePool::makeCDATASection, data));
}

PelDOMNode PelXercesDOMDocument::createProcessingInstruction(const PelString& target,
                                                             const PelString& data) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr ||
        !PelXercesRules::isInstructionTarget(target.view(), *node->getDocument()) ||
        !PelXercesRules::isInstruction(data.view()))
        return PelDOMNode();
    return PelDOMNode(create(*this, &PelXercesNodePool::makeInstruction, target, data));
}

PelString PelXercesDOMDocument::getInputEncoding() {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    const XMLCh* const encoding =
        node != nullptr ? node->getDocument()->getInputEncoding() : nullptr;
    return encoding != nullptr ? PelString(encoding) : PelString();
}

PelDOM::Error PelXercesDOMText::setValue(const PelString& value) {
    if (PelDOM::checkString(value, 0) != PelDOM::SUCCESS)
        return PelDOM::INVALID_VALUE;
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    node->getTree().setData(*node->getNode(), value.view().data());
    return PelDOM::SUCCESS;
}

PelString PelXercesDOMText::getValue() {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    return node != nullptr ? node->as<xercesc::DOMText>()->getData() : PelString();
}

PelDOM::Error PelXercesDOMElement::removeAttribute(const PelString& name) {
    return apply(PelXercesAttributes::remove, *this, name);
}

long PelXercesDOMElement::getNumAttributes() {
    return static_cast<long>(callImp(attributesOf(*this), &xercesc::DOMNamedNodeMap::getLength));
}

PelString PelXercesDOMElement::getAttributeValueAt(long index) {
    return valueOf(attributeAt(*this, index));
}

PelString PelXercesDOMElement::getAttributeNameAt(long index) {
    return callImp(attributeAt(*this, index), &xercesc::DOMNode::getNodeName);
}

PelDOM::Error PelXercesDOMElement::setAttribute(const PelString& name, const PelString& value) {
    return apply(PelXercesAttributes::set, *this, name, value);
}

PelDOM::Error PelXercesDOMElement::appendTextElement(const PelString& name, const PelString& text) {
    return apply(PelXercesEditing::appendTextElement, *this, name, text);
}

PelString PelXercesDOMElement::getTagName() {
    return callImp(elementOf(*this), &DOMElement::getTagName);
}

PelString PelXercesDOMElement::getAttribute(const PelString& name) {
    return valueOf(attributeNamed(*this, name));
}

int PelXercesDOMElement::getElementsByTagName(const PelString& name, PelDOMNodeList& out) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return 0;
    out = PelDOMNodeList(new PelXercesDOMNodeList(*node, name.view()));
    return static_cast<int>(out.length());
}

PelDOMNodeImp* PelXercesDOMElement::getElement(PelDOMNodeImp::Relative start,
                                               const PelString& name) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return nullptr;
    return PelXercesDOMNode::makeUntraced(
        *node, PelXercesWalk::elementFrom(*node->getNode(), start, name.view()));
}

PelDOM::Error PelXercesDOMElement::setTagName(const PelString& name) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    if (!PelXercesRules::isName(name.view(), *node->getDocument()))
        return PelDOM::INVALID_VALUE;
    PelXercesEditing::rename(*node, name.view().data());
    return PelDOM::SUCCESS;
}

bool PelXercesDOMElement::hasAttribute(const PelString& name) {
    return attributeNamed(*this, name) != nullptr;
}

PelDOM::Error PelXercesDOMElement::putAttribute(const PelString& name, const PelString& value) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    if (!PelXercesRules::isName(name.view(), *node->getDocument()) ||
        !PelXercesRules::isText(value.view(), *node->getDocument()))
        return PelDOM::INVALID_VALUE;
    PelXercesAttributes::set(*node, name.view().data(), value.view().data());
    return PelDOM::SUCCESS;
}

PelString PelXercesDOMElement::lookupNamespaceURI(const PelString& prefix) {
    const DOMElement* const element = elementOf(*this);
    return element != nullptr ? PelXercesContent::namespaceOf(*element, prefix.view())
                              : PelString();
}

bool PelXercesDOMElement::getOnlyText(PelString& value) {
    const DOMElement* const element = elementOf(*this);
    xercesc::DOMNode* const child = element != nullptr ? element->getFirstChild() : nullptr;
    if (child == nullptr || PelXercesLinks::nextOf(*child) != nullptr ||
        PelXercesLinks::typeOf(*child) != xercesc::DOMNode::TEXT_NODE)
        return false;
    const auto& text = static_cast<const xercesc::DOMText&>(*child);
    value = PelString(std::u16string_view(text.getData(), text.getLength()));
    return true;
}

std::shared_ptr<const PelDOMSelection>
PelXercesDOMElement::getChildElements(const PelString& name) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return nullptr;
    return std::make_shared<PelXercesChildElements>(
        PelXercesSelected{*node, PelXercesSelected::CHILD_ELEMENTS, std::u16string(name.view())});
}

std::vector<PelDOMAttribute> PelXercesDOMElement::getAttributes() {
    std::vector<PelDOMAttribute> attributes;
    const DOMElement* const element = elementOf(*this);
    if (element == nullptr)
        return attributes;
    std::vector<xercesc::DOMAttr*> inOrder;
    PelXercesAttributeOrder::list(*element, inOrder);
    attributes.resize(inOrder.size());
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        attributes[i].name = inOrder[i]->getName();
        attributes[i].value = PelXercesLinks::valueOf(*inOrder[i]);
    }
    return attributes;
}
