// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/QRNDOM.h>

#include <string>

inline bool isCharacters(const PelDOMNode& node) {
    return node.getNodeType() == PelDOM::TEXT_NODE || node.getNodeType() == PelDOM::CDATA_SECTION_NODE;
}

/// The node behind `node` in document order, below `top`.
inline PelDOMNode nextInTree(const PelDOMNode& top, const PelDOMNode& node) {
    if (PelDOMNode child = node.getFirstChild()) return child;
    for (PelDOMNode last = node; last && last != top; last = last.getParentNode())
        if (PelDOMNode next = last.getNextSibling()) return next;
    return PelDOMNode();
}

/// Comments and instructions know no references: a carriage return that an entity brought into one can only
/// be written as it is, and is read as a line feed.
inline std::string withLineFeeds(std::string text) {
    for (std::size_t at = 0; (at = text.find('\r', at)) != text.npos;)
        text.replace(at, text.compare(at, 2, "\r\n") == 0 ? 2 : 1, "\n");
    return text;
}

/// The tree below a node as lines: texts and CDATA sections side by side as one, those of white space
/// alone left out, attributes in the order in which they were written.
inline std::string outlineOf(const PelDOMNode& top) {
    std::string lines, run;
    long depth = 0;
    const auto add = [&](const std::string& what) { lines += std::to_string(depth) + " " + what + "\n"; };
    const auto endRun = [&] {
        if (run.find_first_not_of(" \t\r\n") != run.npos) add("|" + run);
        run.clear();
    };
    for (PelDOMNode node = top; node;) {
        if (isCharacters(node)) {
            run += node.getNodeValue().toUtf8();
        } else {
            endRun();
            const bool isType = node.getNodeType() == PelDOM::DOCUMENT_TYPE_NODE;
            add(std::to_string(node.getNodeType()) + " " + node.getNodeName().toUtf8() + " " +
                (isType ? "" : withLineFeeds(node.getNodeValue().toUtf8())));
            if (node.getNodeType() == PelDOM::ELEMENT_NODE)
                for (const PelDOMAttribute& attribute : PelDOMElement(node).getAttributes())
                    add("  " + attribute.name.toUtf8() + "=" + attribute.value.toUtf8());
        }
        PelDOMNode next = node.getFirstChild();
        if (next) ++depth;
        while (!next && node && node != top) {
            next = node.getNextSibling();
            if (next) break;
            endRun();
            node = node.getParentNode();
            --depth;
        }
        node = next;
    }
    endRun();
    return lines;
}
