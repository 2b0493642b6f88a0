// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMDocument.h"

#include "xerces/edit/PelXercesContent.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelXercesRules.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMText.hpp>

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
