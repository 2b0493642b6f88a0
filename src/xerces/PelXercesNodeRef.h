// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/PelXercesTree.h"

#include <qrndom/PelDOM.h>

#include <xercesc/dom/DOMNode.hpp>

#include <utility>

/// A counted reference to one node of an engine tree, or to no node.
class PelXercesNodeRef {
public:
    PelXercesNodeRef() noexcept = default;

    /// A reference to `engineNode` of `ownTree`; to no node when it is null.
    PelXercesNodeRef(PelXercesTree& ownTree, xercesc::DOMNode* engineNode) noexcept
        : tree(engineNode != nullptr ? &ownTree : nullptr), node(engineNode) {
        if (tree != nullptr)
            ++tree->references;
    }

    PelXercesNodeRef(const PelXercesNodeRef& other) noexcept : tree(other.tree), node(other.node) {
        if (tree != nullptr)
            ++tree->references;
    }

    PelXercesNodeRef& operator=(PelXercesNodeRef other) noexcept {
        std::swap(tree, other.tree);
        std::swap(node, other.node);
        return *this;
    }

    ~PelXercesNodeRef() {
        if (tree != nullptr && --tree->references == 0)
            delete tree;
    }

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
    PelXercesNodeRef to(xercesc::DOMNode* other) const noexcept { return {*tree, other}; }

    /// NO_NODE for a reference to none.
    PelDOM::NodeType getType() const;

private:
    PelXercesTree* tree = nullptr;
    xercesc::DOMNode* node = nullptr;
};
