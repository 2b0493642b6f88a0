// SPDX-License-Identifier: MIT
#include "core/PelLog.h"
#include "core/PelNumberText.h"
#include "model/PelDOMElementImp.h"

#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMNodeList.h>
#include <qrndom/PelDOMText.h>

#include <utility>

using Imp = PelDOMElementImp;
using Relative = PelDOMNodeImp::Relative;

namespace {

// Empty, which no number is, when the element holds anything else.
PelString childText(const PelDOMElement& element) {
    PelString text;
    element.getChildTextValue(text);
    return text;
}

template <class Number>
PelDOM::Error scanNumber(const PelString& text, Number& value) {
    return PelNumberText::scan(text.view(), value) ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE;
}

// 0 unless there is one colon, with something on both sides of it.
std::size_t prefixLength(std::u16string_view name) {
    const std::size_t colon = name.find(u':');
    const bool isOfTwoParts =
        colon != name.npos && colon == name.rfind(u':') && colon + 1 < name.size();
    return isOfTwoParts ? colon : 0;
}

} // namespace

PelDOMElement::PelDOMElement(PelDOMNodeImp* implementation) : PelDOMNode(implementation) {
}

PelDOMElement::PelDOMElement(const PelDOMNode& node) : PelDOMNode(node) {
}

PelDOMElement::PelDOMElement(PelDOMNode&& node) noexcept : PelDOMNode(std::move(node)) {
}

PelDOMElement::PelDOMElement(const PelDOMElement& orig) = default;
PelDOMElement::PelDOMElement(PelDOMElement&& orig) noexcept = default;
PelDOMElement::~PelDOMElement() = default;

