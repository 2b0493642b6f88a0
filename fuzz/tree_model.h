// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>

#include <xercesc/dom/DOMException.hpp>

#include <algorithm>
#include <map>
#include <set>
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
    std::vector<std::u16string> written = {}; // the names of those that are not by default, in order
    std::map<std::u16string, std::u16string> defaults = {}; // of elements b to come, or of this one
    std::set<std::u16string> byDefault = {};                // the attributes that nobody has set
    Node* parent = nullptr;
    std::vector<Node*> children = {};
    const void* engineNode = nullptr; // known from the first handle to it

    // What a loop over the children of a node has yet to come to.
    struct Loop {
        Node* parent;
        std::vector<Node*> ahead;
    };
    static inline Loop* loop = nullptr;

    void unlink() {
        if (parent == nullptr) return;
        if (loop != nullptr && loop->parent == parent)
            loop->ahead.erase(std::remove(loop->ahead.begin(), loop->ahead.end(), this), loop->ahead.end());
        parent->children.erase(std::find(parent->children.begin(), parent->children.end(), this));
        parent = nullptr;
    }

    // In front of `before`, another child; as the last for null.
    void insert(Node& child, Node* before) {
        child.unlink();
        children.insert(std::find(children.begin(), children.end(), before), &child);
        child.parent = this;
        if (loop == nullptr || loop->parent != this) return;
        const auto place = std::find(loop->ahead.begin(), loop->ahead.end(), before);
        if (place != loop->ahead.end() && place != loop->ahead.begin()) loop->ahead.insert(place, &child);
    }

    void append(Node& child) { insert(child, nullptr); }

    void setAttribute(const std::u16string& key, Text text) {
        if (attributes.count(key) == 0 || byDefault.count(key) != 0) written.push_back(key);
        attributes[key] = text;
        byDefault.erase(key);
    }

    // What the document's type adds for an element of this name.
    void addDefaults() {
        defaults.clear();
        if (name == u"b" && document->child(PelDOM::DOCUMENT_TYPE_NODE) != nullptr)
            defaults = document->defaults;
        for (const auto& [key, text] : defaults)
            if (attributes.try_emplace(key, text).second) byDefault.insert(key);
    }

    void rename(Text newName) {
        const bool isTyped = !defaults.empty() || document->child(PelDOM::DOCUMENT_TYPE_NODE) != nullptr;
        name = newName;
        if (!isTyped) return;
        for (const std::u16string& key : byDefault) attributes.erase(key);
        byDefault.clear();
        addDefaults();
    }

    // The attributes of a copy: a default of another document stays behind.
    void copyAttributes(const Node& source) {
        addDefaults();
        for (const auto& [key, text] : source.attributes) {
            if (source.byDefault.count(key) == 0 || source.document != document) continue;
            attributes[key] = text;
            byDefault.insert(key);
        }
        for (const std::u16string& key : source.written) setAttribute(key, source.attributes.at(key));
    }

    // As they were written, or by name; those by default, by name, come last.
    std::vector<std::u16string> attributeNames(bool areAsWritten) const {
        std::vector<std::u16string> names;
        if (areAsWritten) names = written;
        for (const auto& [key, text] : attributes)
            if (!areAsWritten || byDefault.count(key) != 0) names.push_back(key);
        return names;
    }

    bool removeAttribute(const std::u16string& key) {
        byDefault.erase(key);
        written.erase(std::remove(written.begin(), written.end(), key), written.end());
        return attributes.erase(key) != 0;
    }

    bool canBeCopied() const {
        return type != PelDOM::DOCUMENT_NODE && type != PelDOM::DOCUMENT_TYPE_NODE &&
               type != PelDOM::XML_DECL_NODE;
    }

    // Whether `child` may go in front of `before` when `leaving` is gone.
    bool takes(const Node& child, const Node* before, const Node* leaving) const {
        const bool isDocument = type == PelDOM::DOCUMENT_NODE;
        if ((!isDocument && type != PelDOM::ELEMENT_NODE) || child.type == PelDOM::DOCUMENT_NODE)
            return false;
        if (child.document != (isDocument ? this : document)) return false;
        if (!isDocument) return child.canBeCopied() && !isWithin(child);
        std::vector<const Node*> then;
        for (const Node* const node : children) {
            if (node == before) then.push_back(&child);
            if (node != &child && node != leaving) then.push_back(node);
        }
        if (before == nullptr) then.push_back(&child);
        const auto place = std::find(then.begin(), then.end(), &child);
        const auto find = [](auto from, auto to, PelDOM::NodeType wanted) {
            return std::find_if(from, to, [wanted](const Node* node) { return node->type == wanted; }) != to;
        };
        if (place + 1 != then.end() && place[1]->type == PelDOM::XML_DECL_NODE) return false;
        const bool isAlone =
            !find(then.begin(), place, child.type) && !find(place + 1, then.end(), child.type);
        switch (child.type) {
        case PelDOM::ELEMENT_NODE:
            return isAlone && !find(place, then.end(), PelDOM::DOCUMENT_TYPE_NODE);
        case PelDOM::DOCUMENT_TYPE_NODE:
            return isAlone && !find(then.begin(), place, PelDOM::ELEMENT_NODE);
        case PelDOM::XML_DECL_NODE:
            return place == then.begin();
        case PelDOM::TEXT_NODE:
            return !child.value.empty() && child.value.find_first_not_of(u" \t\r\n") == child.value.npos;
        default:
            return child.type != PelDOM::CDATA_SECTION_NODE;
        }
    }

    Node* sibling(long distance) const {
        if (parent == nullptr) return nullptr;
        const auto& all = parent->children;
        const long place = std::find(all.begin(), all.end(), this) - all.begin() + distance;
        return place >= 0 && place < static_cast<long>(all.size()) ? all[static_cast<std::size_t>(place)]
                                                                   : nullptr;
    }

    bool isElement(Text tag) const { return type == PelDOM::ELEMENT_NODE && (tag == u"*" || tag == name); }

    // The nearest such element among this one and its siblings in one direction.
    static Node* element(Node* node, long direction, Text tag) {
        while (node != nullptr && !node->isElement(tag)) node = node->sibling(direction);
        return node;
    }

    std::u16string nodeName() const {
        switch (type) {
        case PelDOM::TEXT_NODE:
            return u"#text";
        case PelDOM::CDATA_SECTION_NODE:
            return u"#cdata-section";
        case PelDOM::COMMENT_NODE:
            return u"#comment";
        case PelDOM::DOCUMENT_NODE:
            return u"#document";
        default:
            return name;
        }
    }

    std::u16string textContent() const {
        if (type != PelDOM::ELEMENT_NODE) return value;
        std::u16string text;
        for (const Node* const node : children)
            if (node->type != PelDOM::COMMENT_NODE && node->type != PelDOM::PROCESSING_INSTRUCTION_NODE)
                text += node->textContent();
        return text;
    }

    bool takesValue(Text text) const {
        const auto lacks = [text](Text part) { return text.find(part) == text.npos; };
        if (!lacks(Text(u"\0", 1)) || !lacks(u"\xDC00")) return false;
        switch (type) {
        case PelDOM::TEXT_NODE:
            return true;
        case PelDOM::CDATA_SECTION_NODE:
            return lacks(u"]]>");
        case PelDOM::COMMENT_NODE:
            return lacks(u"--") && (text.empty() || text.back() != u'-');
        case PelDOM::PROCESSING_INSTRUCTION_NODE:
            return lacks(u"?>");
        default:
            return false;
        }
    }

    std::u16string lookup(const std::u16string& prefix) const {
        const auto found = attributes.find(prefix.empty() ? u"xmlns" : u"xmlns:" + prefix);
        if (found != attributes.end()) return found->second;
        return parent != nullptr ? parent->lookup(prefix) : u"";
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
            if (node->isElement(tag)) found.push_back(node);
            node->addElements(tag, found);
        }
    }

    void stamp(int level) {
        if (type == PelDOM::ELEMENT_NODE)
            setAttribute(u"PARSELEVEL", PelString(std::to_string(level).c_str()).view());
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

inline constexpr Text goodNames[] = {
    u"r", u"a", u"b", u"d", u"b-1", u"\u00e9\u4e2d", u"_x.y", u"p:q", u":a", u"xmlns", u"xmlns:p"};
inline constexpr Text badNames[] = {u"", u"1", u"a b", u"-a", u"a\u00d7", u"\xD800", u"<", Text(u"\0a", 2)};
inline constexpr Text values[] = {u"", u"v", u" ", u"12", u"\u00e9\u4e2d\U0001F600", u"<&>\"'\r\n\t",
    Text(u"x\0y", 3), Text(u"\0z", 2), u"\xDC00",
    u"long text, longer than before, and longer again and again", u"a--b", u"-", u"]]>", u"?>"};

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
