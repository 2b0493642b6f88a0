// SPDX-License-Identifier: MIT
//
// The documents that are measured. Those that are generated are the same on every machine.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct Document {
    std::string name;
    std::string path;
    bool hasDoctype; // read with validation by the libraries that can
};

// A catalogue of products of about `bytes`, with attributes, text children and mixed content.
Document writeCatalogue(const std::string& name, std::size_t bytes);

// A root with `count` children that hold a short text each.
Document writeFlat(const std::string& name, int count);

// The catalogue of 8.4 MB and its contrasts: flat, deep, text of many scripts, a catalogue whose
// texts hold character references, and the file of media types that desktops install, if there.
std::vector<Document> writeDocuments();

std::string contentOf(const Document& document);
std::string outputPath();
