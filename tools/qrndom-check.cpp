// SPDX-License-Identifier: MIT
//
// Reads files as the library reads them and says all that is wrong with them, a line for each error
// and warning. Exits with 0 when all files can be read, 1 when one cannot, 2 for a wrong call.
//
//     qrndom-check [--outline] FILE...

#include "../examples/outline.h"

#include <qrndom/QRNDOM.h>

#include <cstring>
#include <iostream>

namespace {

int usage() {
    std::cerr << "usage: qrndom-check [--outline] FILE...\n"
                 "Says what keeps the QRNDOM library from reading XML files: file:line:column: "
                 "message\n"
                 "  --outline   also prints what is in those that can be read\n";
    return 2;
}

bool check(const char* file, bool isOutlineWanted) {
    PelDOMReader reader;
    const PelDOMDocument document = reader.readFile(file);
    for (const PelDOMMessage& message : reader.getMessages())
        std::cout << message.toLine() << (message.isError ? "" : " (warning)") << "\n";
    if (document && isOutlineWanted)
        printOutline(document.getDocumentElement());
    return static_cast<bool>(document);
}

} // namespace

int main(int argc, char** argv) {
    const bool isOutlineWanted = argc > 1 && std::strcmp(argv[1], "--outline") == 0;
    const int first = isOutlineWanted ? 2 : 1;
    if (argc <= first || argv[first][0] == '-')
        return usage();
    if (PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES)->init() != PelDOM::SUCCESS) {
        std::cerr << "qrndom-check: the engine does not start\n";
        return 2;
    }
    bool areAllGood = true;
    for (int i = first; i < argc; ++i)
        areAllGood = check(argv[i], isOutlineWanted) && areAllGood;
    PelDOMUtilites::releaseUtilities();
    return areAllGood ? 0 : 1;
}
