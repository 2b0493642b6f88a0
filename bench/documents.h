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

// Messages of 870 bytes; as many as are asked for, evenly spread, have a wrong end tag.
std::vector<std::string> makeMessages(int count, int broken);

// A row of a table.
struct Row {
    std::string product;
    std::string maker;
    std::string stock;
};

std::vector<Row> makeRows(int count);

// The catalogue of 8.4 MB and its contrasts: flat, deep, text of many scripts, a catalogue whose
// texts hold character references, one with declared IDs and defaults, and the file of media types
// that desktops install, if there.
std::vector<Document> writeDocuments();

std::string contentOf(const Document& document);
std::string outputPath();
