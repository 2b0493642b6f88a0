// SPDX-License-Identifier: MIT
#include "core/PelLog.h"
#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMNodeList.h>

#include <utility>

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

PelDOMNode::~PelDOMNode() {
    PelLog::trace(u"~PelDOMNode", this);
    try {
        delete imp;
    } catch (...) {
        // A destructor has nobody to tell; the handle is gone either way.
    }
}

PelDOMNode& PelDOMNode::operator=(PelDOMNode& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMNode& PelDOMNode::operator=(const PelDOMNode& rhs) {
    assignTraced(u"PelDOMNodeoperator=(PelDOMNode& rhs)", rhs);
    return rhs;
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

PelDOM::Error PelDOMNode::getParentNode(PelDOMNode& out) const {
    return imp != nullptr ? imp->getParentNode(out) : PelDOM::NULL_NODE;
}

PelDOM::Error PelDOMNode::getChildNodes(PelDOMNodeList& out) const {
    return imp != nullptr ? imp->getChildNodes(out) : PelDOM::NULL_NODE;
}
