// SPDX-License-Identifier: MIT
//
// Writes a file indented, to the standard output.
//
//     pretty_print FILE

#include <qrndom/QRNDOM.h>

#include <iostream>

int main(int, char** argv) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    PelDOMWriter writer;
    writer.setIndent(2);
    const PelDOM::Error written = writer.writeStream(services.readDocument(argv[1]), std::cout);
    std::cerr << PelDOMUtilites::getLastReadMessage();
    return written;
}
