// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMListImp.h"
#include "xerces/PelXercesCursor.h"
#include "xerces/PelXercesNodeRef.h"

#include <cstddef>
#include <string>
#include <string_view>

/// The list implementation over the engine's tree, which it keeps alive: the children of a node, or
/// its descendant elements with a tag name. It uses none of the engine's own lists, whose every
/// answer walks from the start.
///
/// It remembers its length and the place of the node asked for last, and follows the tree's
/// changes, so that a loop takes one step for each node.
class PelXercesDOMNodeList final : public PelDOMListImp {
public:
    explicit PelXercesDOMNodeList(const PelXercesNodeRef& parent)
        : PelXercesDOMNodeList(parent, true, {}) {}
    PelXercesDOMNodeList(const PelXercesNodeRef& top, std::u16string_view tagName)
        : PelXercesDOMNodeList(top, false, tagName) {}

    PelDOM::Error item(long index, PelDOMNode& out) override;
    long length() override;
    PelDOMNodeListImp* clone() override;
    bool isSameList(const PelDOMListImp& other) const noexcept override;
    std::shared_ptr<PelDOMCursor> walk() const override;

private:
    PelXercesDOMNodeList(const PelXercesNodeRef& rootNode, bool isOfChildren,
                         std::u16string_view tagName);

    std::size_t count();
    xercesc::DOMNode* nodeAt(std::size_t index);

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
    bool knowsCount = false;
    std::size_t knownCount = 0;
    xercesc::DOMNode* place = nullptr; // null: none
    std::size_t placeIndex = 0;
};
