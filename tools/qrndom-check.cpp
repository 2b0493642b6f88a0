// SPDX-License-Identifier: MIT
//
// Reads files as the library reads them and says all that is wrong with them, a line for each error
// and warning. Exits with 0 when all files can be read, 1 when one cannot, 2 for a wrong call.
//
//     qrndom-check [--outline] FILE...

#include "../examples/outline.h"
#include "reading/PelXercesReader.h"
#include "xerces/PelXercesDOMNode.h"

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
    bool isReported = false;
    const auto report = [&](bool isError, const PelString& line) {
        isReported = isReported || isError;
        std::cout << line << (isError ? "" : " (warning)") << "\n";
    };
    PelXercesReader reader(PelXercesTreeBuilder::usualRoad, report);
    const PelXercesNodeRef node = reader.readFile(file);
    if (!node && !isReported)
        std::cout << PelDOMUtilites::getLastReadMessage() << "\n";
    if (node && isOutlineWanted)
        printOutline(PelDOMDocument(new PelXercesDOMNode(node)).getDocumentElement());
    return static_cast<bool>(node);
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
