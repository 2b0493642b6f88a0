// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesFields.h"

#include <typeinfo>

/// The links between the engine's nodes, set and followed without the run-time casts on which the
/// engine spends most of the time that it takes to build a tree. They are set only where the
/// engine's fields are known; what asks does so by the engine's interface elsewhere.
class PelXercesLinks {
public:
    /// Makes `child`, which has no parent, the last child of `parent`, as the engine's
    /// appendChildFast does. Nothing is checked.
    template <class Parent, class Child>
    static void append(Parent& parent, Child& child) {
        xercesc::DOMNode*& first = Fields::firstChildOf(parent);
        xercesc::DOMNodeImpl& node = Fields::nodeOf(child);
        xercesc::DOMChildNode& links = Fields::linksOf(child);
        Fields::ownerOf(node) = &parent;
        node.isOwned(true);
        if (first == nullptr) {
            first = &child;
            node.isFirstChild(true);
            links.previousSibling = &child;
            return;
        }
        // The first child's link to a previous sibling leads to the last child.
        xercesc::DOMNode*& last = Fields::linksOf(*first).previousSibling;
        Fields::linksOf(*last).nextSibling = &child;
        links.previousSibling = last;
        last = &child;
    }

    /// Makes `child`, which has no parent, a child of `parent` in front of `next`, its child; the
    /// last child when that is null. Nothing is checked.
    static void insert(xercesc::DOMElementImpl& parent, xercesc::DOMNode& child,
                       xercesc::DOMNode* next) {
        xercesc::DOMNodeImpl& node = Fields::nodeOf(child);
        xercesc::DOMChildNode& links = Fields::linksOf(child);
        xercesc::DOMNode*& first = Fields::firstChildOf(parent);
        Fields::ownerOf(node) = &parent;
        node.isOwned(true);
        if (first == nullptr) {
            links.previousSibling = &child;
        } else {
            xercesc::DOMNode*& back =
                Fields::linksOf(next != nullptr ? *next : *first).previousSibling;
            if (next != first)
                Fields::linksOf(*back).nextSibling = &child;
            links.previousSibling = back;
            back = &child;
        }
        links.nextSibling = next;
        if (next != first)
            return;
        if (first != nullptr)
            Fields::nodeOf(*first).isFirstChild(false);
        node.isFirstChild(true);
        first = &child;
    }

    /// Takes `child` from its parent. Nothing is checked.
    static void remove(xercesc::DOMElementImpl& parent, xercesc::DOMNode& child) {
        xercesc::DOMNodeImpl& node = Fields::nodeOf(child);
        xercesc::DOMChildNode& links = Fields::linksOf(child);
        xercesc::DOMNode*& first = Fields::firstChildOf(parent);
        xercesc::DOMNode* const next = links.nextSibling;
        Fields::linksOf(next != nullptr ? *next : *first).previousSibling = links.previousSibling;
        if (first != &child) {
            Fields::linksOf(*links.previousSibling).nextSibling = next;
        } else {
            first = next;
            if (next != nullptr)
                Fields::nodeOf(*next).isFirstChild(true);
        }
        Fields::ownerOf(node) = parent.getOwnerDocument();
        node.isOwned(false);
        node.isFirstChild(false);
        links.nextSibling = nullptr;
        links.previousSibling = nullptr;
    }

    /// Nodes of a large tree are rarely in the cache. This brings in the two lines that hold a
    /// node's class and links while other work goes on; null does nothing.
    static void fetch(const xercesc::DOMNode* node) {
        if (node != nullptr)
            fetchLines(reinterpret_cast<const char*>(node));
    }

    /// The same for what comes a little after a node in document order, which in a tree that was
    /// read lies a little behind it.
    static void fetchBehind(const xercesc::DOMNode& node) {
        const char* const place = reinterpret_cast<const char*>(&node);
        for (const int distance : {512, 1024})
            fetchLines(place + distance);
    }

