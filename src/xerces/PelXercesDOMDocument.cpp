// SPDX-License-Identifier: MIT
#include "xerces/PelXercesDOMDocument.h"

#include "xerces/PelXercesCopy.h"
#include "xerces/PelXercesDOMNode.h"
#include "xerces/PelXercesRules.h"

#include <xercesc/dom/DOMCDATASection.hpp>
#include <xercesc/dom/DOMComment.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMProcessingInstruction.hpp>
#include <xercesc/dom/DOMText.hpp>

PelDOMElement PelXercesDOMDocument::getDocumentElement() {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOMElement();
    return PelDOMElement(new PelXercesDOMNode(node->to(node->getDocument()->getDocumentElement())));
}

PelDOMElement PelXercesDOMDocument::createElement(const PelString& tagName) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOMElement();
    return PelDOMElement(
        new PelXercesDOMNode(node->to(node->getDocument()->createElement(tagName.view().data()))));
}

PelDOMText PelXercesDOMDocument::createTextNode(const PelString& text) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOMText();
    return PelDOMText(
        new PelXercesDOMNode(node->to(node->getDocument()->createTextNode(text.view().data()))));
}

PelDOMNode PelXercesDOMDocument::importNode(const PelDOMNode& source, bool deep) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    const PelXercesNodeRef from = PelXercesDOMNode::of(source);
    if (node == nullptr || !from)
        return PelDOMNode();
    return PelDOMNode(PelXercesDOMNode::quietly(PelXercesCopy::make(*node, from, deep)));
}

PelDOMNode PelXercesDOMDocument::createComment(const PelString& data) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr || !PelXercesRules::isComment(data.view()))
        return PelDOMNode();
    return PelDOMNode(PelXercesDOMNode::quietly(
        node->to(node->getDocument()->createComment(data.view().data()))));
}

PelDOMNode PelXercesDOMDocument::createCDATASection(const PelString& data) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr || !PelXercesRules::isCDATA(data.view()))
        return PelDOMNode();
    return PelDOMNode(PelXercesDOMNode::quietly(
        node->to(node->getDocument()->createCDATASection(data.view().data()))));
}

PelDOMNode PelXercesDOMDocument::createProcessingInstruction(const PelString& target,
                                                             const PelString& data) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr ||
        !PelXercesRules::isInstructionTarget(target.view(), *node->getDocument()) ||
        !PelXercesRules::isInstruction(data.view()))
        return PelDOMNode();
    return PelDOMNode(
        PelXercesDOMNode::quietly(node->to(node->getDocument()->createProcessingInstruction(
            target.view().data(), data.view().data()))));
}
