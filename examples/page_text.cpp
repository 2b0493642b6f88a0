// SPDX-License-Identifier: MIT
//
// Prints the text of an XHTML page, each heading, paragraph and list item on a line of its own.
//
//     page_text FILE

#include <qrndom/QRNDOM.h>

#include <iostream>
#include <sstream>
#include <unordered_set>

static const std::unordered_set<PelString> blocks = {"title", "h1", "h2", "p", "br", "li", "td"};
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
    PelDOMReader reader;
    reader.setValidation(PelDOMReader::NEVER); // pages name types that are not at hand
    const PelDOMDocument document = reader.readFile(argv[1]);
    if (!document)
        std::cerr << reader.getMessages().back().toLine() << "\n";
    std::string text;
    addText(document.getDocumentElement(), text);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line, '\f');) {
        std::istringstream words(line);
        line.clear();
        for (std::string word; words >> word;)
            line += (line.empty() ? "" : " ") + word;
        std::cout << line << (line.empty() ? "" : "\n");
    }
    return document ? 0 : 1;
}
