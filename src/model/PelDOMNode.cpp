// SPDX-License-Identifier: MIT
#include "core/PelLog.h"
#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMNodeList.h>

#include <utility>

using Relative = PelDOMNodeImp::Relative;

namespace {

void destroy(const PelDOMNodeImp* imp) noexcept {
    try {
        delete imp;
    } catch (...) {
        // Nobody is there to tell; the implementation is gone either way.
    }
}

const void* identityOf(const PelDOMNodeImp* imp) noexcept {
    return imp != nullptr ? imp->getIdentity() : nullptr;
}

PelDOMNodeImp* relativeOf(const PelDOMNodeImp* imp, Relative which) {
    return imp != nullptr ? imp->getRelative(which) : nullptr;
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
    return identityOf(imp) == identityOf(other.imp);
}

PelDOMNodeContentImp* PelDOMNode::getContentImp() const noexcept {
    return imp != nullptr ? imp->getContentImp() : nullptr;
}

PelDOM::NodeType PelDOMNode::getNodeType() const {
    return imp != nullptr ? imp->getNodeType() : PelDOM::NO_NODE;
}

PelDOM::Error PelDOMNode::getOwnerDocument(PelDOMDocument& out) const {
    return imp != nullptr ? imp->getOwnerDocument(out) : PelDOM::NULL_NODE;
}

PelDOM::Error PelDOMNode::appendChild(PelDOMNode& child) {
    return imp != nullptr ? imp->appendChild(child) : PelDOM::NULL_NODE;
}

// The operation takes a handle that it may change, and never does.
PelDOM::Error PelDOMNode::appendChild(const PelDOMNode& child) {
    return appendChild(const_cast<PelDOMNode&>(child));
}

PelDOM::Error PelDOMNode::insertBefore(const PelDOMNode& child, const PelDOMNode& before) {
    return imp != nullptr ? imp->insertBefore(child, before) : PelDOM::NULL_NODE;
}

PelDOM::Error PelDOMNode::replaceChild(const PelDOMNode& child, const PelDOMNode& old) {
    return imp != nullptr ? imp->replaceChild(child, old) : PelDOM::NULL_NODE;
}

PelDOM::Error PelDOMNode::removeChild(const PelDOMNode& child) {
    return imp != nullptr ? imp->removeChild(child) : PelDOM::NULL_NODE;
}

PelDOMNode PelDOMNode::cloneNode(bool deep) const {
    return PelDOMNode(imp != nullptr ? imp->copyNode(deep) : nullptr);
}

PelDOM::Error PelDOMNode::getParentNode(PelDOMNode& out) const {
    return imp != nullptr ? imp->getParentNode(out) : PelDOM::NULL_NODE;
}

PelDOM::Error PelDOMNode::getChildNodes(PelDOMNodeList& out) const {
    return imp != nullptr ? imp->getChildNodes(out) : PelDOM::NULL_NODE;
}

PelDOMDocument PelDOMNode::getOwnerDocument() const {
    return PelDOMDocument(relativeOf(imp, Relative::OWNER_DOCUMENT));
}

PelDOMNode PelDOMNode::getParentNode() const {
    return PelDOMNode(relativeOf(imp, Relative::PARENT));
}

PelDOMNode PelDOMNode::getFirstChild() const {
    return PelDOMNode(relativeOf(imp, Relative::FIRST_CHILD));
}

PelDOMNode PelDOMNode::getLastChild() const {
    return PelDOMNode(relativeOf(imp, Relative::LAST_CHILD));
}

PelDOMNode PelDOMNode::getNextSibling() const {
    return PelDOMNode(relativeOf(imp, Relative::NEXT_SIBLING));
}

PelDOMNode PelDOMNode::getPreviousSibling() const {
    return PelDOMNode(relativeOf(imp, Relative::PREVIOUS_SIBLING));
}

PelString PelDOMNode::getNodeName() const {
    return imp != nullptr ? imp->getNodeName() : PelString();
}

PelString PelDOMNode::getNodeValue() const {
    return imp != nullptr ? imp->getNodeValue() : PelString();
}

PelDOM::Error PelDOMNode::setNodeValue(const PelString& value) {
    return imp != nullptr ? imp->setNodeValue(value) : PelDOM::NULL_NODE;
}

PelString PelDOMNode::getTextContent() const {
    return imp != nullptr ? imp->getTextContent() : PelString();
}

PelDOM::Error PelDOMNode::setTextContent(const PelString& text) {
    return imp != nullptr ? imp->setTextContent(text) : PelDOM::NULL_NODE;
}

PelDOMNodeList PelDOMNode::getChildNodes() const {
    return PelDOMNodeList(imp != nullptr ? imp->listChildren() : nullptr);
}

bool PelDOMNode::hasChildNodes() const {
    return imp != nullptr && imp->hasChildNodes();
}
