// SPDX-License-Identifier: MIT
#include "model/PelDOMDocumentImp.h"
#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMNodeList.h>

#include <utility>

using Imp = PelDOMDocumentImp;

PelDOMDocument::PelDOMDocument(PelDOMNodeImp* implementation) : PelDOMNode(implementation) {
}

PelDOMDocument::PelDOMDocument(const PelDOMNode& node) : PelDOMNode(node) {
}

PelDOMDocument::PelDOMDocument(PelDOMNode&& node) noexcept : PelDOMNode(std::move(node)) {
}

PelDOMDocument::PelDOMDocument(const PelDOMDocument& orig) = default;
PelDOMDocument::PelDOMDocument(PelDOMDocument&& orig) noexcept = default;
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
    return callImp(imp(), &Imp::getDocumentElement);
}

PelDOMElement PelDOMDocument::createElement(const PelString& tagName) {
    return callImp(imp(), &Imp::createElement, tagName);
}

PelDOMText PelDOMDocument::createTextNode(const PelString& text) {
    return callImp(imp(), &Imp::createTextNode, text);
}

PelString PelDOMDocument::getInputEncoding() const {
    return callImp(imp(), &Imp::getInputEncoding);
}

PelDOMNode PelDOMDocument::importNode(const PelDOMNode& source, bool deep) {
    return callImp(imp(), &Imp::importNode, source, deep);
}

PelDOMNode PelDOMDocument::createComment(const PelString& data) {
    return callImp(imp(), &Imp::createComment, data);
}

PelDOMNode PelDOMDocument::createCDATASection(const PelString& data) {
    return callImp(imp(), &Imp::createCDATASection, data);
}

PelDOMNode PelDOMDocument::createProcessingInstruction(const PelString& target,
                                                       const PelString& data) {
    return callImp(imp(), &Imp::createProcessingInstruction, target, data);
}

PelDOMDocumentImp* PelDOMDocument::imp() const {
    return getNodeType() == PelDOM::DOCUMENT_NODE ? static_cast<PelDOMDocumentImp*>(getContentImp())
                                                  : nullptr;
}
