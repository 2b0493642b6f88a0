// SPDX-License-Identifier: MIT
//
// Writes a file indented, to the standard output.
//
//     pretty_print FILE

#include <qrndom/QRNDOM.h>

#include <iostream>

int main(int, char** argv) {
    PelDOMReader reader;
    PelDOMWriter writer;
    writer.setIndent(2);
    const PelDOM::Error written = writer.writeStream(reader.readFile(argv[1]), std::cout);
    for (const PelDOMMessage& message : reader.getMessages())
        std::cerr << message.toLine() << "\n";
    return written;
}
