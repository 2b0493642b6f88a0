// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOM.hpp>
#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>

#include <string_view>

inline std::u16string_view viewOf(const XMLCh* text) {
    return text != nullptr ? std::u16string_view(text) : std::u16string_view(u"(null)");
}

inline bool areSameAttributes(const xercesc::DOMNode& one, const xercesc::DOMNode& two) {
    const xercesc::DOMNamedNodeMap* const left = one.getAttributes();
    const xercesc::DOMNamedNodeMap* const right = two.getAttributes();
    if (left == nullptr || right == nullptr) return left == right;
    bool same = left->getLength() == right->getLength();
    for (XMLSize_t i = 0; same && i < left->getLength(); ++i) {
        const auto& a = static_cast<const xercesc::DOMAttr&>(*left->item(i));
        const auto& b = static_cast<const xercesc::DOMAttr&>(*right->item(i));
        same = viewOf(a.getName()) == viewOf(b.getName()) && viewOf(a.getValue()) == viewOf(b.getValue()) &&
               a.isId() == b.isId() && a.getSpecified() == b.getSpecified() && a.getOwnerElement() == &one &&
               b.getOwnerElement() == &two && left->getNamedItem(a.getName()) == &a &&
               right->getNamedItem(b.getName()) == &b;
    }
    return same;
}

// What elements have by default, and get back when they lose it.
inline bool areSameDefaults(const xercesc::DOMNode& one, const xercesc::DOMNode& two) {
    if (one.getNodeType() != xercesc::DOMNode::ELEMENT_NODE) return true;
    const auto& a = static_cast<const xercesc::DOMElementImpl&>(one);
    const auto& b = static_cast<const xercesc::DOMElementImpl&>(two);
    const xercesc::DOMAttrMapImpl& left = *a.fDefaultAttributes;
    const xercesc::DOMAttrMapImpl& right = *b.fDefaultAttributes;
    bool same =
        left.getLength() == right.getLength() && a.fAttributes->hasDefaults() == b.fAttributes->hasDefaults();
    for (XMLSize_t i = 0; same && i < left.getLength(); ++i)
        same = viewOf(left.item(i)->getNodeName()) == viewOf(right.item(i)->getNodeName()) &&
               viewOf(left.item(i)->getNodeValue()) == viewOf(right.item(i)->getNodeValue()) &&
               static_cast<const xercesc::DOMAttr*>(right.item(i))->getSpecified() ==
                   static_cast<const xercesc::DOMAttr*>(left.item(i))->getSpecified();
    return same;
}

inline bool areSameNode(const xercesc::DOMNode& one, const xercesc::DOMNode& two) {
    return one.getNodeType() == two.getNodeType() && viewOf(one.getNodeName()) == viewOf(two.getNodeName()) &&
           viewOf(one.getNodeValue()) == viewOf(two.getNodeValue()) && areSameAttributes(one, two) &&
           areSameDefaults(one, two);
}

/// Walks both trees at once by every kind of link and gives the number of nodes, or -1.
inline long compareTrees(const xercesc::DOMNode* one, const xercesc::DOMNode* two) {
    const xercesc::DOMNode* const top = one;
    for (long count = 1;; ++count) {
        if (!areSameNode(*one, *two)) return -1;
        const xercesc::DOMNode* nextOne = one->getFirstChild();
        const xercesc::DOMNode* nextTwo = two->getFirstChild();
        while (nextOne == nullptr && nextTwo == nullptr && one != top) {
            nextOne = one->getNextSibling();
            nextTwo = two->getNextSibling();
            if (nextOne != nullptr && nextTwo != nullptr &&
                (nextOne->getPreviousSibling() != one || nextTwo->getPreviousSibling() != two))
                return -1;
            if (nextOne == nullptr && nextTwo == nullptr) {
                const xercesc::DOMNode* const last = one;
                one = one->getParentNode();
                two = two->getParentNode();
                if (one->getLastChild() != last) return -1;
            }
        }
        if ((nextOne == nullptr) != (nextTwo == nullptr)) return -1;
        if (nextOne == nullptr) return count;
        one = nextOne;
        two = nextTwo;
    }
}

/// The same for two documents, with what is in none of their nodes.
inline long compareDocuments(const xercesc::DOMNode& one, const xercesc::DOMNode& two) {
    const auto& a = static_cast<const xercesc::DOMDocument&>(one);
    const auto& b = static_cast<const xercesc::DOMDocument&>(two);
    const bool same =
        viewOf(a.getXmlVersion()) == viewOf(b.getXmlVersion()) &&
        viewOf(a.getXmlEncoding()) == viewOf(b.getXmlEncoding()) &&
        viewOf(a.getInputEncoding()) == viewOf(b.getInputEncoding()) &&
        viewOf(a.getDocumentURI()) == viewOf(b.getDocumentURI()) &&
        a.getXmlStandalone() == b.getXmlStandalone() &&
        a.getStrictErrorChecking() == b.getStrictErrorChecking() &&
        (a.getDocumentElement() == nullptr || a.getDocumentElement()->getParentNode() == &one) &&
        (b.getDocumentElement() == nullptr || b.getDocumentElement()->getParentNode() == &two);
    return same ? compareTrees(&one, &two) : -1;
}
