// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMCursor.h"
#include "xerces/tree/PelXercesTree.h"

#include <string>

/// The nodes of a loop or list: the children of a node, or elements with a tag name ("*": any)
/// among its children or anywhere below it.
struct PelXercesSelected {
    enum Kind { CHILDREN, CHILD_ELEMENTS, ELEMENTS };

    PelXercesNodeRef root;
    Kind kind;
    std::u16string name;
};

/// A loop over nodes. What is still to come lies between two nodes of the tree, `next` and `last`.
/// When one of them is removed, it moves inwards.
class PelXercesCursor final : public PelDOMCursor, private PelXercesChangeLog::Observer {
public:
    explicit PelXercesCursor(PelXercesSelected nodes);
    ~PelXercesCursor() override;

    bool step() override;
    PelDOMNodeImp* getNode() const override;

private:
    void follow(const PelXercesChangeLog::Change& change) noexcept override;
    bool isDeep() const;
    bool goesWith(const PelXercesChangeLog::Change& removal, const xercesc::DOMNode* node) const;

    const PelXercesSelected selected;
    xercesc::DOMNode* next = nullptr; // null when nothing is to come
    xercesc::DOMNode* last = nullptr;
    const XMLCh* pooledName = nullptr; // null: no node has matched
    PelXercesNodeRef present;
};

/// The child elements of an element.
class PelXercesChildElements final : public PelDOMSelection {
public:
    explicit PelXercesChildElements(PelXercesSelected children) : selected(std::move(children)) {}

    std::shared_ptr<PelDOMCursor> walk() const override;

private:
    const PelXercesSelected selected;
};
