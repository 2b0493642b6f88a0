// SPDX-License-Identifier: MIT
#include "xerces/PelXercesEditing.h"

#include "xerces/PelXercesDeclaration.h"
#include "xerces/PelXercesLinks.h"
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

// The node may be new, yet the parent read-only: then the engine says so.
template <class EngineNode, class Node>
void link(const PelXercesNodeRef& parent, Node& child) {
    auto& element = *parent.as<xercesc::DOMElementImpl>();
    if (PelXercesLinks::areKnown && !element.fNode.isReadOnly())
        PelXercesLinks::append(element, static_cast<EngineNode&>(child));
    else
        element.appendChild(&child);
    parent.getTree().changes.record({parent.getNode(), &child, false, true});
}

} // namespace

void PelXercesEditing::append(const PelXercesNodeRef& parent, xercesc::DOMNode& child) {
    if (isForbidden(parent, child))
        throw xercesc::DOMException(xercesc::DOMException::HIERARCHY_REQUEST_ERR, 0,
                                    &PelXercesMemory::get());
    const xercesc::DOMNode* const oldParent = child.getParentNode();
    parent->appendChild(&child);
    const bool isLeaf = child.getFirstChild() == nullptr;
    PelXercesChanges& changes = parent.getTree().changes;
    if (oldParent != nullptr)
        changes.record({oldParent, &child, true, isLeaf});
    changes.record({parent.getNode(), &child, false, isLeaf});
}

void PelXercesEditing::appendNew(const PelXercesNodeRef& parent, xercesc::DOMElement& child) {
    link<xercesc::DOMElementImpl>(parent, child);
}

void PelXercesEditing::appendNew(const PelXercesNodeRef& parent, xercesc::DOMText& child) {
    link<xercesc::DOMTextImpl>(parent, child);
}
