// SPDX-License-Identifier: MIT
//
// The outline of a tree: its elements with their depth, attributes and text, then how often each
// tag name occurs.
#pragma once

#include <qrndom/QRNDOM.h>

#include <iostream>
#include <set>
#include <string>
#include <vector>

// A typed read takes the number that a text starts with; dates start with numbers too.
inline bool isNumber(const std::string& text) {
    return text.find_first_not_of("+-.0123456789eE") == text.npos &&
           text.find_first_of("+-", 1) == text.npos;
}

// Attributes come as text, and as numbers where they are.
inline std::string describeAttributes(const PelDOMElement& element) {
    std::string line;
    for (long i = 0; i < element.getNumAttributes(); ++i) {
        const PelString name = element.getAttributeNameAt(i);
        const std::string text = element.getAttributeValueAt(i).toUtf8();
        line += "  " + name.toUtf8() + "=\"" + text + "\"";
        long whole = 0;
        double real = 0;
        if (element.getAttribute(name, whole) == PelDOM::SUCCESS && std::to_string(whole) == text)
            line += " (whole " + text + ")";
        else if (isNumber(text) && element.getAttribute(name, real) == PelDOM::SUCCESS)
            line += " (real " + std::to_string(real) + ")";
    }
    return line;
}

// One line; gives the children.
inline PelDOMNodeList printElement(const PelDOMElement& element, std::size_t depth) {
    std::cout << std::string(2 * depth, ' ') << depth << " " << element.getTagName()
              << describeAttributes(element);
    PelString text;
    if (element.getChildTextValue(text) == PelDOM::SUCCESS)
        std::cout << "  \"" << text << "\"";
    std::cout << "\n";
    PelDOMNodeList children;
    element.getChildNodes(children);
    return children;
}

// Trees may be deeper than a program's stack, so the open elements are kept here.
inline void printOutline(const PelDOMElement& root) {
    struct Level {
        PelDOMNodeList children;
        long next = 0;
    };
    std::set<PelString> tagNames = {root.getTagName()};
    std::vector<Level> open = {{printElement(root, 0)}};
    while (!open.empty()) {
        Level& level = open.back();
        if (level.next == level.children.length()) {
            open.pop_back();
            continue;
        }
        PelDOMNode child;
        level.children.item(level.next++, child);
        if (child.getNodeType() != PelDOM::ELEMENT_NODE)
            continue;
        const PelDOMElement element(child);
        tagNames.insert(element.getTagName());
        open.push_back({printElement(element, open.size())});
    }

    std::cout << "\nElements by tag name, below the root:\n";
    for (const PelString& name : tagNames) {
        PelDOMNodeList elements;
        std::cout << "  " << root.getElementsByTagName(name, elements) << "  " << name << "\n";
    }
}