    /// As the node's own functions. Elements and texts, most of all, need no virtual call.
    static xercesc::DOMNode::NodeType typeOf(const xercesc::DOMNode& node) {
        const std::type_info* const type = &typeid(node);
        if (type == &typeid(xercesc::DOMElementImpl))
            return xercesc::DOMNode::ELEMENT_NODE;
        return type == &typeid(xercesc::DOMTextImpl) ? xercesc::DOMNode::TEXT_NODE
                                                     : node.getNodeType();
    }
    static xercesc::DOMNode* nextOf(xercesc::DOMNode& node) {
        const std::type_info* const type = Fields::areKnown() ? &typeid(node) : nullptr;
        if (type == &typeid(xercesc::DOMElementImpl))
            return Fields::linksOf(static_cast<xercesc::DOMElementImpl&>(node)).nextSibling;
        return type == &typeid(xercesc::DOMTextImpl)
                   ? Fields::linksOf(static_cast<xercesc::DOMTextImpl&>(node)).nextSibling
                   : node.getNextSibling();
    }

    static xercesc::DOMNode* firstChildOf(const xercesc::DOMNode& node) {
        return isPlainElement(node)
                   ? Fields::firstChildOf(static_cast<const xercesc::DOMElementImpl&>(node))
                   : node.getFirstChild();
    }
    static xercesc::DOMNode* lastChildOf(const xercesc::DOMNode& node) {
        if (!isPlainElement(node))
            return node.getLastChild();
        xercesc::DOMNode* const first = firstChildOf(node);
        return first != nullptr ? Fields::linksOf(*first).previousSibling : nullptr;
    }
    static xercesc::DOMNode* previousOf(const xercesc::DOMNode& node) {
        if (!isPlainElement(node))
            return node.getPreviousSibling();
        xercesc::DOMElementImpl& element = elementOf(node);
        return Fields::nodeOf(element).isFirstChild() ? nullptr
                                                      : Fields::linksOf(element).previousSibling;
    }
    static xercesc::DOMNode* parentOf(const xercesc::DOMNode& node) {
        if (!isPlainElement(node))
            return node.getParentNode();
        xercesc::DOMNodeImpl& part = Fields::nodeOf(elementOf(node));
        return part.isOwned() ? Fields::ownerOf(part) : nullptr;
    }
    /// The tag name of an element.
    static const XMLCh* nameOf(const xercesc::DOMNode& element) {
        return isPlainElement(element)
                   ? Fields::nameOf(static_cast<const xercesc::DOMElementImpl&>(element))
                   : element.getNodeName();
    }

    /// The one text that an attribute consists of; null when it does not, or that is not known.
    static xercesc::DOMText* textOf(const xercesc::DOMNode& attribute) {
        if (!Fields::areKnown())
            return nullptr;
        xercesc::DOMNode* const first =
            Fields::firstChildOf(static_cast<const xercesc::DOMAttrImpl&>(attribute));
        if (first == nullptr || first->getNodeType() != xercesc::DOMNode::TEXT_NODE)
            return nullptr;
        auto* const text = static_cast<xercesc::DOMTextImpl*>(first);
        return Fields::linksOf(*text).nextSibling == nullptr ? text : nullptr;
    }

    /// The value of an attribute.
    static const XMLCh* valueOf(const xercesc::DOMNode& attribute) {
        const xercesc::DOMText* const text = textOf(attribute);
        return text != nullptr ? text->getData() : attribute.getNodeValue();
    }

private:
    using Fields = PelXercesFields;

    static bool isPlainElement(const xercesc::DOMNode& node) {
        return Fields::areKnown() && &typeid(node) == &typeid(xercesc::DOMElementImpl);
    }

    // Its parts are reached in nodes that can be changed only.
    static xercesc::DOMElementImpl& elementOf(const xercesc::DOMNode& node) {
        return const_cast<xercesc::DOMElementImpl&>(
            static_cast<const xercesc::DOMElementImpl&>(node));
    }

    static void fetchLines(const char* place) {
        constexpr std::size_t cacheLine = 64;
        __builtin_prefetch(place);
        __builtin_prefetch(place + cacheLine);
    }
};
