// SPDX-License-Identifier: MIT
//
// Prints an outline of an XML file.
//
//     outline FILE

#include "outline.h"

#include <qrndom/QRNDOM.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: outline FILE\n";
        return 2;
    }
    PelDOMUtilites* const services = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    const PelDOMDocument document = services->readDocument(argv[1]);
    if (document.isNull())
        std::cerr << "outline: cannot read " << argv[1] << "\n"
                  << PelDOMUtilites::getLastReadMessage() << "\n";
    else
        printOutline(document.getDocumentElement());
    PelDOMUtilites::releaseUtilities();
    return document.isNull() ? 1 : 0;
}
