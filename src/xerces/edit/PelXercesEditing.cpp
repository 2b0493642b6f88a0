// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesEditing.h"

#include "core/PelCharacters.h"
#include "xerces/edit/PelXercesAttributes.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/engine/PelXercesMemory.h"
#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/dom/DOMException.hpp>

#include <string_view>

using xercesc::DOMNode;

namespace {

/// A place among the children of a node, where another node is about to go.
struct InsertionPoint {
    const PelXercesNodeRef& parent;
    const DOMNode* next;    // null: behind all children
    const DOMNode* leaving; // the child that makes room, or null

    bool allows(const PelXercesNodeRef& child) const;
    bool allowsInElement(const PelXercesNodeRef& child) const;
    bool allowsInDocument(const PelXercesNodeRef& child) const;
    bool isAlone(const DOMNode* former, const DOMNode& child) const;
    bool isInFrontOf(const DOMNode* node) const;
};

bool isSpace(std::u16string_view text) {
    return !text.empty() && text.find_first_not_of(PelCharacters::space) == text.npos;
}

bool InsertionPoint::allows(const PelXercesNodeRef& child) const {
    if (&child.getTree() != &parent.getTree())
        return false;
    switch (parent->getNodeType()) {
    case DOMNode::ELEMENT_NODE:
        return allowsInElement(child);
    case DOMNode::DOCUMENT_NODE:
        return allowsInDocument(child);
    default:
        return false;
    }
}

bool InsertionPoint::allowsInElement(const PelXercesNodeRef& child) const {
    switch (child.getType()) {
    case PelDOM::ELEMENT_NODE:
    case PelDOM::ENTITY_REFERENCE_NODE:
        break;
    case PelDOM::TEXT_NODE:
    case PelDOM::CDATA_SECTION_NODE:
    case PelDOM::COMMENT_NODE:
    case PelDOM::PROCESSING_INSTRUCTION_NODE:
        return true;
    default:
        return false;
    }
    if (parent.getNode() == child.getNode())
        return false;
    if (child->getFirstChild() == nullptr)
        return true;
    for (const DOMNode* node = parent->getParentNode(); node != nullptr;
         node = node->getParentNode())
        if (node == child.getNode())
            return false;
    return true;
}

// The declaration comes first, then the document type, then the root; at most one of each.
bool InsertionPoint::allowsInDocument(const PelXercesNodeRef& child) const {
    const DOMNode* following = next;
    while (following != nullptr && (following == child.getNode() || following == leaving))
        following = following->getNextSibling();
    if (following != nullptr && PelXercesDeclaration::isDeclaration(*following))
        return false;
    const xercesc::DOMDocument& document = *parent.getDocument();
    const DOMNode* const root = document.getDocumentElement();
    const DOMNode* const type = document.getDoctype();
    switch (child.getType()) {
    case PelDOM::COMMENT_NODE:
    case PelDOM::PROCESSING_INSTRUCTION_NODE:
        return true;
    case PelDOM::TEXT_NODE:
        return isSpace(child->getNodeValue());
    case PelDOM::ELEMENT_NODE:
        return isAlone(root, *child.getNode()) && (type == leaving || !isInFrontOf(type));
    case PelDOM::DOCUMENT_TYPE_NODE:
        return isAlone(type, *child.getNode()) &&
               (root == leaving || root == nullptr || isInFrontOf(root));
    case PelDOM::XML_DECL_NODE: {
        const DOMNode* first = parent->getFirstChild();
        while (first != nullptr && (first == child.getNode() || first == leaving))
            first = first->getNextSibling();
        return first == following;
    }
    default:
        return false;
    }
}

// Whether `child` would be the only node of its kind; `former` is the present one.
bool InsertionPoint::isAlone(const DOMNode* former, const DOMNode& child) const {
    return former == nullptr || former == &child || former == leaving;
}

bool InsertionPoint::isInFrontOf(const DOMNode* node) const {
    for (const DOMNode* sibling = next; sibling != nullptr; sibling = sibling->getNextSibling())
        if (sibling == node)
            return true;
    return false;
}

// Forbidden by the DOM, and yet let through by the engine: its search for cycles starts above the
// node itself, and it does not know the declaration.
bool isForbidden(const PelXercesNodeRef& parent, const DOMNode& child) {
    if (parent.getNode() == &child)
        return true;
    return PelXercesDeclaration::isDeclaration(child) &&
           parent->getNodeType() != DOMNode::DOCUMENT_NODE;
}

using Change = PelXercesChangeLog::Change;

// The change of a child that has come, or is about to go.
Change changeOf(DOMNode& child, Change::Kind kind) {
    Change change;
    change.kind = kind;
    change.node = &child;
    change.isLeaf = child.getFirstChild() == nullptr;
    if (child.getNodeType() == DOMNode::ELEMENT_NODE)
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
xercesc::DOMElementImpl* linkedElement(DOMNode& node) {
    if (!PelXercesFields::areKnown() || node.getNodeType() != DOMNode::ELEMENT_NODE)
        return nullptr;
    auto& element = static_cast<xercesc::DOMElementImpl&>(node);
    return PelXercesFields::nodeOf(element).isReadOnly() ? nullptr : &element;
}

void unlink(PelXercesTree& tree, DOMNode& child) {
    DOMNode* const parent = child.getParentNode();
    if (parent == nullptr)
        return;
    const Change change = changeOf(child, Change::REMOVAL);
    if (xercesc::DOMElementImpl* const element = linkedElement(*parent))
        PelXercesLinks::remove(*element, child);
    else
        parent->removeChild(&child);
    tree.record(change);
}

// Puts a node where it may go.
void link(const PelXercesNodeRef& parent, DOMNode& child, DOMNode* before) {
    if (before == &child)
        before = child.getNextSibling();
    unlink(parent.getTree(), child);
    if (xercesc::DOMElementImpl* const element = linkedElement(*parent.getNode()))
        PelXercesLinks::insert(*element, child, before);
    else
        parent->insertBefore(&child, before);
    parent.getTree().record(changeOf(child, Change::INSERTION));
}

// The same for a new and empty node, as the last child of an element.
template <class Node>
void linkNew(PelXercesTree& tree, xercesc::DOMElementImpl& parent, Node& child, const XMLCh* name) {
    if (linkedElement(parent) != nullptr)
        PelXercesLinks::append(parent, child);
    else
        parent.appendChild(&child);
    tree.record({Change::INSERTION, &parent, &child, nullptr, nullptr, name, nullptr, true});
}

} // namespace

void PelXercesEditing::append(const PelXercesNodeRef& parent, const PelXercesNodeRef& appended) {
    DOMNode& child = *appended.getNode();
    if (linkedElement(*parent.getNode()) != nullptr &&
        InsertionPoint{parent, nullptr, nullptr}.allows(appended)) {
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
    PelXercesTree& tree = parent.getTree();
    if (removal.parent != nullptr) {
        // The engine allows it. A removal is recorded while the node has no parent.
        parent->removeChild(&child);
        tree.record(removal);
        parent->appendChild(&child);
    }
    tree.record(changeOf(child, Change::INSERTION));
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
    // The element is recorded while it is empty: a leaf costs lists of other names nothing.
    linkNew(tree, *parent.as<xercesc::DOMElementImpl>(), element, element.getTagName());
    linkNew(tree, element, *content, nullptr);
}

bool PelXercesEditing::insert(const PelXercesNodeRef& parent, const PelXercesNodeRef& child,
                              const PelXercesNodeRef& before) {
    if (before && before->getParentNode() != parent.getNode())
        return false;
    if (!InsertionPoint{parent, before.getNode(), nullptr}.allows(child))
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
    DOMNode* const next = old->getNextSibling();
    if (!InsertionPoint{parent, next, old.getNode()}.allows(child))
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
    for (DOMNode* child = parent->getFirstChild(); child != nullptr;
         child = child->getNextSibling())
        ++count;
    tree.orphans.prepare(count);
    xercesc::DOMTextImpl* const made = text != nullptr ? &tree.nodes.makeText(text) : nullptr;
    DOMNode* const former = parent->getFirstChild();
    const bool isSame = made != nullptr && count == 1 &&
                        former->getNodeType() == DOMNode::TEXT_NODE &&
                        std::u16string_view(former->getNodeValue()) == text;
    while (DOMNode* const child = parent->getFirstChild()) {
        unlink(tree, *child);
        tree.orphans.add(*child);
    }
    if (made != nullptr)
        linkNew(tree, *parent.as<xercesc::DOMElementImpl>(), *made, nullptr);
    if (isSame)
        tree.passPlace(*former, *made);
}

void PelXercesEditing::rename(const PelXercesNodeRef& element, const XMLCh* name) {
    auto& renamed = *element.as<xercesc::DOMElementImpl>();
    const XMLCh* const former = renamed.getTagName();
    PelXercesAttributes::rename(element, name);
    Change change;
    change.kind = Change::RENAMING;
    change.parent = renamed.getParentNode();
    change.node = &renamed;
    change.name = renamed.getTagName();
    change.formerName = former;
    element.getTree().record(change);
}
