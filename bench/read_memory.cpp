// SPDX-License-Identifier: MIT
//
// Reads one file and prints the peak memory of the process, in KiB.
//
//     read_memory LIBRARY FILE

#include "libraries.h"

#include <iostream>
#include <stdexcept>
#include <sys/resource.h>

int main(int argc, char** argv) try {
    if (argc != 3)
        throw std::runtime_error("read_memory LIBRARY FILE");
    const std::string wanted = argv[1];
    const Document document{"given", argv[2], false};
    bool isKnown = false;
    Qrndom::services(); // starts the engine
    forEachLibrary([&](auto library) {
        using Library = decltype(library);
        if (wanted != Library::name)
            return;
        isKnown = true;
        const auto tree = Library::readFile(document);
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::cout << usage.ru_maxrss << "\n";
    });
    return isKnown ? 0 : 1;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 1;
}
