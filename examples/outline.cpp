// SPDX-License-Identifier: MIT
//
// Prints an outline of an XML file: its elements with their depth, attributes and text, then how
// often each tag name occurs.
//
//     outline FILE

#include <qrndom/QRNDOM.h>

#include <cstdio>
#include <iostream>
#include <set>
#include <string>

namespace {

// Attributes come as text; the typed reads say whether one starts with a number.
std::string describeAttributes(const PelDOMElement& element) {
    std::string line;
    for (long i = 0; i < element.getNumAttributes(); ++i) {
        const PelString name = element.getAttributeNameAt(i);
        line += "  " + name.toUtf8() + "=\"" + element.getAttributeValueAt(i).toUtf8() + "\"";
        long whole = 0;
        double real = 0;
        const bool isWhole = element.getAttribute(name, whole) == PelDOM::SUCCESS;
        const bool isReal = element.getAttribute(name, real) == PelDOM::SUCCESS;
        if (isReal && (!isWhole || real != static_cast<double>(whole)))
            line += " (real " + std::to_string(real) + ")";
        else if (isWhole)
            line += " (whole " + std::to_string(whole) + ")";
    }
    return line;
}

void printOutline(const PelDOMElement& element, int depth, std::set<PelString>& tagNames) {
    tagNames.insert(element.getTagName());
    std::cout << std::string(2 * static_cast<std::size_t>(depth), ' ') << depth << " "
              << element.getTagName() << describeAttributes(element);
    PelString text;
    if (element.getChildTextValue(text) == PelDOM::SUCCESS)
        std::cout << "  \"" << text << "\"";
    std::cout << "\n";

    PelDOMNodeList children;
    element.getChildNodes(children);
    for (long i = 0; i < children.length(); ++i) {
        PelDOMNode child;
        children.item(i, child);
        if (child.getNodeType() == PelDOM::ELEMENT_NODE)
            printOutline(PelDOMElement(child), depth + 1, tagNames);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: outline FILE\n";
        return 2;
    }
    PelDOMUtilites* const services = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    const PelDOMDocument document = services->readDocument(argv[1]);
    int status = 0;
    if (document.isNull()) {
        std::cerr << "outline: cannot read " << argv[1]
                  << ": it is missing, not well-formed, or breaks its own DTD\n";
        status = 1;
    } else {
        const PelDOMElement root = document.getDocumentElement();
        std::set<PelString> tagNames;
        printOutline(root, 0, tagNames);

        std::cout << "\nElements by tag name, below the root:\n";
        for (const PelString& name : tagNames) {
            PelDOMNodeList elements;
            std::cout << "  " << root.getElementsByTagName(name, elements) << "  " << name << "\n";
        }
    }
    services->terminate();
    PelDOMUtilites::releaseUtilities();
    return status;
}
