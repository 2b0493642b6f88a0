// SPDX-License-Identifier: MIT
#include <qrndom/QRNDOM.h>

#include <iostream>

int main(int, char** argv) {
    PelDOMUtilites* const services = PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    std::cout << services->readDocument(argv[1]).getDocumentElement().getTagName() << "\n";
    PelDOMUtilites::releaseUtilities();
}
