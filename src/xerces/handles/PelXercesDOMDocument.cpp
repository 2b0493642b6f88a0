// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMDocument.h"

#include "xerces/edit/PelXercesContent.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelXercesRules.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMText.hpp>

namespace {

PelXercesNodePool& prepare(const PelXercesNodeRef& document) {
    document.getTree().orphans.prepare();
    return document.getTree().nodes;
}

// A reference to a new node of that pool.
PelXercesNodeRef asOrphan(const PelXercesNodeRef& document, xercesc::DOMNode& node) {
    document.getTree().orphans.add(node);
    return document.to(&node);
}

} // namespace

PelDOMElement PelXercesDOMDocument::getDocumentElement() {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOMElement();
    return PelDOMElement(
        PelXercesDOMNode::make(node->to(node->getDocument()->getDocumentElement())));
}

// A name that XML forbids ends with the engine's exception.
PelDOMElement PelXercesDOMDocument::createElement(const PelString& tagName) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOMElement();
    const XMLCh* const name = tagName.view().data();
    PelXercesNodePool& nodes = prepare(*node);
    nodes.requireName(name);
    return PelDOMElement(PelXercesDOMNode::make(asOrphan(*node, nodes.makeElement(name))));
}

PelDOMText PelXercesDOMDocument::createTextNode(const PelString& text) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOMText();
    PelXercesNodePool& nodes = prepare(*node);
    return PelDOMText(PelXercesDOMNode::make(asOrphan(*node, nodes.makeText(text.view().data()))));
}

PelDOMNode PelXercesDOMDocument::importNode(const PelDOMNode& source, bool deep) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    const PelXercesNodeRef from = PelXercesDOMNode::of(source);
    if (node == nullptr || !from)
        return PelDOMNode();
    return PelDOMNode(PelXercesDOMNode::makeUntraced(PelXercesContent::copy(*node, from, deep)));
}

PelDOMNode PelXercesDOMDocument::createComment(const PelString& data) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr || !PelXercesRules::isComment(data.view()))
        return PelDOMNode();
    PelXercesNodePool& nodes = prepare(*node);
    return PelDOMNode(
        PelXercesDOMNode::makeUntraced(asOrphan(*node, nodes.makeComment(data.view().data()))));
}

PelDOMNode PelXercesDOMDocument::createCDATASection(const PelString& data) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr || !PelXercesRules::isCDATA(data.view()))
        return PelDOMNode();
    PelXercesNodePool& nodes = prepare(*node);
    return PelDOMNode(PelXercesDOMNode::makeUntraced(
        asOrphan(*node, nodes.makeCDATASection(data.view().data()))));
}

PelDOMNode PelXercesDOMDocument::createProcessingInstruction(const PelString& target,
                                                             const PelString& data) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr ||
        !PelXercesRules::isInstructionTarget(target.view(), *node->getDocument()) ||
        !PelXercesRules::isInstruction(data.view()))
        return PelDOMNode();
    PelXercesNodePool& nodes = prepare(*node);
    return PelDOMNode(PelXercesDOMNode::makeUntraced(
        asOrphan(*node, nodes.makeInstruction(target.view().data(), data.view().data()))));
}

PelDOM::Error PelXercesDOMText::setValue(const PelString& value) {
    if (PelDOM::checkString(value, 0) != PelDOM::SUCCESS)
        return PelDOM::INVALID_VALUE;
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    node->getTree().nodes.setData(*node->getNode(), value.view().data());
    return PelDOM::SUCCESS;
}

PelString PelXercesDOMText::getValue() {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    return node != nullptr ? node->as<xercesc::DOMText>()->getData() : PelString();
}
