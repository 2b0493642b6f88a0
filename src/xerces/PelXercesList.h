// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/PelXercesCursor.h"
#include "xerces/PelXercesNodeRef.h"

#include <cstddef>
#include <string>

/// A live list of nodes of a tree: the children of a node, or its descendant elements with a tag
/// name. Takes the place of the engine's own lists, whose every answer walks from the start.
///
/// It remembers its length and the place of the node asked for last, and follows the tree's
/// changes, so that a loop takes one step for each node.
class PelXercesList {
public:
    static PelXercesList ofChildren(const PelXercesNodeRef& parent);
    static PelXercesList ofElements(const PelXercesNodeRef& root, std::u16string_view tagName);

    /// Whether both list the same of the same node.
    bool isSame(const PelXercesList& other) const noexcept;

    /// The same nodes, for a cursor.
    PelXercesSelected getSelected() const;

    std::size_t length();

    /// The node at a position below the length, which was asked for since the last change.
    xercesc::DOMNode* item(std::size_t index);

    /// The node whose children or descendants they are.
    const PelXercesNodeRef& getRoot() const noexcept { return root; }

private:
    PelXercesList(const PelXercesNodeRef& rootNode, bool isOfChildren, std::u16string_view tagName);

    xercesc::DOMNode* first() const;
    xercesc::DOMNode* last() const;
    xercesc::DOMNode* next(xercesc::DOMNode* node) const;
    xercesc::DOMNode* previous(xercesc::DOMNode* node) const;
    bool matches(const xercesc::DOMNode& node) const;
    bool matches(const XMLCh* tagName) const;

    void catchUp();
    void follow(const PelXercesChanges::Change& change);
    void followInsertion(const PelXercesChanges::Change& change);
    void followRemoval(const PelXercesChanges::Change& change);
    void forget();

    PelXercesNodeRef root;
    bool ofChildNodes;
    std::u16string name;
    mutable const XMLCh* pooledName = nullptr; // null: no node has matched

    std::size_t seen; // the tree's changes that what follows takes into account
    bool knowsLength = false;
    std::size_t knownLength = 0;
    xercesc::DOMNode* place = nullptr; // null: none
    std::size_t placeIndex = 0;
};
