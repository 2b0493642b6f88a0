// SPDX-License-Identifier: MIT
//
// Prints the text of an XHTML page, each heading, paragraph and list item on a line of its own.
//
//     page_text FILE

#include <qrndom/QRNDOM.h>

#include <iostream>
#include <regex>
#include <unordered_set>

static const std::unordered_set<PelString> blocks = {"title", "h1", "h2", "h3",
                                                     "p",     "br", "li", "td"};
static const std::unordered_set<PelString> unseen = {"script", "style", "#comment"};

// A form feed, which no page can hold, stands for the begin and the end of a block.
static void addText(const PelDOMNode& parent, std::string& text) {
    for (PelDOMNode node : parent.getChildNodes()) {
        const PelString name = node.getNodeName();
        if (unseen.count(name) != 0)
            continue;
        const std::string edge = blocks.count(name) != 0 ? "\f" : "";
        text += edge + node.getNodeValue().toUtf8();
        addText(node, text);
        text += edge;
    }
}

int main(int, char** argv) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    const PelDOMDocument document = services.readDocument(argv[1]);
    std::cerr << PelDOMUtilites::getLastReadMessage();
    std::string text;
    addText(document.getDocumentElement(), text);
    text = std::regex_replace(text, std::regex("[ \t\n]+"), " ");
    text = std::regex_replace(text, std::regex("^[ \f]+"), "");
    std::cout << std::regex_replace(text + "\f", std::regex("[ \f]*\f[ \f]*"), "\n");
    return document ? 0 : 1;
}
