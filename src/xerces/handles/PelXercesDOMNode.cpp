// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMNode.h"

#include "core/PelLog.h"
#include "xerces/edit/PelXercesContent.h"
#include "xerces/edit/PelXercesEditing.h"
#include "xerces/handles/PelXercesDOMContents.h"
#include "xerces/handles/PelXercesDOMNodeList.h"
#include "xerces/tree/PelXercesWalk.h"

#include <qrndom/PelDOMDocument.h>
#include <qrndom/PelDOMNodeList.h>

#include <memory>
#include <string>

namespace {

/// Over a node of a type that has content.
template <class Content>
class TypedNode final : public PelXercesDOMNode {
public:
    TypedNode(const PelXercesNodeRef& origin, xercesc::DOMNode* engineNode)
        : PelXercesDOMNode(origin, engineNode) {
        setContentImp(&content);
    }

    ~TypedNode() override { setContentImp(nullptr); }

private:
    Content content;
};

} // namespace

PelXercesDOMNode* PelXercesDOMNode::make(const PelXercesNodeRef& origin,
                                         xercesc::DOMNode* engineNode) {
    std::unique_ptr<PelXercesDOMNode> made(makeTyped(origin, engineNode));
    if (made->getContentImp() == nullptr)
        noteMissingContent(PelXercesNodeRef::typeOf(engineNode));
    return made.release();
}

PelXercesDOMNode* PelXercesDOMNode::makeUntraced(const PelXercesNodeRef& origin,
                                                 xercesc::DOMNode* engineNode) {
    return engineNode != nullptr ? makeTyped(origin, engineNode) : nullptr;
}

PelXercesDOMNode* PelXercesDOMNode::makeTyped(const PelXercesNodeRef& origin,
                                              xercesc::DOMNode* engineNode) {
    switch (PelXercesNodeRef::typeOf(engineNode)) {
    case PelDOM::ELEMENT_NODE:
        return new TypedNode<PelXercesDOMElement>(origin, engineNode);
    case PelDOM::TEXT_NODE:
        return new TypedNode<PelXercesDOMText>(origin, engineNode);
    case PelDOM::DOCUMENT_NODE:
        return new TypedNode<PelXercesDOMDocument>(origin, engineNode);
    default:
        return new PelXercesDOMNode(origin, engineNode);
    }
}

void PelXercesDOMNode::noteMissingContent(PelDOM::NodeType type) {
    if (PelLog::takesMessages())
        PelLog::gather("PelXercesDOMNode::createContentImp(" +
                       std::to_string(static_cast<int>(type)) + ") failed");
}

PelDOM::Error PelXercesDOMNode::getOwnerDocument(PelDOMDocument& out) {
    if (!node)
        return PelDOM::NULL_NODE;
    xercesc::DOMNode* const document = node.getDocument();
    give(node, node.getNode() != document ? document : nullptr, out);
    return PelDOM::SUCCESS;
}

PelDOM::Error PelXercesDOMNode::appendChild(PelDOMNode& child) {
    PelDOMNodeImp* const childImp = child.getNodeImp();
    if (!node || childImp == nullptr || !of(*childImp))
        return PelDOM::NULL_NODE;
    PelXercesEditing::append(node, of(*childImp));
    return PelDOM::SUCCESS;
}

PelDOM::Error PelXercesDOMNode::getParentNode(PelDOMNode& out) {
    if (!node)
        return PelDOM::NULL_NODE;
    give(node, node->getParentNode(), out);
    return PelDOM::SUCCESS;
}

PelDOM::NodeType PelXercesDOMNode::getNodeType() {
    return node.getType();
}

PelDOM::Error PelXercesDOMNode::getChildNodes(PelDOMNodeList& out) {
    if (!node)
        return PelDOM::NULL_NODE;
    out = PelDOMNodeList(new PelXercesDOMNodeList(node));
    return PelDOM::SUCCESS;
}

PelDOMNodeImp* PelXercesDOMNode::clone() {
    return make(node);
}

