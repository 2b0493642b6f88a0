// SPDX-License-Identifier: MIT
//
// Takes all but one author's books out of a catalogue, and puts these in the order of their prices.
//
//     find_sort FILE AUTHOR

#include <qrndom/QRNDOM.h>

#include <algorithm>
#include <iostream>
#include <vector>

int main(int, char** argv) {
    PelDOMReader reader;
    const PelDOMDocument document = reader.readFile(argv[1]);
    for (const PelDOMMessage& message : reader.getMessages())
        std::cerr << message.toLine() << "\n";
    const auto price = [](const PelDOMElement& book) { return book.getAttributeOr("price", 0.0); };
    PelDOMElement catalogue = document.getDocumentElement();
    std::vector<PelDOMElement> books;
    for (PelDOMElement book : catalogue.getChildElements("book")) {
        if (book.getAttribute("author") == argv[2])
            books.push_back(book);
        else
            catalogue.removeChild(book);
    }
    std::stable_sort(books.begin(), books.end(),
                     [&](auto& left, auto& right) { return price(left) < price(right); });
    for (const PelDOMElement& book : books)
        catalogue.appendChild(book); // moves it to the end

    PelDOMWriter writer;
    writer.setIndent(2);
    return writer.writeStream(document, std::cout);
}
