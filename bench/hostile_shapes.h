// SPDX-License-Identifier: MIT
//
// Documents that are small for what a reader could be made to do with them.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// The files of one hostile document, by their names; the document itself is "main.xml".
using HostileFiles = std::map<std::string, std::string>;

struct HostileShape {
    std::string name;
    std::function<HostileFiles(std::size_t bytes)> make; ///< Of about so many bytes altogether.
};

const std::vector<HostileShape>& hostileShapes();
