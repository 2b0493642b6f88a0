// SPDX-License-Identifier: MIT
#include "xerces/PelXercesDOMNode.h"

#include "xerces/PelXercesDOMDocument.h"
#include "xerces/PelXercesDOMElement.h"
#include "xerces/PelXercesDOMNodeList.h"
#include "xerces/PelXercesDOMText.h"
#include "xerces/PelXercesEditing.h"

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMNodeList.h>

namespace {

// Depends on the type alone: it runs before there is a node implementation.
PelDOMNodeContentImp* makeContent(PelDOM::NodeType type) {
    switch (type) {
    case PelDOM::ELEMENT_NODE:
        return new PelXercesDOMElement;
    case PelDOM::TEXT_NODE:
        return new PelXercesDOMText;
    case PelDOM::DOCUMENT_NODE:
        return new PelXercesDOMDocument;
    default:
        PelDOM::error(PelString().format(u"PelXercesDOMNode::createContentImp(%d) failed",
                                         static_cast<int>(type)),
                      nullptr);
        return nullptr;
    }
}

} // namespace

PelXercesDOMNode::PelXercesDOMNode(const PelXercesNodeRef& engineNode)
    : PelDOMNodeImp(makeContent(engineNode.getType())), node(engineNode) {
}

PelDOM::Error PelXercesDOMNode::getOwnerDocument(PelDOMDocument& out) {
    if (!node)
        return PelDOM::NULL_NODE;
    xercesc::DOMNode* const document = node.getDocument();
    give(node.to(node.getNode() != document ? document : nullptr), out);
    return PelDOM::SUCCESS;
}

PelDOM::Error PelXercesDOMNode::appendChild(PelDOMNode& child) {
    PelDOMNodeImp* const childImp = child.getNodeImp();
    if (!node || childImp == nullptr || !of(*childImp))
        return PelDOM::NULL_NODE;
    PelXercesEditing::append(node, *of(*childImp).getNode());
    return PelDOM::SUCCESS;
}

PelDOM::Error PelXercesDOMNode::getParentNode(PelDOMNode& out) {
    if (!node)
        return PelDOM::NULL_NODE;
    give(node.to(node->getParentNode()), out);
    return PelDOM::SUCCESS;
}

PelDOM::NodeType PelXercesDOMNode::getNodeType() {
    return node.getType();
}

PelDOM::Error PelXercesDOMNode::getChildNodes(PelDOMNodeList& out) {
    if (!node)
        return PelDOM::NULL_NODE;
    PelXercesDOMNodeList::give(PelXercesList::ofChildren(node), out);
    return PelDOM::SUCCESS;
}

PelDOMNodeImp* PelXercesDOMNode::clone() {
    return new PelXercesDOMNode(node);
}

PelDOMNodeContentImp* PelXercesDOMNode::createContentImp(const PelDOM::NodeType& type) {
    return makeContent(type);
}

const PelXercesNodeRef* PelXercesDOMNode::of(const PelDOMNodeContentImp& content) {
    const PelDOMNodeImp* const owner = content.getNodeImp();
    return owner != nullptr ? &of(*owner) : nullptr;
}
