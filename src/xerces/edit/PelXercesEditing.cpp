// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesEditing.h"

#include "xerces/edit/PelXercesInsertionPoint.h"
#include "xerces/edit/PelXercesRenaming.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/engine/PelXercesMemory.h"
#include "xerces/tree/PelXercesDeclaration.h"

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

using Change = PelXercesChangeLog::Change;

// What lists are told of a child that has come, or is about to go.
Change changeOf(xercesc::DOMNode& child, Change::Kind kind) {
    Change change;
    change.kind = kind;
    change.node = &child;
    change.isLeaf = child.getFirstChild() == nullptr;
    if (child.getNodeType() == xercesc::DOMNode::ELEMENT_NODE)
        change.name = child.getNodeName();
    if (PelXercesFields::areKnown()) {
        xercesc::DOMNodeImpl& node = PelXercesFields::nodeOf(child);
        const xercesc::DOMChildNode& links = PelXercesFields::linksOf(child);
        change.parent = node.isOwned() ? PelXercesFields::ownerOf(node) : nullptr;
        change.previous = node.isFirstChild() ? nullptr : links.previousSibling;
        change.next = links.nextSibling;
    } else {
        change.parent = child.getParentNode();
        change.previous = child.getPreviousSibling();
        change.next = child.getNextSibling();
    }
    return change;
}

// An element whose links may be set here; null when that is left to the engine.
xercesc::DOMElementImpl* linkedElement(xercesc::DOMNode& node) {
    if (!PelXercesFields::areKnown() || node.getNodeType() != xercesc::DOMNode::ELEMENT_NODE)
        return nullptr;
    auto& element = static_cast<xercesc::DOMElementImpl&>(node);
    return PelXercesFields::nodeOf(element).isReadOnly() ? nullptr : &element;
}

void unlink(PelXercesTree& tree, xercesc::DOMNode& child) {
    xercesc::DOMNode* const parent = child.getParentNode();
    if (parent == nullptr)
        return;
    const Change change = changeOf(child, Change::REMOVAL);
    if (xercesc::DOMElementImpl* const element = linkedElement(*parent))
        PelXercesLinks::remove(*element, child);
    else
        parent->removeChild(&child);
    tree.changes.record(change);
}

// Puts a node where it may go.
void link(const PelXercesNodeRef& parent, xercesc::DOMNode& child, xercesc::DOMNode* before) {
    if (before == &child)
        before = child.getNextSibling();
    unlink(parent.getTree(), child);
    if (xercesc::DOMElementImpl* const element = linkedElement(*parent.getNode()))
        PelXercesLinks::insert(*element, child, before);
    else
        parent->insertBefore(&child, before);
    parent.getTree().changes.record(changeOf(child, Change::INSERTION));
}

// The same for a new and empty node, as the last child of an element.
template <class Node>
void linkNew(PelXercesTree& tree, xercesc::DOMElementImpl& parent, Node& child, const XMLCh* name) {
    if (linkedElement(parent) != nullptr)
        PelXercesLinks::append(parent, child);
    else
        parent.appendChild(&child);
    tree.changes.record(
        {Change::INSERTION, &parent, &child, nullptr, nullptr, name, nullptr, true});
}

} // namespace

void PelXercesEditing::append(const PelXercesNodeRef& parent, const PelXercesNodeRef& appended) {
    xercesc::DOMNode& child = *appended.getNode();
    if (linkedElement(*parent.getNode()) != nullptr &&
        PelXercesInsertionPoint(parent, nullptr, nullptr).allows(appended)) {
        link(parent, child, nullptr);
        return;
    }
    if (isForbidden(parent, child))
        throw xercesc::DOMException(xercesc::DOMException::HIERARCHY_REQUEST_ERR, 0,
                                    &PelXercesMemory::get());
    Change removal;
    if (child.getParentNode() != nullptr)
        removal = changeOf(child, Change::REMOVAL);
    parent->appendChild(&child);
    PelXercesChangeLog& changes = parent.getTree().changes;
    if (removal.parent != nullptr) {
        // Now that the engine allows it: a removal is told while the node is nowhere.
        parent->removeChild(&child);
        changes.record(removal);
        parent->appendChild(&child);
    }
    changes.record(changeOf(child, Change::INSERTION));
}

