// SPDX-License-Identifier: MIT
//
// What an expression finds in a document: nodes and attributes alike.
#pragma once

#include <qrndom/QRNDOM.h>

#include <stdexcept>
#include <string>
#include <vector>

struct Match {
    PelDOMNode node;     // of an attribute: its element
    PelString attribute; // its name; empty for a node
};

// Throws what was wrong with an evaluation, and where.
inline void throwMessage(const PelDOMXPath& path, const std::string& where) {
    if (path.getMessage().isEmpty() == 0)
        throw std::runtime_error(where + ": " + path.getMessage().toUtf8());
}

// Nodes come first, then attributes, both in document order.
inline std::vector<Match> findMatches(const PelDOMXPath& path, const PelDOMDocument& document,
                                      const std::string& where) {
    std::vector<Match> matches;
    for (const PelDOMNode& node : path.selectNodes(document))
        matches.push_back({node, PelString()});
    for (const PelDOMAttributeMatch& found : path.selectAttributes(document))
        matches.push_back({found.element, found.name});
    throwMessage(path, where);
    return matches;
}

inline bool isText(const PelDOMNode& node) {
    const PelDOM::NodeType type = node.getNodeType();
    return type == PelDOM::TEXT_NODE || type == PelDOM::CDATA_SECTION_NODE;
}

// A text stands for all texts and CDATA sections beside it; any other node for itself.
inline std::vector<PelDOMNode> nodesOf(const PelDOMNode& node) {
    std::vector<PelDOMNode> nodes = {node};
    if (isText(node))
        for (PelDOMNode next = node.getNextSibling(); isText(next); next = next.getNextSibling())
            nodes.push_back(next);
    return nodes;
}

inline PelString valueOf(const Match& match) {
    return match.attribute.isEmpty() != 0 ? PelDOMXPath("string()").evaluateString(match.node)
                                          : PelDOMElement(match.node).getAttribute(match.attribute);
}
