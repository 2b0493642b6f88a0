// SPDX-License-Identifier: MIT
//
// The library's whole life in one program: create a document, fill it, write it, read it back,
// query and change it, dump it.
//
//     tour [FILE]      (FILE: where to write, tour.xml if not given)

#include <qrndom/QRNDOM.h>

#include <iostream>

namespace {

// Most operations answer a code of PelDOM::Error; 0 is success.
void report(const char* step, PelDOM::Error code) {
    std::cout << step << (code == PelDOM::SUCCESS ? ": done" : ": code ");
    if (code != PelDOM::SUCCESS)
        std::cout << code;
    std::cout << "\n";
}

// Creates a document and fills it with the builder.
PelDOMDocument createInventory(PelDOMUtilites& services) {
    PelDOMDocument document = services.createDocument("inventory");
    PelDOMFiler filer(document);
    filer.setAttribute("owner", "Ana & Jörg");
    filer.appendElement("city", u"Ljubljana");
    filer.appendElement("boxes", 12);               // whole numbers
    filer.appendElement("weight", 3.5);             // reals: six digits
    filer.appendElement("price", 19.9, "%.2f EUR"); // a format of your own

    // To write inside an element, move the cursor to it.
    PelDOMElement item = document.createElement("item");
    filer.currentElement().appendChild(item);
    filer.setCurrentNode(item);
    filer.setAttribute("id", 7L, "%04ld");
    filer.appendElement("name", u"Teapot \U0001FAD6");

    report("an empty value is refused", filer.appendElement("note", ""));
    return document;
}

// Walks the children of an element, whatever their kind.
void listChildren(const PelDOMElement& element) {
    PelDOMNodeList children;
    element.getChildNodes(children);
    for (long i = 0; i < children.length(); ++i) {
        PelDOMNode child;
        children.item(i, child);
        if (child.getNodeType() != PelDOM::ELEMENT_NODE)
            continue;
        PelString text;
        const PelDOMElement childElement(child);
        if (childElement.getChildTextValue(text) == PelDOM::SUCCESS)
            std::cout << "  " << childElement.getTagName() << " = " << text << "\n";
    }
}

// Reads numbers out of attributes and changes the tree; every handle sees the change.
void queryAndChange(PelDOMDocument& document) {
    PelDOMElement root = document.getDocumentElement();
    listChildren(root);

    PelDOMNodeList items;
    std::cout << "items: " << root.getElementsByTagName("item", items) << "\n";
    PelDOMNode first;
    items.item(0, first);
    PelDOMElement item(first);
    long id = 0;
    report("read the id as a number", item.getAttribute("id", id));
    std::cout << "id: " << id << "\n";

    report("set an attribute", item.setAttribute("checked", "yes"));
    PelDOMElement another = document.createElement("item");
    root.appendChild(another);
    std::cout << "items in the same list now: " << items.length() << "\n";
}

} // namespace

int main(int argc, char** argv) {
    const PelString file = argc > 1 ? argv[1] : "tour.xml";
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);

    const PelDOMDocument created = createInventory(services);
    report("write to a file", services.writeDocument(created, file));

    PelString text;
    report("write into a string", services.writeDocument(created, text, 0, 0, 0));
    std::cout << text << "\n";

    PelDOMDocument document = services.readDocument(file);
    std::cout << "read back: " << (document.isNull() ? "refused" : "a document") << "\n";
    if (document.isNull())
        return 1;
    queryAndChange(document);

    std::cout << "read of broken text: "
              << (services.readDocumentFromStringW("<a><b></a>").isNull() ? "refused"
                                                                          : "a document")
              << "\n";

    document.dump(1); // into the diagnostic log
    report("stop the engine", services.terminate());
    PelDOMUtilites::releaseUtilities();
    std::cout << "the tree lives on: " << document.getDocumentElement().getTagName() << "\n";
    return 0;
}