PelDOMElement& PelDOMElement::operator=(PelDOMElement& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMElement& PelDOMElement::operator=(const PelDOMElement& rhs) {
    *this = static_cast<const PelDOMNode&>(rhs);
    return rhs;
}

PelDOMNode& PelDOMElement::operator=(PelDOMNode& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMNode& PelDOMElement::operator=(const PelDOMNode& rhs) {
    assignTraced(u"PelDOMElement operator=(PelDOMElement& rhs)", rhs);
    return rhs;
}

PelDOMElement& PelDOMElement::operator=(PelDOMElement&& rhs) noexcept {
    return *this = static_cast<PelDOMNode&&>(rhs);
}

PelDOMElement& PelDOMElement::operator=(PelDOMNode&& rhs) noexcept {
    takeTraced(u"PelDOMElement operator=(PelDOMElement& rhs)", rhs);
    return *this;
}

PelDOM::Error PelDOMElement::removeAttribute(const PelString& name) {
    Imp* const content = imp();
    return content != nullptr ? content->removeAttribute(name) : PelDOM::INVALID_VALUE;
}

PelDOM::Error PelDOMElement::setAttribute(const PelString& name, const PelString& value) {
    return callImp(imp(), &Imp::setAttribute, name, value);
}

PelDOM::Error PelDOMElement::putAttribute(const PelString& name, const PelString& value) {
    return callImp(imp(), &Imp::putAttribute, name, value);
}

PelDOM::Error PelDOMElement::appendTextElement(const PelString& name, const PelString& text) {
    return callImp(imp(), &Imp::appendTextElement, name, text);
}

long PelDOMElement::getNumAttributes() const {
    return callImp(imp(), &Imp::getNumAttributes);
}

PelString PelDOMElement::getAttributeValueAt(long index) const {
    return callImp(imp(), &Imp::getAttributeValueAt, index);
}

PelString PelDOMElement::getAttributeNameAt(long index) const {
    return callImp(imp(), &Imp::getAttributeNameAt, index);
}

std::vector<PelDOMAttribute> PelDOMElement::getAttributes() const {
    return callImp(imp(), &Imp::getAttributes);
}

PelString PelDOMElement::getTagName() const {
    return callImp(imp(), &Imp::getTagName);
}

PelDOM::Error PelDOMElement::setTagName(const PelString& name) {
    return callImp(imp(), &Imp::setTagName, name);
}

PelString PelDOMElement::getAttribute(const PelString& name) const {
    return callImp(imp(), &Imp::getAttribute, name);
}

PelDOM::Error PelDOMElement::getAttribute(const PelString& name, PelString& value) const {
    value = getAttribute(name);
    return PelDOM::SUCCESS;
}

bool PelDOMElement::hasAttribute(const PelString& name) const {
    return callImp(imp(), &Imp::hasAttribute, name);
}

PelString PelDOMElement::getAttributeOr(const PelString& name, const PelString& fallback) const {
    PelString value = getAttribute(name);
    return value.isEmpty() == 0 || hasAttribute(name) ? value : fallback;
}

PelDOM::Error PelDOMElement::getAttribute(const PelString& name, long& value) const {
    return scanNumber(getAttribute(name), value);
}

PelDOM::Error PelDOMElement::getAttribute(const PelString& name, double& value) const {
    return scanNumber(getAttribute(name), value);
}

// The handles to the list, the child and the text below write traces, and the log tells of a child
// that is no text. So the short way is for an only text in a mode without traces.
PelDOM::Error PelDOMElement::getChildTextValue(PelString& value) const {
    if (PelLog::mode < 2 && callImp(imp(), &Imp::getOnlyText, value))
        return PelDOM::SUCCESS;
    PelDOMNodeList children;
    if (getChildNodes(children) != PelDOM::SUCCESS || children.length() != 1)
        return PelDOM::INVALID_VALUE;
    PelDOMNode child;
    if (children.item(0, child) != PelDOM::SUCCESS || child.getNodeType() != PelDOM::TEXT_NODE)
        return PelDOM::INVALID_VALUE;
    value = PelDOMText(child).getValue();
    return PelDOM::SUCCESS;
}

PelDOM::Error PelDOMElement::getChildTextValue(long& value) const {
    return scanNumber(childText(*this), value);
}

PelDOM::Error PelDOMElement::getChildTextValue(double& value) const {
    return scanNumber(childText(*this), value);
}

int PelDOMElement::getElementsByTagName(const PelString& name, PelDOMNodeList& out) const {
    return callImp(imp(), &Imp::getElementsByTagName, name, out);
}

PelDOMNodeList PelDOMElement::getElementsByTagName(const PelString& name) const {
    return PelDOMNodeList(imp() != nullptr ? getNodeImp()->listElements(name) : nullptr);
}

PelDOMElement PelDOMElement::getChildElement(const PelString& name) const {
    return PelDOMElement(callImp(imp(), &Imp::getElement, Relative::FIRST_CHILD, name));
}

PelDOMElementRange PelDOMElement::getChildElements(const PelString& name) const {
    return PelDOMElementRange(callImp(imp(), &Imp::getChildElements, name));
}

PelDOMElement PelDOMElement::getNextElement(const PelString& name) const {
    return PelDOMElement(callImp(imp(), &Imp::getElement, Relative::NEXT_SIBLING, name));
}

PelDOMElement PelDOMElement::getPreviousElement(const PelString& name) const {
    return PelDOMElement(callImp(imp(), &Imp::getElement, Relative::PREVIOUS_SIBLING, name));
}

PelString PelDOMElement::getPrefix() const {
    const PelString name = getTagName();
    return PelString(name.view().substr(0, prefixLength(name.view())));
}

PelString PelDOMElement::getLocalName() const {
    const PelString name = getTagName();
    const std::size_t length = prefixLength(name.view());
    return PelString(name.view().substr(length == 0 ? 0 : length + 1));
}

PelString PelDOMElement::lookupNamespaceURI(const PelString& prefix) const {
    return callImp(imp(), &Imp::lookupNamespaceURI, prefix);
}

PelDOMElementImp* PelDOMElement::imp() const {
    return getNodeType() == PelDOM::ELEMENT_NODE ? static_cast<PelDOMElementImp*>(getContentImp())
                                                 : nullptr;
}

PelString PelDOMElement::textOf(bool value) {
    return PelNumberText::write(value);
}

PelString PelDOMElement::textOf(long long value) {
    return PelNumberText::write(value);
}

PelString PelDOMElement::textOf(unsigned long long value) {
    return PelNumberText::write(value);
}

PelString PelDOMElement::textOf(float value) {
    return PelNumberText::write(value);
}

PelString PelDOMElement::textOf(double value) {
    return PelNumberText::write(value);
}

PelString PelDOMElement::textOf(long double value) {
    return PelNumberText::write(value);
}

bool PelDOMElement::readWhole(const PelString& name, bool& value) const {
    return PelNumberText::read(getAttribute(name).view(), value);
}

bool PelDOMElement::readWhole(const PelString& name, long long& value) const {
    return PelNumberText::read(getAttribute(name).view(), value);
}

bool PelDOMElement::readWhole(const PelString& name, unsigned long long& value) const {
    return PelNumberText::read(getAttribute(name).view(), value);
}

bool PelDOMElement::readWhole(const PelString& name, float& value) const {
    return PelNumberText::read(getAttribute(name).view(), value);
}

bool PelDOMElement::readWhole(const PelString& name, double& value) const {
    return PelNumberText::read(getAttribute(name).view(), value);
}

bool PelDOMElement::readWhole(const PelString& name, long double& value) const {
    return PelNumberText::read(getAttribute(name).view(), value);
}
