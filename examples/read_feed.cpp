// SPDX-License-Identifier: MIT
//
// Prints the items of an RSS feed.
//
//     read_feed FILE

#include <qrndom/QRNDOM.h>

#include <iostream>

int main(int, char** argv) {
    PelDOMReader reader;
    const PelDOMDocument document = reader.readFile(argv[1]);
    for (const PelDOMMessage& message : reader.getMessages())
        std::cerr << message.toLine() << "\n";
    const PelDOMElement channel = document.getDocumentElement().getChildElement("channel");
    std::cout << channel.getChildElement("title").getTextContent() << "\n";
    for (PelDOMElement item : channel.getChildElements("item")) {
        std::cout << "\n" << item.getChildElement("title").getTextContent() << "\n";
        // Authors come from another vocabulary, under whatever prefix the feed gives it.
        for (PelDOMElement child : item.getChildElements())
            if (child.getLocalName() == "creator" &&
                child.lookupNamespaceURI(child.getPrefix()) == "http://purl.org/dc/elements/1.1/")
                std::cout << "by " << child.getTextContent() << "\n";
        const PelDOMElement enclosure = item.getChildElement("enclosure");
        if (enclosure)
            std::cout << enclosure.getAttribute("url") << " ("
                      << enclosure.getAttributeOr("length", 0L) / 1024 << " KiB)\n";
        // Mostly a CDATA section; the text is the same.
        std::cout << item.getChildElement("description").getTextContent() << "\n";
    }
    return document ? 0 : 1;
}
