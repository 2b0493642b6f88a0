// SPDX-License-Identifier: MIT
#pragma once

#include "query/PelXPathExpression.h"
#include "query/PelXPathTree.h"
#include "xerces/tree/PelXercesAttributeOrder.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <vector>

/// What lies on an axis, as seen from one node. Each function gives the nodes to `use`, in the
/// order of the axis, until that is true, and says whether it was. Nodes that an expression does
/// not see are among them.
namespace PelXPathAxes {

using Node = PelXPathTree::Node;

/// Whether the axis goes against the order of the document.
inline bool isReverse(PelXPathAxis axis) {
    return axis == PelXPathAxis::ANCESTOR || axis == PelXPathAxis::ANCESTOR_OR_SELF ||
           axis == PelXPathAxis::PRECEDING_SIBLING || axis == PelXPathAxis::PRECEDING;
}

/// The node behind another one and all in it, in the whole tree; null at the end.
inline Node* nextBehind(PelXPathTree& tree, const Node* node) {
    for (; node != nullptr; node = PelXercesLinks::parentOf(*node), tree.count())
        if (Node* const sibling = PelXercesLinks::nextOf(const_cast<Node&>(*node)))
            return sibling;
    return nullptr;
}

/// From a node to the end of what is below `root`, or of the whole tree where that is null.
template <class Use>
bool eachFromUntil(PelXPathTree& tree, Node* node, const Node* root, Use use) {
    while (node != nullptr) {
        if (use(*node))
            return true;
        Node* next = PelXercesLinks::firstChildOf(*node);
        while (next == nullptr && node != root && node != nullptr) {
            next = PelXercesLinks::nextOf(*node);
            if (next != nullptr)
                break;
            node = PelXercesLinks::parentOf(*node);
            tree.count();
        }
        node = next;
    }
    return false;
}

template <class Use>
bool eachBelow(PelXPathTree& tree, const Node& node, Use use) {
    return eachFromUntil(tree, PelXercesLinks::firstChildOf(node), &node, use);
}

template <class Use>
bool eachAncestor(Node* node, Use use) {
    for (; node != nullptr; node = PelXPathTree::parentOf(*node))
        if (use(*node))
            return true;
    return false;
}

template <class Use>
bool eachFrom(Node* sibling, Use use) {
    for (; sibling != nullptr; sibling = PelXercesLinks::nextOf(*sibling))
        if (use(*sibling))
            return true;
    return false;
}

template <class Use>
bool eachBackFrom(Node* sibling, Use use) {
    for (; sibling != nullptr; sibling = PelXercesLinks::previousOf(*sibling))
        if (use(*sibling))
            return true;
    return false;
}

/// Those that a test may take: one without a prefix asks for the attribute of that name.
template <class Use>
bool eachAttribute(const PelXPathTest& test, Node& node, Use use) {
    if (!PelXPathTree::isElement(node) || !node.hasAttributes())
        return false;
    if (test.kind == PelXPathTest::NAME && !test.prefix) {
        Node* const attribute =
            static_cast<xercesc::DOMElement&>(node).getAttributeNode(test.name.c_str());
        return attribute != nullptr && use(*attribute);
    }
    std::vector<xercesc::DOMAttr*> attributes;
    PelXercesAttributeOrder::list(node, attributes);
    for (xercesc::DOMAttr* const attribute : attributes)
        if (use(*attribute))
            return true;
    return false;
}

/// All behind an attribute is in its element, or behind that.
inline Node* firstFollowing(PelXPathTree& tree, const Node& node) {
    if (!PelXPathTree::isAttribute(node))
        return nextBehind(tree, &node);
    const Node* const element = PelXPathTree::parentOf(node);
    Node* const child = PelXercesLinks::firstChildOf(*element);
    return child != nullptr ? child : nextBehind(tree, element);
}

template <class Use>
bool eachPreceding(PelXPathTree& tree, Node& node, Use use) {
    Node* const start = PelXPathTree::isAttribute(node) ? PelXPathTree::parentOf(node) : &node;
    const Node* ancestor = PelXercesLinks::parentOf(*start);
    for (Node* current = start;;) {
        Node* const before = PelXercesLinks::previousOf(*current);
        if (before != nullptr) {
            current = before;
            for (Node* last = PelXercesLinks::lastChildOf(*current); last != nullptr;
                 last = PelXercesLinks::lastChildOf(*last)) {
                current = last;
                tree.count();
            }
        } else {
            current = PelXercesLinks::parentOf(*current);
            if (current == nullptr)
                return false;
            if (current == ancestor) {
                ancestor = PelXercesLinks::parentOf(*current);
                tree.count();
                continue;
            }
        }
        if (use(*current))
            return true;
    }
}

template <class Use>
bool each(PelXPathTree& tree, const PelXPathStep& step, Node& node, Use use) {
    const bool isAttribute = PelXPathTree::isAttribute(node);
    switch (step.axis) {
    case PelXPathAxis::SELF:
        return use(node);
    case PelXPathAxis::CHILD:
        return !isAttribute && eachFrom(PelXercesLinks::firstChildOf(node), use);
    case PelXPathAxis::PARENT: {
        Node* const parent = PelXPathTree::parentOf(node);
        return parent != nullptr && use(*parent);
    }
    case PelXPathAxis::ATTRIBUTE:
        return eachAttribute(step.test, node, use);
    case PelXPathAxis::DESCENDANT:
        return !isAttribute && eachBelow(tree, node, use);
    case PelXPathAxis::DESCENDANT_OR_SELF:
        return use(node) || (!isAttribute && eachBelow(tree, node, use));
    case PelXPathAxis::ANCESTOR:
        return eachAncestor(PelXPathTree::parentOf(node), use);
    case PelXPathAxis::ANCESTOR_OR_SELF:
        return eachAncestor(&node, use);
    case PelXPathAxis::FOLLOWING_SIBLING:
        return !isAttribute && eachFrom(PelXercesLinks::nextOf(node), use);
    case PelXPathAxis::PRECEDING_SIBLING:
        return !isAttribute && eachBackFrom(PelXercesLinks::previousOf(node), use);
    case PelXPathAxis::FOLLOWING:
        return eachFromUntil(tree, firstFollowing(tree, node), nullptr, use);
    case PelXPathAxis::PRECEDING:
        return eachPreceding(tree, node, use);
    }
    return false;
}

} // namespace PelXPathAxes
