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

/// The tree below a node as lines: texts and CDATA sections side by side as one, those of white space
/// alone left out, attributes in the order in which they were written.
inline std::string outlineOf(const PelDOMNode& top) {
    std::string lines, run;
    const auto endRun = [&] {
        if (run.find_first_not_of(" \t\r\n") != run.npos) lines += "|" + run + "\n";
        run.clear();
    };
    for (PelDOMNode node = top; node;) {
        if (isCharacters(node)) {
            run += node.getNodeValue().toUtf8();
        } else {
            endRun();
            lines += std::to_string(node.getNodeType()) + " " + node.getNodeName().toUtf8();
            if (node.getNodeType() != PelDOM::DOCUMENT_TYPE_NODE) lines += " " + node.getNodeValue().toUtf8();
            lines += "\n";
            if (node.getNodeType() == PelDOM::ELEMENT_NODE)
                for (const PelDOMAttribute& attribute : PelDOMElement(node).getAttributes())
                    lines += "  " + attribute.name.toUtf8() + "=" + attribute.value.toUtf8() + "\n";
        }
        PelDOMNode next = node.getFirstChild();
        while (!next && node && node != top) {
            next = node.getNextSibling();
            if (next) break;
            node = node.getParentNode();
            endRun();
            lines += ")\n";
        }
        node = next;
    }
    endRun();
    return lines;
}
