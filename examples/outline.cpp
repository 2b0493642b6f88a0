// SPDX-License-Identifier: MIT
//
// Prints an outline of an XML file: its elements with their depth, attributes and text, then how
// often each tag name occurs.
//
//     outline FILE

#include <qrndom/QRNDOM.h>

#include <iostream>
#include <set>
#include <string>

namespace {

// A typed read takes the number that a text starts with; dates start with numbers too.
bool isNumber(const std::string& text) {
    return text.find_first_not_of("+-.0123456789eE") == text.npos &&
           text.find_first_of("+-", 1) == text.npos;
}

// Attributes come as text, and as numbers where they are.
std::string describeAttributes(const PelDOMElement& element) {
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
