// SPDX-License-Identifier: MIT
#pragma once

#include "write/PelXercesMarkup.h"
#include "write/characters/PelXercesEscapes.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <array>
#include <cstddef>
#include <vector>

/// Decides what stands between the nodes, and may write a node in its own way.
class PelXercesLayout {
public:
    virtual ~PelXercesLayout() = default;

    /// Called before a node. True: the layout has written the node and all below it, or leaves it
    /// out.
    virtual bool replaces(const xercesc::DOMNode& node, xercesc::DOMNode::NodeType type) = 0;

    /// Called after the start tag of an element with content, and before its end tag.
    virtual void beginContent(const xercesc::DOMNode& /*element*/) {}
    virtual void endContent() {}

    /// Called after each child of a document, and once when all is written.
    virtual void endDocumentChild(const xercesc::DOMNode& child) = 0;
    virtual void end() = 0;
};

/// Writes a subtree as XML text. The walk keeps its place on the heap, so that depth costs no
/// stack.
///
/// With strict escapes the text reads back as the same tree; a PelXercesWriteError, which says in
/// which element it arose, is thrown where there is no such text. With others, all but texts and
/// attributes is written as it is.
class PelXercesSerializer {
public:
    PelXercesSerializer(PelXercesMarkup& markup, const PelXercesEscapes::Set& escapeTables,
                        PelXercesLayout& usedLayout);

    void writeNode(const xercesc::DOMNode& top);

    /// Leaves out the attributes that only a declaration gave.
    void leaveOutDefaults() { hasDefaults = false; }

    // The parts of an element, for a layout that puts them together itself. An attribute begins
    // with a space.
    void startTag(const xercesc::DOMNode& element);
    void attribute(const xercesc::DOMAttr& attribute);
    void value(const xercesc::DOMAttr& attribute, char quote);
    void endTag(const xercesc::DOMNode& element);
    PelXercesMarkup& name(const char16_t* characters);

    /// The attributes of an element that are to be written, in their order, until the next call.
    const std::vector<xercesc::DOMAttr*>& attributesOf(const xercesc::DOMNode& element);

    /// A node of a kind that has no children.
    void leaf(const xercesc::DOMNode& node, xercesc::DOMNode::NodeType type);

    void checkDocument(const xercesc::DOMNode& document) const;

    /// Says in which element an error arose.
    static void addElement(PelXercesWriteError& error, const xercesc::DOMNode* node);

private:
    struct OpenNode {
        const xercesc::DOMNode* node;
        bool isDocument;
    };

    // The engine keeps one copy of each name, so a name is known by its address.
    struct KnownName {
        const char16_t* characters = nullptr;
        std::size_t length = 0;
    };

    void walk(const xercesc::DOMNode*& node);
    const xercesc::DOMNode* begin(const xercesc::DOMNode& node);
    const xercesc::DOMNode* beginElement(const xercesc::DOMNode& element);
    void end(const OpenNode& parent);

    void checkName(const char16_t* characters, std::size_t length) const;
    void cdata(const char16_t* data);
    void comment(const char16_t* data);
    void instruction(const xercesc::DOMNode& node);
    void documentType(const xercesc::DOMNode& node);
    void identifier(const char16_t* identifier);
    void subset(const char16_t* subset);

    PelXercesMarkup& out;
    const PelXercesEscapes::Set& escapes;
    PelXercesLayout& layout;
    const bool isStrict;
    bool hasDefaults = true;
    std::vector<xercesc::DOMAttr*> listed;
    std::array<KnownName, 256> known{};
    std::vector<OpenNode> open; // the ancestors whose ends are still to come
};
