// SPDX-License-Identifier: MIT
//
// What the programs have in common: how they begin, read a file, complain and end.
#pragma once

#include <qrndom/QRNDOM.h>

#include <iostream>
#include <string>

// How a program ends; the manual pages say what that means for each.
enum Status { good, bad, trouble };

inline bool startEngine(const char* program) {
    if (PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES)->init() == PelDOM::SUCCESS)
        return true;
    std::cerr << program << ": the engine does not start\n";
    return false;
}

// What stands in front of a line about a place in a file, or about the file.
inline std::string placeIn(const std::string& file, unsigned long line) {
    return file + ":" + (line > 0 ? std::to_string(line) + ":" : "");
}

// What is about a file as a whole has no line.
inline void print(const PelDOMMessage& message) {
    std::cerr << (message.line > 0 ? message.toLine() : message.file + ": " + message.text)
              << (message.isError ? "" : " (warning)") << "\n";
}

// The document, null when it is refused; what there is to say about it is printed.
inline PelDOMDocument read(PelDOMReader& reader, const std::string& file) {
    PelDOMDocument document =
        file == "-" ? reader.readStream(std::cin, file) : reader.readFile(file);
    for (const PelDOMMessage& message : reader.getMessages())
        print(message);
    return document;
}

// The status, unless what was printed is lost.
inline int finish(const char* program, int status) {
    if (std::cout.flush())
        return status;
    std::cerr << program << ": the standard output cannot be written\n";
    return trouble;
}
