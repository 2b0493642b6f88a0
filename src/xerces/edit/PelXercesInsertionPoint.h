// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesNodeRef.h"

#include <xercesc/dom/DOMNode.hpp>

/// A place among the children of a node, where another node is about to go.
class PelXercesInsertionPoint {
public:
    /// In front of `before`, a child of `parent`, or behind all children; `leaving`, which may be
    /// none, is the child that makes room.
    PelXercesInsertionPoint(const PelXercesNodeRef& parent, xercesc::DOMNode* before,
                            const xercesc::DOMNode* leaving)
        : owner(parent), next(before), leaver(leaving) {}

    /// Whether XML and the DOM allow `child`, with all below it, to go there.
    bool allows(const PelXercesNodeRef& child) const;

private:
    bool allowsInElement(const PelXercesNodeRef& child) const;
    bool allowsInDocument(const PelXercesNodeRef& child) const;
    bool isAlone(const xercesc::DOMNode* former, const xercesc::DOMNode& child) const;
    bool isBehind(const xercesc::DOMNode* node) const;

    const PelXercesNodeRef& owner;
    xercesc::DOMNode* const next;
    const xercesc::DOMNode* const leaver;
};
