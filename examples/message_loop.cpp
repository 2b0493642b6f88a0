// SPDX-License-Identifier: MIT
//
// Answers orders, one on each line of the standard input, and ends with a journal of the last
// three.
//
//     message_loop < orders

#include <qrndom/QRNDOM.h>

#include <iostream>

int main() {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    PelDOMReader reader;
    PelDOMDocument journal = services.createDocument("journal");
    PelDOMElement entries = journal.getDocumentElement();
    PelDOMWriter writer;
    for (std::string line; std::getline(std::cin, line);) {
        PelDOMElement answer = journal.createElement("answer");
        PelDOMElement order = reader.readBytes(line.data(), line.size(), "in").getDocumentElement();
        if (order) {
            unsigned long cents = 0;
            for (PelDOMElement item : order.getChildElements("item"))
                cents += item.getAttributeOr("pieces", 1UL) * item.getAttributeOr("cents", 0UL);
            answer.setAttribute("cents", cents);
            answer.setAttribute("order", order.getAttribute("id"));
            entries.appendChild(journal.importNode(order, true));
            if (entries.getChildNodes().length() > 3)
                entries.removeChild(entries.getFirstChild()); // and its memory is given back
        } else {
            answer.setTextContent(reader.getMessages().back().text);
        }
        writer.writeStream(answer, std::cout);
        std::cout << std::endl;
    }
    return writer.writeStream(journal, std::cout);
}
