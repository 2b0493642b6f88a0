// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesWalk.h"

#include "xerces/engine/PelXercesLinks.h"

#include <xercesc/dom/DOMElement.hpp>

using xercesc::DOMNode;

DOMNode* PelXercesWalk::relativeOf(const DOMNode& node, Relative which) {
    switch (which) {
    case Relative::OWNER_DOCUMENT:
        return node.getOwnerDocument();
    case Relative::PARENT:
        return node.getParentNode();
    case Relative::FIRST_CHILD:
        return node.getFirstChild();
    case Relative::LAST_CHILD:
        return node.getLastChild();
    case Relative::NEXT_SIBLING:
        return node.getNextSibling();
    case Relative::PREVIOUS_SIBLING:
        return node.getPreviousSibling();
    }
    return nullptr;
}

DOMNode* PelXercesWalk::elementFrom(const DOMNode& node, Relative start, std::u16string_view name) {
    const bool isBackwards = start == Relative::LAST_CHILD || start == Relative::PREVIOUS_SIBLING;
    const XMLCh* pooled = nullptr;
    DOMNode* found = relativeOf(node, start);
    while (found != nullptr && !isElement(*found, name, pooled))
        found = isBackwards ? found->getPreviousSibling() : PelXercesLinks::nextOf(*found);
    return found;
}

DOMNode* PelXercesWalk::nextInTree(const DOMNode& root, DOMNode* node) {
    DOMNode* const child = node->getFirstChild();
    return child != nullptr ? child : nextBehind(root, node);
}

DOMNode* PelXercesWalk::nextBehind(const DOMNode& root, const DOMNode* node) {
    for (; node != &root; node = node->getParentNode())
        if (DOMNode* const sibling = node->getNextSibling())
            return sibling;
    return nullptr;
}

DOMNode* PelXercesWalk::lastWithin(DOMNode* node) {
    while (DOMNode* const child = node->getLastChild())
        node = child;
    return node;
}

bool PelXercesWalk::isElement(const DOMNode& node, std::u16string_view name, const XMLCh*& pooled) {
    if (PelXercesLinks::typeOf(node) != DOMNode::ELEMENT_NODE)
        return false;
    if (name == u"*")
        return true;
    const XMLCh* const tagName = static_cast<const xercesc::DOMElement&>(node).getTagName();
    if (pooled != nullptr)
        return tagName == pooled;
    if (tagName != name)
        return false;
    pooled = tagName;
    return true;
}
