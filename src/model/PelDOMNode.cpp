// SPDX-License-Identifier: MIT
#include "core/PelLog.h"
#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMNodeList.h>

#include <utility>

using Imp = PelDOMNodeImp;
using Relative = PelDOMNodeImp::Relative;

namespace {

void destroy(const PelDOMNodeImp* imp) noexcept {
    try {
        delete imp;
    } catch (...) {
        // Destructors have no one to tell, and the implementation is gone either way.
    }
}

} // namespace

PelDOMNode::PelDOMNode(PelDOMNodeImp* implementation)
    : imp(implementation),
      errorStatus(implementation != nullptr ? PelDOM::SUCCESS : PelDOM::NO_IMPLEMENTATION) {
    PelLog::trace(u"PelDOMNode()", this);
}

PelDOMNode::PelDOMNode(const PelDOMNode& orig)
    : imp(nullptr), errorStatus(PelDOM::NO_IMPLEMENTATION) {
    PelLog::trace(u"PelDOMNode(const PelDOMNode& orig)", this);
    assign(orig);
}

PelDOMNode::PelDOMNode(PelDOMNode&& orig) noexcept
    : imp(std::exchange(orig.imp, nullptr)),
      errorStatus(std::exchange(orig.errorStatus, PelDOM::NO_IMPLEMENTATION)) {
    PelLog::trace(u"PelDOMNode(PelDOMNode&& orig)", this);
}

PelDOMNode::~PelDOMNode() {
    PelLog::trace(u"~PelDOMNode", this);
    destroy(imp);
}

PelDOMNode& PelDOMNode::operator=(PelDOMNode& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMNode& PelDOMNode::operator=(const PelDOMNode& rhs) {
    assignTraced(u"PelDOMNodeoperator=(PelDOMNode& rhs)", rhs);
    return rhs;
}

PelDOMNode& PelDOMNode::operator=(PelDOMNode&& rhs) noexcept {
    takeTraced(u"PelDOMNodeoperator=(PelDOMNode& rhs)", rhs);
    return *this;
}

void PelDOMNode::assign(const PelDOMNode& other) {
    PelDOMNodeImp* const taken = other.imp != nullptr ? other.imp->clone() : nullptr;
    PelDOMNodeImp* const released = std::exchange(imp, taken);
    errorStatus = other.errorStatus;
    delete released;
}

void PelDOMNode::assignTraced(const char16_t* trace, const PelDOMNode& rhs) {
    PelLog::trace(trace, this);
    if (this != &rhs)
        assign(rhs);
}

void PelDOMNode::takeTraced(const char16_t* trace, PelDOMNode& rhs) noexcept {
    PelLog::trace(trace, this);
    const PelDOMNodeImp* const released = std::exchange(imp, std::exchange(rhs.imp, nullptr));
    errorStatus = std::exchange(rhs.errorStatus, PelDOM::NO_IMPLEMENTATION);
    destroy(released);
}

bool PelDOMNode::isSameNode(const PelDOMNode& other) const noexcept {
    return callImp(imp, &Imp::getIdentity) == callImp(other.imp, &Imp::getIdentity);
}

PelDOMNodeContentImp* PelDOMNode::getContentImp() const noexcept {
    return callImp(imp, &Imp::getContentImp);
}

PelDOM::NodeType PelDOMNode::getNodeType() const {
    return callImp(imp, &Imp::getNodeType);
}

PelDOM::Error PelDOMNode::getOwnerDocument(PelDOMDocument& out) const {
    return callImp(imp, &Imp::getOwnerDocument, out);
}

PelDOM::Error PelDOMNode::appendChild(PelDOMNode& child) {
    return callImp(imp, &Imp::appendChild, child);
}

// The operation's parameter is not const, but is never changed.
PelDOM::Error PelDOMNode::appendChild(const PelDOMNode& child) {
    return appendChild(const_cast<PelDOMNode&>(child));
}

PelDOM::Error PelDOMNode::insertBefore(const PelDOMNode& child, const PelDOMNode& before) {
    return callImp(imp, &Imp::insertBefore, child, before);
}

PelDOM::Error PelDOMNode::replaceChild(const PelDOMNode& child, const PelDOMNode& old) {
    return callImp(imp, &Imp::replaceChild, child, old);
}

PelDOM::Error PelDOMNode::removeChild(const PelDOMNode& child) {
    return callImp(imp, &Imp::removeChild, child);
}

PelDOMNode PelDOMNode::cloneNode(bool deep) const {
    return PelDOMNode(callImp(imp, &Imp::copyNode, deep));
}

PelDOM::Error PelDOMNode::getParentNode(PelDOMNode& out) const {
    return callImp(imp, &Imp::getParentNode, out);
}

PelDOM::Error PelDOMNode::getChildNodes(PelDOMNodeList& out) const {
    return callImp(imp, &Imp::getChildNodes, out);
}

PelDOMDocument PelDOMNode::getOwnerDocument() const {
    return PelDOMDocument(callImp(imp, &Imp::getRelative, Relative::OWNER_DOCUMENT));
}

PelDOMNode PelDOMNode::getParentNode() const {
    return PelDOMNode(callImp(imp, &Imp::getRelative, Relative::PARENT));
}

PelDOMNode PelDOMNode::getFirstChild() const {
    return PelDOMNode(callImp(imp, &Imp::getRelative, Relative::FIRST_CHILD));
}

PelDOMNode PelDOMNode::getLastChild() const {
    return PelDOMNode(callImp(imp, &Imp::getRelative, Relative::LAST_CHILD));
}

PelDOMNode PelDOMNode::getNextSibling() const {
    return PelDOMNode(callImp(imp, &Imp::getRelative, Relative::NEXT_SIBLING));
}

PelDOMNode PelDOMNode::getPreviousSibling() const {
    return PelDOMNode(callImp(imp, &Imp::getRelative, Relative::PREVIOUS_SIBLING));
}

unsigned long PelDOMNode::getLine() const {
    return callImp(imp, &Imp::getPosition).line;
}

unsigned long PelDOMNode::getColumn() const {
    return callImp(imp, &Imp::getPosition).column;
}

PelString PelDOMNode::getNodeName() const {
    return callImp(imp, &Imp::getNodeName);
}

PelString PelDOMNode::getNodeValue() const {
    return callImp(imp, &Imp::getNodeValue);
}

PelDOM::Error PelDOMNode::setNodeValue(const PelString& value) {
    return callImp(imp, &Imp::setNodeValue, value);
}

PelString PelDOMNode::getTextContent() const {
    return callImp(imp, &Imp::getTextContent);
}

PelDOM::Error PelDOMNode::setTextContent(const PelString& text) {
    return callImp(imp, &Imp::setTextContent, text);
}

PelDOMNodeList PelDOMNode::getChildNodes() const {
    return PelDOMNodeList(callImp(imp, &Imp::listChildren));
}

bool PelDOMNode::hasChildNodes() const {
    return callImp(imp, &Imp::hasChildNodes);
}

PelDOMNodeImp::PelDOMNodeImp(PelDOMNodeContentImp* nodeContent) noexcept {
    setContentImp(nodeContent);
}

PelDOMNodeImp::~PelDOMNodeImp() noexcept(false) {
    delete content;
}

void PelDOMNodeImp::setContentImp(PelDOMNodeContentImp* member) noexcept {
    content = member;
    if (content != nullptr)
        content->setNodeImp(this);
}
