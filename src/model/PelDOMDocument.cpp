// SPDX-License-Identifier: MIT
#include "model/PelDOMDocumentImp.h"

#include <qrndom/PelDOMDocument.h>

#include <utility>

PelDOMDocument::PelDOMDocument(PelDOMNodeImp* implementation) : PelDOMNode(implementation) {
}

PelDOMDocument::PelDOMDocument(const PelDOMDocument& orig) : PelDOMNode(orig) {
}

PelDOMDocument::PelDOMDocument(const PelDOMNode& node) : PelDOMNode(node) {
}

PelDOMDocument::~PelDOMDocument() = default;

PelDOMDocument& PelDOMDocument::operator=(PelDOMDocument& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMDocument& PelDOMDocument::operator=(const PelDOMDocument& rhs) {
    *this = static_cast<const PelDOMNode&>(rhs);
    return rhs;
}

PelDOMNode& PelDOMDocument::operator=(PelDOMNode& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMNode& PelDOMDocument::operator=(const PelDOMNode& rhs) {
    assignTraced(u"PelDOMDocument operator=(PelDOMText& rhs)", rhs);
    return rhs;
}

PelDOMElement PelDOMDocument::getDocumentElement() const {
    PelDOMDocumentImp* const content = imp();
    return content != nullptr ? content->getDocumentElement() : PelDOMElement();
}

PelDOMElement PelDOMDocument::createElement(const PelString& tagName) {
    PelDOMDocumentImp* const content = imp();
    return content != nullptr ? content->createElement(tagName) : PelDOMElement();
}

PelDOMText PelDOMDocument::createTextNode(const PelString& text) {
    PelDOMDocumentImp* const content = imp();
    return content != nullptr ? content->createTextNode(text) : PelDOMText();
}

PelDOMDocumentImp* PelDOMDocument::imp() const {
    return getNodeType() == PelDOM::DOCUMENT_NODE ? static_cast<PelDOMDocumentImp*>(getContentImp())
                                                  : nullptr;
}
