// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesTree.h"

#include <qrndom/PelDOM.h>

#include <xercesc/dom/DOMNode.hpp>

#include <utility>

/// A reference to one node of an engine tree, or to no node. The tree knows all references into it:
/// the last one takes it along, and no node goes that one of them leads to.
class PelXercesNodeRef {
public:
    PelXercesNodeRef() noexcept = default;

    /// A reference to `engineNode` of `ownTree`; to no node when it is null.
    PelXercesNodeRef(PelXercesTree& ownTree, xercesc::DOMNode* engineNode) noexcept
        : node(engineNode) {
        join(engineNode != nullptr ? &ownTree : nullptr);
    }

    PelXercesNodeRef(const PelXercesNodeRef& other) noexcept : node(other.node) {
        join(other.tree);
    }

    PelXercesNodeRef& operator=(const PelXercesNodeRef& other) noexcept {
        const PelXercesNodeRef former(*this); // both may be the last
        leave();
        join(other.tree);
        node = other.node;
        return *this;
    }

    ~PelXercesNodeRef() { leave(); }

    explicit operator bool() const noexcept { return node != nullptr; }
    xercesc::DOMNode* operator->() const noexcept { return node; }

    xercesc::DOMNode* getNode() const noexcept { return node; }

    /// The tree of a reference to a node.
    PelXercesTree& getTree() const noexcept { return *tree; }

    xercesc::DOMDocument* getDocument() const noexcept { return tree->getDocument(); }

    /// The node as the engine class that its type stands for; no check is made.
    template <class EngineNode>
    EngineNode* as() const noexcept {
        return static_cast<EngineNode*>(node);
    }

    /// A reference to another node of the same tree, or to none.
    PelXercesNodeRef to(xercesc::DOMNode* other) const noexcept {
        return other != nullptr ? PelXercesNodeRef(*tree, other) : PelXercesNodeRef();
    }

    /// The reference into the same tree that is next older; null after the last.
    const PelXercesNodeRef* getOlder() const noexcept { return older; }

    /// NO_NODE for a reference to none.
    PelDOM::NodeType getType() const { return typeOf(node); }
    static PelDOM::NodeType typeOf(const xercesc::DOMNode* engineNode);

private:
    void join(PelXercesTree* ownTree) noexcept {
        tree = ownTree;
        if (tree == nullptr)
            return;
        newer = nullptr;
        older = std::exchange(tree->newest, this);
        if (older != nullptr)
            older->newer = this;
    }

    void leave() noexcept {
        if (tree == nullptr)
            return;
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the last one deletes
        (newer != nullptr ? newer->older : tree->newest) = older;
        if (older != nullptr)
            older->newer = newer;
        else if (newer == nullptr)
            delete tree;
    }

    PelXercesTree* tree = nullptr;
    xercesc::DOMNode* node = nullptr;
    PelXercesNodeRef* newer = nullptr;
    PelXercesNodeRef* older = nullptr;
};
