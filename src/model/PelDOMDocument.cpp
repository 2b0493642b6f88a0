// SPDX-License-Identifier: MIT
#include "model/PelDOMDocumentImp.h"
#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMNodeList.h>

#include <utility>

PelDOMDocument::PelDOMDocument(PelDOMNodeImp* implementation) : PelDOMNode(implementation) {
}

PelDOMDocument::PelDOMDocument(const PelDOMDocument& orig) : PelDOMNode(orig) {
}

PelDOMDocument::PelDOMDocument(const PelDOMNode& node) : PelDOMNode(node) {
}

PelDOMDocument::PelDOMDocument(PelDOMDocument&& orig) noexcept = default;

PelDOMDocument::PelDOMDocument(PelDOMNode&& node) noexcept : PelDOMNode(std::move(node)) {
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

PelDOMDocument& PelDOMDocument::operator=(PelDOMDocument&& rhs) noexcept {
    return *this = static_cast<PelDOMNode&&>(rhs);
}

PelDOMDocument& PelDOMDocument::operator=(PelDOMNode&& rhs) noexcept {
    takeTraced(u"PelDOMDocument operator=(PelDOMText& rhs)", rhs);
    return *this;
}

PelDOMNodeList PelDOMDocument::getElementsByTagName(const PelString& name) const {
    return PelDOMNodeList(imp() != nullptr ? getNodeImp()->listElements(name) : nullptr);
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

PelDOMNode PelDOMDocument::importNode(const PelDOMNode& source, bool deep) {
    PelDOMDocumentImp* const content = imp();
    return content != nullptr ? content->importNode(source, deep) : PelDOMNode();
}

PelDOMNode PelDOMDocument::createComment(const PelString& data) {
    PelDOMDocumentImp* const content = imp();
    return content != nullptr ? content->createComment(data) : PelDOMNode();
}

PelDOMNode PelDOMDocument::createCDATASection(const PelString& data) {
    PelDOMDocumentImp* const content = imp();
    return content != nullptr ? content->createCDATASection(data) : PelDOMNode();
}

PelDOMNode PelDOMDocument::createProcessingInstruction(const PelString& target,
                                                       const PelString& data) {
    PelDOMDocumentImp* const content = imp();
    return content != nullptr ? content->createProcessingInstruction(target, data) : PelDOMNode();
}

PelDOMDocumentImp* PelDOMDocument::imp() const {
    return getNodeType() == PelDOM::DOCUMENT_NODE ? static_cast<PelDOMDocumentImp*>(getContentImp())
                                                  : nullptr;
}
