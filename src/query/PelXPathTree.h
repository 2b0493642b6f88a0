// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesTree.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <cstdint>
#include <string>
#include <string_view>

/// The tree as an evaluation sees it: which of the engine's nodes are nodes to it, and what their
/// text is. It counts the work that the evaluation takes, and ends it when that is too much.
class PelXPathTree {
public:
    using Node = xercesc::DOMNode;
    enum Kind { NONE, ROOT, ELEMENT, ATTRIBUTE, TEXT, COMMENT, INSTRUCTION };

    PelXPathTree(const PelXercesTree& ownTree, std::uint64_t most)
        : tree(ownTree), limit(most), left(most) {}

    /// Counts nodes that are looked at, or characters. Throws PelXPathError.
    void count(std::uint64_t steps = 1) {
        if (steps > left)
            end();
        left -= steps;
    }

    /// Counts characters that are looked at, which takes a fraction of a step for each.
    void countLook(std::size_t characters) {
        constexpr std::size_t inOneStep = 16;
        count(1 + characters / inOneStep);
    }

    xercesc::DOMDocument& getDocument() const { return *tree.getDocument(); }
    const PelXercesDeclaredIds& getDeclaredIds() const { return tree.getDeclaredIds(); }

    /// NONE for what an expression does not see: document types, declarations, texts beside others
    /// that stand for them.
    static Kind kindOf(const Node& node);

    /// Whether that is an element, which most questions are about.
    static bool isElement(const Node& node) {
        return PelXercesLinks::typeOf(node) == Node::ELEMENT_NODE;
    }

    static bool isAttribute(const Node& node) {
        return PelXercesLinks::typeOf(node) == Node::ATTRIBUTE_NODE;
    }

    /// A text or a CDATA section, which are the same to it.
    static bool isCharacters(const Node& node) {
        const Node::NodeType type = PelXercesLinks::typeOf(node);
        return type == Node::TEXT_NODE || type == Node::CDATA_SECTION_NODE;
    }

    /// The first that is not empty of the texts side by side of which `node` is one; other nodes
    /// stand for themselves. Null for what an expression does not see.
    static Node* standingFor(Node& node);

    /// The parent; of an attribute its element.
    static Node* parentOf(const Node& node);

    /// The text of a node of any kind: its own, or put together in `buffer`.
    std::u16string_view textOf(const Node& node, std::u16string& buffer);

private:
    [[noreturn]] void end() const;

    std::u16string_view joinTexts(const Node& root, std::u16string& buffer);
    std::u16string_view joinRun(const Node& first, std::u16string& buffer);
    std::u16string_view counted(std::u16string_view text);

    const PelXercesTree& tree;
    const std::uint64_t limit;
    std::uint64_t left;
};
