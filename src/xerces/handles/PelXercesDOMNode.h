// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMNodeImp.h"
#include "xerces/tree/PelXercesTree.h"

#include <utility>

class PelDOMNodeContentImp;

/// The node implementation over the engine: a counted reference to one engine node, or to none.
/// Immutable; what it refers to may change.
///
/// Over no node, every operation answers NULL_NODE and changes nothing.
class PelXercesDOMNode : public PelDOMNodeImp {
public:
    /// A new object over a node of the tree of `origin`, or over none. Writes a line to the log for
    /// a node whose type has no content.
    static PelXercesDOMNode* make(const PelXercesNodeRef& origin, xercesc::DOMNode* engineNode);
    static PelXercesDOMNode* make(const PelXercesNodeRef& engineNode) {
        return make(engineNode, engineNode.getNode());
    }

    /// The same without a line in the log; null for no node.
    static PelXercesDOMNode* makeUntraced(const PelXercesNodeRef& origin,
                                          xercesc::DOMNode* engineNode);
    static PelXercesDOMNode* makeUntraced(const PelXercesNodeRef& engineNode) {
        return makeUntraced(engineNode, engineNode.getNode());
    }

    PelDOM::Error getOwnerDocument(PelDOMDocument& out) override;
    PelDOM::Error appendChild(PelDOMNode& child) override;
    PelDOM::Error getParentNode(PelDOMNode& out) override;
    PelDOM::NodeType getNodeType() override;
    PelDOM::Error getChildNodes(PelDOMNodeList& out) override;
    PelDOMNodeImp* clone() override;
    PelDOMNodeContentImp* createContentImp(const PelDOM::NodeType& type) override;
    const void* getIdentity() const noexcept override { return node.getNode(); }
    PelDOMNodeImp* getRelative(Relative which) const override;
    bool hasChildNodes() const override;
    PelString getNodeName() const override;
    PelString getNodeValue() const override;
    PelString getTextContent() const override;
    PelDOM::Error setNodeValue(const PelString& value) override;
    PelDOM::Error setTextContent(const PelString& text) override;
    PelDOMNodeListImp* listChildren() const override;
    PelDOMNodeListImp* listElements(const PelString& name) const override;
    PelDOM::Error insertBefore(const PelDOMNode& child, const PelDOMNode& before) override;
    PelDOM::Error replaceChild(const PelDOMNode& child, const PelDOMNode& old) override;
    PelDOM::Error removeChild(const PelDOMNode& child) override;
    PelDOMNodeImp* copyNode(bool deep) const override;
    Position getPosition() const override;

    const PelXercesNodeRef& getDOMNode() const noexcept { return node; }

    /// The engine node of a node implementation, all of which are of this class.
    static const PelXercesNodeRef& of(const PelDOMNodeImp& imp) {
        return static_cast<const PelXercesDOMNode&>(imp).getDOMNode();
    }

    /// The engine node of a handle; none for a null handle.
    static PelXercesNodeRef of(const PelDOMNode& handle);

    /// The engine node that a content object works on; null when the content has no owner.
    static const PelXercesNodeRef* of(const PelDOMNodeContentImp& content);

    /// Writes a line to the log about a node without content.
    static void noteMissingContent(PelDOM::NodeType type);

    /// Puts a handle to a node of the tree of `origin`, or to none, into a caller's handle. The log
    /// shows an assignment, and a second line for a node without content.
    template <class Handle>
    static void give(const PelXercesNodeRef& origin, xercesc::DOMNode* engineNode, Handle& out) {
        Handle temporary(make(origin, engineNode));
        out = std::move(temporary);
        if (out.getContentImp() == nullptr)
            noteMissingContent(out.getNodeType());
    }

protected:
    PelXercesDOMNode(const PelXercesNodeRef& origin, xercesc::DOMNode* engineNode)
        : PelDOMNodeImp(nullptr), node(origin.to(engineNode)) {}

private:
    static PelXercesDOMNode* makeTyped(const PelXercesNodeRef& origin,
                                       xercesc::DOMNode* engineNode);

    const PelXercesNodeRef node;
};
