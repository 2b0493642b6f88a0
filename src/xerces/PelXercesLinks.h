// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMCasts.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>
#include <xercesc/dom/impl/DOMStringPool.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XercesVersion.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <typeinfo>
#include <utility>

/// The links between the engine's nodes, set and followed without the run-time casts on which the
/// engine spends most of the time that it takes to build a tree.
class PelXercesLinks {
public:
    /// Setting links reaches into the engine's own classes, so it is done with the release that it
    /// was proven on and no other.
    static constexpr bool areKnown = _XERCES_VERSION == 30204;

    /// Makes `child`, which has no parent, the last child of `parent`, as the engine's
    /// appendChildFast does. Nothing is checked.
    template <class Parent, class Child>
    static void append(Parent& parent, Child& child) {
        xercesc::DOMNode*& first = parent.fParent.fFirstChild;
        child.fNode.fOwnerNode = &parent;
        child.fNode.isOwned(true);
        if (first == nullptr) {
            first = &child;
            child.fNode.isFirstChild(true);
            child.fChild.previousSibling = &child;
            return;
        }
        // The first child's link to a previous sibling leads to the last child.
        xercesc::DOMNode*& last = linksOf(first).previousSibling;
        linksOf(last).nextSibling = &child;
        child.fChild.previousSibling = last;
        last = &child;
    }

    /// Makes `child`, which has no parent, a child of `parent` in front of `next`, its child; the
    /// last child when that is null. Nothing is checked.
    static void insert(xercesc::DOMElementImpl& parent, xercesc::DOMNode& child,
                       xercesc::DOMNode* next) {
        xercesc::DOMNodeImpl& node = implOf(&child);
        xercesc::DOMChildNode& links = linksOf(&child);
        xercesc::DOMNode*& first = parent.fParent.fFirstChild;
        node.fOwnerNode = &parent;
        node.isOwned(true);
        if (first == nullptr) {
            links.previousSibling = &child;
        } else {
            // The first child's link to a previous sibling leads to the last child.
            xercesc::DOMNode*& back = linksOf(next != nullptr ? next : first).previousSibling;
            if (next != first)
                linksOf(back).nextSibling = &child;
            links.previousSibling = back;
            back = &child;
        }
        links.nextSibling = next;
        if (next != first)
            return;
        if (first != nullptr)
            implOf(first).isFirstChild(false);
        node.isFirstChild(true);
        first = &child;
    }

    /// Takes `child` from its parent. Nothing is checked.
    static void remove(xercesc::DOMElementImpl& parent, xercesc::DOMNode& child) {
        xercesc::DOMNodeImpl& node = implOf(&child);
        xercesc::DOMChildNode& links = linksOf(&child);
        xercesc::DOMNode*& first = parent.fParent.fFirstChild;
        xercesc::DOMNode* const next = links.nextSibling;
        if (next != nullptr)
            linksOf(next).previousSibling = links.previousSibling;
        else
            linksOf(first).previousSibling = links.previousSibling;
        if (first != &child) {
            linksOf(links.previousSibling).nextSibling = next;
        } else {
            first = next;
            if (next != nullptr)
                implOf(next).isFirstChild(true);
        }
        node.fOwnerNode = parent.fParent.fOwnerDocument;
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
        const std::type_info* const type = areKnown ? &typeid(node) : nullptr;
        if (type == &typeid(xercesc::DOMElementImpl))
            return static_cast<xercesc::DOMElementImpl&>(node).fChild.nextSibling;
        return type == &typeid(xercesc::DOMTextImpl)
                   ? static_cast<xercesc::DOMTextImpl&>(node).fChild.nextSibling
                   : node.getNextSibling();
    }

    /// The one text that an attribute consists of; null when it does not, or that is not known.
    static xercesc::DOMText* textOf(const xercesc::DOMNode& attribute) {
        if (!areKnown)
            return nullptr;
        xercesc::DOMNode* const first =
            static_cast<const xercesc::DOMAttrImpl&>(attribute).fParent.fFirstChild;
        if (first == nullptr || first->getNodeType() != xercesc::DOMNode::TEXT_NODE)
            return nullptr;
        auto* const text = static_cast<xercesc::DOMTextImpl*>(first);
        return text->fChild.nextSibling == nullptr ? text : nullptr;
    }

    /// The value of an attribute.
    static const XMLCh* valueOf(const xercesc::DOMNode& attribute) {
        const xercesc::DOMText* const text = textOf(attribute);
        return text != nullptr ? text->getData() : attribute.getNodeValue();
    }

    /// Bits of a node's flags that the engine leaves free.
    enum Mark : unsigned short { isLoose = 1U << 14U, isHeld = 1U << 15U };

    static bool hasMark(const xercesc::DOMNodeImpl& node, Mark mark) {
        return (node.flags & mark) != 0;
    }

    static void setMark(xercesc::DOMNodeImpl& node, Mark mark, bool isSet) {
        node.flags = static_cast<unsigned short>(isSet ? node.flags | mark : node.flags & ~mark);
    }

    /// What each node that can be a child has. Elements and texts, most of all, need no run-time
    /// cast.
    static xercesc::DOMNodeImpl& implOf(xercesc::DOMNode* child) {
        switch (child->getNodeType()) {
        case xercesc::DOMNode::ELEMENT_NODE:
            return static_cast<xercesc::DOMElementImpl*>(child)->fNode;
        case xercesc::DOMNode::TEXT_NODE:
            return static_cast<xercesc::DOMTextImpl*>(child)->fNode;
        default:
            return *xercesc::castToNodeImpl(child);
        }
    }

    /// Gives the table that a document keeps its names in twice as many places, or three times as
    /// many: how many is not to be foreseen, since with the engine's hash, names can be made to
    /// share a place. Gives the number of places.
    static std::size_t growNameTable(xercesc::DOMDocumentImpl& document) {
        struct Table : xercesc::DOMDocumentImpl {
            static constexpr auto chains() { return &Table::fNameTable; }
            static constexpr auto size() { return &Table::fNameTableSize; }
        };
        using Entry = xercesc::DOMStringPoolEntry;
        std::size_t& places = document.*Table::size();
        const auto chance = reinterpret_cast<std::uintptr_t>(&document) / sizeof(void*);
        const std::size_t more = places * 2 + chance % places + 1;
        auto** const chains = static_cast<Entry**>(document.allocate(more * sizeof(Entry*)));
        std::fill_n(chains, more, nullptr);
        for (std::size_t i = 0; i < places; ++i)
            for (Entry* entry = (document.*Table::chains())[i]; entry != nullptr;) {
                Entry*& first = chains[xercesc::XMLString::hash(entry->fString, more)];
                Entry* const next = std::exchange(entry->fNext, first);
                first = std::exchange(entry, next);
            }
        document.*Table::chains() = chains;
        return places = more;
    }

    static void fetchLines(const char* place) {
        constexpr std::size_t cacheLine = 64;
        __builtin_prefetch(place);
        __builtin_prefetch(place + cacheLine);
    }

    static xercesc::DOMChildNode& linksOf(xercesc::DOMNode* child) {
        switch (child->getNodeType()) {
        case xercesc::DOMNode::ELEMENT_NODE:
            return static_cast<xercesc::DOMElementImpl*>(child)->fChild;
        case xercesc::DOMNode::TEXT_NODE:
            return static_cast<xercesc::DOMTextImpl*>(child)->fChild;
        default:
            return *xercesc::castToChildImpl(child);
        }
    }
};