PelDOMNodeContentImp* PelXercesDOMNode::createContentImp(const PelDOM::NodeType& type) {
    switch (type) {
    case PelDOM::ELEMENT_NODE:
        return new PelXercesDOMElement;
    case PelDOM::TEXT_NODE:
        return new PelXercesDOMText;
    case PelDOM::DOCUMENT_NODE:
        return new PelXercesDOMDocument;
    default:
        noteMissingContent(type);
        return nullptr;
    }
}

PelDOMNodeImp* PelXercesDOMNode::getRelative(Relative which) const {
    return node ? makeUntraced(node, PelXercesWalk::relativeOf(*node.getNode(), which)) : nullptr;
}

bool PelXercesDOMNode::hasChildNodes() const {
    return node && node->getFirstChild() != nullptr;
}

PelString PelXercesDOMNode::getNodeName() const {
    return node ? node->getNodeName() : PelString();
}

PelString PelXercesDOMNode::getNodeValue() const {
    return PelXercesContent::valueOf(node);
}

PelString PelXercesDOMNode::getTextContent() const {
    return PelXercesContent::textOf(node);
}

PelDOM::Error PelXercesDOMNode::setNodeValue(const PelString& value) {
    return node ? PelXercesContent::setValue(node, value) : PelDOM::NULL_NODE;
}

PelDOM::Error PelXercesDOMNode::setTextContent(const PelString& text) {
    return node ? PelXercesContent::setText(node, text) : PelDOM::NULL_NODE;
}

PelDOMNodeListImp* PelXercesDOMNode::listChildren() const {
    return node ? new PelXercesDOMNodeList(node) : nullptr;
}

PelDOMNodeListImp* PelXercesDOMNode::listElements(const PelString& name) const {
    return node ? new PelXercesDOMNodeList(node, name.view()) : nullptr;
}

PelDOM::Error PelXercesDOMNode::insertBefore(const PelDOMNode& child, const PelDOMNode& before) {
    const PelXercesNodeRef inserted = of(child);
    if (!node || !inserted)
        return PelDOM::NULL_NODE;
    return PelXercesEditing::insert(node, inserted, of(before)) ? PelDOM::SUCCESS
                                                                : PelDOM::INVALID_VALUE;
}

PelDOM::Error PelXercesDOMNode::replaceChild(const PelDOMNode& child, const PelDOMNode& old) {
    const PelXercesNodeRef inserted = of(child);
    const PelXercesNodeRef removed = of(old);
    if (!node || !inserted || !removed)
        return PelDOM::NULL_NODE;
    return PelXercesEditing::replace(node, inserted, removed) ? PelDOM::SUCCESS
                                                              : PelDOM::INVALID_VALUE;
}

PelDOM::Error PelXercesDOMNode::removeChild(const PelDOMNode& child) {
    const PelXercesNodeRef removed = of(child);
    if (!node || !removed)
        return PelDOM::NULL_NODE;
    return PelXercesEditing::remove(node, removed) ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE;
}

PelDOMNodeImp* PelXercesDOMNode::copyNode(bool deep) const {
    return node ? makeUntraced(PelXercesContent::copy(node, node, deep)) : nullptr;
}

PelDOMNodeImp::Position PelXercesDOMNode::getPosition() const {
    const PelXercesKeptSource* const source = node ? node.getTree().getSource() : nullptr;
    if (source == nullptr || source->placeOf(*node.getNode()) == nullptr)
        return {};
    const auto [line, column] = source->positionOf(*node.getNode());
    return {line, column};
}

PelXercesNodeRef PelXercesDOMNode::of(const PelDOMNode& handle) {
    const PelDOMNodeImp* const imp = handle.getNodeImp();
    return imp != nullptr ? of(*imp) : PelXercesNodeRef();
}

const PelXercesNodeRef* PelXercesDOMNode::of(const PelDOMNodeContentImp& content) {
    const PelDOMNodeImp* const owner = content.getNodeImp();
    return owner != nullptr ? &of(*owner) : nullptr;
}
