// SPDX-License-Identifier: MIT
//
// Merges address books into one. Of contacts with the same id the last one stays.
//
//     merge_files OUT IN...

#include <qrndom/QRNDOM.h>

#include <iostream>
#include <unordered_map>

int main(int argc, char** argv) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    PelDOMReader reader;
    PelDOMDocument merged = services.createDocument("contacts");
    PelDOMElement contacts = merged.getDocumentElement();
    std::unordered_map<PelString, PelDOMElement> known;
    for (int i = 2; i < argc; ++i) {
        const PelDOMDocument document = reader.readFile(argv[i]);
        if (!document) {
            std::cerr << reader.getMessages().back().toLine() << "\n";
            return 1;
        }
        for (PelDOMElement contact : document.getDocumentElement().getChildElements("contact")) {
            PelDOMElement copy(merged.importNode(contact, true));
            PelDOMElement& earlier = known[contact.getAttribute("id")];
            if (earlier && contact.hasAttribute("id"))
                contacts.replaceChild(copy, earlier);
            else
                contacts.appendChild(copy);
            earlier = copy;
        }
    }
    PelDOMWriter writer;
    writer.setIndent(2);
    const PelDOM::Error written = writer.writeFile(merged, argv[1]);
    std::cerr << writer.getMessage();
    return written;
}
