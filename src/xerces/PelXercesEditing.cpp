// SPDX-License-Identifier: MIT
#include "xerces/PelXercesEditing.h"

#include "xerces/PelXercesDeclaration.h"
#include "xerces/PelXercesMemory.h"

#include <xercesc/dom/DOMException.hpp>

namespace {

// What the engine lets through although the DOM forbids it: its search for cycles starts above the
// node itself, and it does not know the declaration.
bool isForbidden(const PelXercesNodeRef& parent, const xercesc::DOMNode& child) {
    if (parent.getNode() == &child)
        return true;
    return PelXercesDeclaration::isDeclaration(child) &&
           parent->getNodeType() != xercesc::DOMNode::DOCUMENT_NODE;
}

} // namespace

void PelXercesEditing::append(const PelXercesNodeRef& parent, xercesc::DOMNode& child) {
    if (isForbidden(parent, child))
        throw xercesc::DOMException(xercesc::DOMException::HIERARCHY_REQUEST_ERR, 0,
                                    &PelXercesMemory::get());
    const xercesc::DOMNode* const oldParent = child.getParentNode();
    parent->appendChild(&child);
    PelXercesChanges& changes = parent.getTree().changes;
    if (oldParent != nullptr)
        changes.record(oldParent, &child, true);
    changes.record(parent.getNode(), &child, false);
}
