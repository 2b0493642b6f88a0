// SPDX-License-Identifier: MIT
#include "xerces/PelXercesDOMDocument.h"

#include "xerces/PelXercesDOMNode.h"

#include <xercesc/dom/DOMElement.hpp>
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
