// SPDX-License-Identifier: MIT
#include "model/PelDOMDocumentImp.h"

#include <qrndom/PelDOMText.h>

#include <utility>

PelDOMText::PelDOMText(PelDOMNodeImp* implementation) : PelDOMNode(implementation) {
}

PelDOMText::PelDOMText(const PelDOMNode& node) : PelDOMNode(node) {
}

PelDOMText::PelDOMText(PelDOMNode&& node) noexcept : PelDOMNode(std::move(node)) {
}

PelDOMText::PelDOMText(const PelDOMText& orig) = default;
PelDOMText::PelDOMText(PelDOMText&& orig) noexcept = default;
PelDOMText::~PelDOMText() = default;

PelDOMText& PelDOMText::operator=(PelDOMText& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMText& PelDOMText::operator=(const PelDOMText& rhs) {
    *this = static_cast<const PelDOMNode&>(rhs);
    return rhs;
}

PelDOMNode& PelDOMText::operator=(PelDOMNode& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMNode& PelDOMText::operator=(const PelDOMNode& rhs) {
    assignTraced(u"PelDOMText operator=(PelDOMText& rhs)", rhs);
    return rhs;
}

PelDOMText& PelDOMText::operator=(PelDOMText&& rhs) noexcept {
    return *this = static_cast<PelDOMNode&&>(rhs);
}

PelDOMText& PelDOMText::operator=(PelDOMNode&& rhs) noexcept {
    takeTraced(u"PelDOMText operator=(PelDOMText& rhs)", rhs);
    return *this;
}

PelDOM::Error PelDOMText::setValue(const PelString& value) {
    PelDOMTextImp* const content = imp();
    return content != nullptr ? content->setValue(value) : PelDOM::INTERNAL_ERROR;
}

const PelString PelDOMText::getValue() {
    return callImp(imp(), &PelDOMTextImp::getValue);
}

PelDOMTextImp* PelDOMText::imp() const {
    return getNodeType() == PelDOM::TEXT_NODE ? static_cast<PelDOMTextImp*>(getContentImp())
                                              : nullptr;
}
