// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>

#include <xercesc/dom/DOMException.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

using xercesc::DOMException;
using Text = std::u16string_view;

/// A tree as it has to be: nodes, and what an append to them answers.
struct Node {
    Node* document; // null for a document itself
    PelDOM::NodeType type;
    std::u16string name, value;
    std::map<std::u16string, std::u16string> attributes = {};
    std::map<std::u16string, std::u16string> defaults = {}; // of elements b in this document
    Node* parent = nullptr;
    std::vector<Node*> children = {};
    const void* engineNode = nullptr; // known from the first handle to it

    void append(Node& child) {
        if (child.parent != nullptr) {
            auto& siblings = child.parent->children;
            siblings.erase(std::find(siblings.begin(), siblings.end(), &child));
        }
        children.push_back(&child);
        child.parent = this;
    }

    bool isWithin(const Node& ancestor) const {
        return this == &ancestor || (parent != nullptr && parent->isWithin(ancestor));
    }

    Node* child(PelDOM::NodeType wanted) const {
        for (Node* const node : children)
            if (node->type == wanted) return node;
        return nullptr;
    }

    void addElements(Text tag, std::vector<Node*>& found) const {
        for (Node* const node : children) {
            if (node->type == PelDOM::ELEMENT_NODE && (tag == u"*" || tag == node->name))
                found.push_back(node);
            node->addElements(tag, found);
        }
    }

    void stamp(int level) {
        if (type == PelDOM::ELEMENT_NODE)
            attributes[u"PARSELEVEL"] = PelString(std::to_string(level).c_str()).view();
        for (Node* const node : children) node->stamp(level + 1);
    }
};

/// What a handle has to be: null, or to a node, or to the absence of one.
struct Ref {
    Node* node = nullptr;
    bool isNull = true;

    bool is(PelDOM::NodeType type) const { return node != nullptr && node->type == type; }
    Ref root() const {
        return is(PelDOM::DOCUMENT_NODE) ? Ref{node->child(PelDOM::ELEMENT_NODE), false} : Ref();
    }
    PelDOM::Error code() const { return node != nullptr ? PelDOM::SUCCESS : PelDOM::NULL_NODE; }
};

inline Ref to(Node* node) { return {node, false}; }

inline constexpr Text goodNames[] = {u"r", u"a", u"b", u"d", u"b-1", u"\u00e9\u4e2d", u"_x.y", u"p:q", u":a"};
inline constexpr Text badNames[] = {u"", u"1", u"a b", u"-a", u"a\u00d7", u"\xD800", u"<", Text(u"\0a", 2)};
inline constexpr Text values[] = {u"", u"v", u" ", u"12", u"\u00e9\u4e2d\U0001F600", u"<&>\"'\r\n\t",
    Text(u"x\0y", 3), Text(u"\0z", 2), u"\xDC00",
    u"long text, longer than before, and longer again and again"};

// Strings end at their first U+0000 where the tree takes them.
inline std::u16string inTree(Text text) { return std::u16string(text.substr(0, text.find(u'\0'))); }

inline bool isName(Text name) {
    return std::find(std::begin(goodNames), std::end(goodNames), inTree(name)) != std::end(goodNames);
}

/// Whether a text holds nothing that XML forbids, of what the values above hold.
inline bool isAllowed(Text text) { return text.find_first_of(Text(u"\0\xDC00", 2)) == text.npos; }

inline constexpr int hierarchy = -DOMException::HIERARCHY_REQUEST_ERR;
inline constexpr int invalidName = -DOMException::INVALID_CHARACTER_ERR;

// What the DOM answers, and NULL_NODE for no node on either side.
inline int expectedOfAppend(const Ref& parentRef, const Ref& childRef) {
    if (parentRef.node == nullptr || childRef.node == nullptr) return PelDOM::NULL_NODE;
    const Node& parent = *parentRef.node;
    const Node& child = *childRef.node;
    const bool intoDocument = parent.type == PelDOM::DOCUMENT_NODE;
    const bool intoType = parent.type == PelDOM::DOCUMENT_TYPE_NODE;
    if (&parent == &child || (child.type == PelDOM::XML_DECL_NODE && !intoDocument)) return hierarchy;
    if (parent.type != PelDOM::ELEMENT_NODE && !intoDocument && !intoType) return hierarchy;
    const bool isSingle = child.type == PelDOM::ELEMENT_NODE || child.type == PelDOM::DOCUMENT_TYPE_NODE;
    if (intoDocument && isSingle && parent.child(child.type) != nullptr) return hierarchy;
    if (child.document != (intoDocument ? &parent : parent.document))
        return -DOMException::WRONG_DOCUMENT_ERR;
    if (intoType || parent.isWithin(child)) return hierarchy;
    if (!intoDocument) return child.type == PelDOM::DOCUMENT_TYPE_NODE ? hierarchy : PelDOM::SUCCESS;
    // The engine takes white space between the nodes of a document.
    const bool isText = child.type == PelDOM::TEXT_NODE && !child.value.empty();
    const bool isSpace = isText && child.value.find_first_not_of(u" \t\r\n") == child.value.npos;
    const bool isCharacters = child.type == PelDOM::TEXT_NODE || child.type == PelDOM::CDATA_SECTION_NODE;
    return isCharacters && !isSpace ? hierarchy : PelDOM::SUCCESS;
}
