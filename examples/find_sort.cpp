// SPDX-License-Identifier: MIT
//
// Takes the books above a price out of a catalogue, and puts the others in order of their prices.
//
//     find_sort FILE PRICE

#include <qrndom/QRNDOM.h>

#include <algorithm>
#include <iostream>
#include <vector>

int main(int argc, char** argv) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    const PelDOMDocument document = services.readDocument(argv[1]);
    double limit = 0;
    if (!document || argc < 3 || !PelString(argv[2]).toDouble(limit)) {
        std::cerr << "usage: find_sort FILE PRICE\n"
                  << PelDOMUtilites::getLastReadMessage() << "\n";
        return 1;
    }
    const auto priceOf = [](const PelDOMElement& book) {
        return book.getAttributeOr("price", 0.0);
    };
    PelDOMElement catalogue = document.getDocumentElement();
    std::vector<PelDOMElement> books;
    for (PelDOMElement book : catalogue.getChildElements("book")) {
        if (priceOf(book) <= limit)
            books.push_back(book);
        else
            catalogue.removeChild(book);
    }
    std::stable_sort(books.begin(), books.end(),
                     [&](auto& left, auto& right) { return priceOf(left) < priceOf(right); });
    for (const PelDOMElement& book : books)
        catalogue.appendChild(book); // moves it to the end

    PelDOMWriter writer;
    writer.setIndent(2);
    return writer.writeStream(document, std::cout);
}
