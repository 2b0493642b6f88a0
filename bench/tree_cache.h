// SPDX-License-Identifier: MIT
#pragma once

#include "documents.h"

#include <map>
#include <string>

// The library's tree of a document, read once in a process.
template <class Library>
const typename Library::Tree& cachedTree(const Document& document) {
    static std::map<std::string, typename Library::Tree> trees;
    const auto found = trees.find(document.name);
    if (found != trees.end())
        return found->second;
    return trees.emplace(document.name, Library::readFile(document)).first->second;
}
