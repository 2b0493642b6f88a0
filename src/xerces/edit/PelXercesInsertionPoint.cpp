// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesInsertionPoint.h"

#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <string_view>

using xercesc::DOMNode;

namespace {

bool isSpace(std::u16string_view text) {
    return !text.empty() && text.find_first_not_of(u" \t\r\n") == text.npos;
}

} // namespace

bool PelXercesInsertionPoint::allows(const PelXercesNodeRef& child) const {
    if (&child.getTree() != &owner.getTree())
        return false;
    switch (owner->getNodeType()) {
    case DOMNode::ELEMENT_NODE:
        return allowsInElement(child);
    case DOMNode::DOCUMENT_NODE:
        return allowsInDocument(child);
    default:
        return false;
    }
}

bool PelXercesInsertionPoint::allowsInElement(const PelXercesNodeRef& child) const {
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
    if (owner.getNode() == child.getNode())
        return false;
    if (child->getFirstChild() == nullptr)
        return true;
    for (const DOMNode* node = owner->getParentNode(); node != nullptr;
         node = node->getParentNode())
        if (node == child.getNode())
            return false;
    return true;
}

// The declaration comes first, the document type before the root, of each there is one at most.
bool PelXercesInsertionPoint::allowsInDocument(const PelXercesNodeRef& child) const {
    const DOMNode* following = next;
    while (following != nullptr && (following == child.getNode() || following == leaver))
        following = following->getNextSibling();
    if (following != nullptr && PelXercesDeclaration::isDeclaration(*following))
        return false;
    const xercesc::DOMDocument& document = *owner.getDocument();
    const DOMNode* const root = document.getDocumentElement();
    const DOMNode* const type = document.getDoctype();
    switch (child.getType()) {
    case PelDOM::COMMENT_NODE:
    case PelDOM::PROCESSING_INSTRUCTION_NODE:
        return true;
    case PelDOM::TEXT_NODE:
        return isSpace(child->getNodeValue());
    case PelDOM::ELEMENT_NODE:
        return isAlone(root, *child.getNode()) && (type == leaver || !isBehind(type));
    case PelDOM::DOCUMENT_TYPE_NODE:
        return isAlone(type, *child.getNode()) &&
               (root == leaver || root == nullptr || isBehind(root));
    case PelDOM::XML_DECL_NODE: {
        const DOMNode* first = owner->getFirstChild();
        while (first != nullptr && (first == child.getNode() || first == leaver))
            first = first->getNextSibling();
        return first == following;
    }
    default:
        return false;
    }
}

// Whether a document would hold no other node of the kind of `child`.
bool PelXercesInsertionPoint::isAlone(const DOMNode* former, const DOMNode& child) const {
    return former == nullptr || former == &child || former == leaver;
}

// Whether a child comes after this place.
bool PelXercesInsertionPoint::isBehind(const DOMNode* node) const {
    for (const DOMNode* sibling = next; sibling != nullptr; sibling = sibling->getNextSibling())
        if (sibling == node)
            return true;
    return false;
}