void PelXercesEditing::appendTextElement(const PelXercesNodeRef& parent, const XMLCh* name,
                                         const XMLCh* text) {
    PelXercesTree& tree = parent.getTree();
    tree.orphans.prepare(0);
    tree.nodes.requireName(name);
    xercesc::DOMElementImpl& element = tree.nodes.makeElement(name);
    xercesc::DOMTextImpl* content = nullptr;
    try {
        content = &tree.nodes.makeText(text);
    } catch (...) {
        tree.nodes.takeBack(element);
        throw;
    }
    // The element comes empty, which is of no concern to lists of other names.
    linkNew(tree, *parent.as<xercesc::DOMElementImpl>(), element, element.getTagName());
    linkNew(tree, element, *content, nullptr);
}

bool PelXercesEditing::insert(const PelXercesNodeRef& parent, const PelXercesNodeRef& child,
                              const PelXercesNodeRef& before) {
    if (before && before->getParentNode() != parent.getNode())
        return false;
    if (!PelXercesInsertionPoint(parent, before.getNode(), nullptr).allows(child))
        return false;
    if (before.getNode() != child.getNode())
        link(parent, *child.getNode(), before.getNode());
    return true;
}

bool PelXercesEditing::replace(const PelXercesNodeRef& parent, const PelXercesNodeRef& child,
                               const PelXercesNodeRef& old) {
    if (old->getParentNode() != parent.getNode())
        return false;
    if (old.getNode() == child.getNode())
        return true;
    xercesc::DOMNode* const next = old->getNextSibling();
    if (!PelXercesInsertionPoint(parent, next, old.getNode()).allows(child))
        return false;
    parent.getTree().orphans.prepare();
    unlink(parent.getTree(), *old.getNode());
    parent.getTree().orphans.add(*old.getNode());
    link(parent, *child.getNode(), next);
    return true;
}

bool PelXercesEditing::remove(const PelXercesNodeRef& parent, const PelXercesNodeRef& child) {
    if (child->getParentNode() != parent.getNode())
        return false;
    parent.getTree().orphans.prepare();
    unlink(parent.getTree(), *child.getNode());
    parent.getTree().orphans.add(*child.getNode());
    return true;
}

void PelXercesEditing::replaceChildren(const PelXercesNodeRef& parent, const XMLCh* text) {
    PelXercesTree& tree = parent.getTree();
    std::size_t count = 0;
    for (xercesc::DOMNode* child = parent->getFirstChild(); child != nullptr;
         child = child->getNextSibling())
        ++count;
    tree.orphans.prepare(count);
    xercesc::DOMTextImpl* const made = text != nullptr ? &tree.nodes.makeText(text) : nullptr;
    while (xercesc::DOMNode* const child = parent->getFirstChild()) {
        unlink(tree, *child);
        tree.orphans.add(*child);
    }
    if (made != nullptr)
        linkNew(tree, *parent.as<xercesc::DOMElementImpl>(), *made, nullptr);
}

void PelXercesEditing::rename(const PelXercesNodeRef& element, const XMLCh* name) {
    auto& renamed = *element.as<xercesc::DOMElementImpl>();
    const XMLCh* const former = renamed.getTagName();
    PelXercesRenaming::rename(renamed, name, element.getTree().nodes);
    Change change;
    change.kind = Change::RENAMING;
    change.parent = renamed.getParentNode();
    change.node = &renamed;
    change.name = renamed.getTagName();
    change.formerName = former;
    element.getTree().changes.record(change);
}
