// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>

/// What is known of the insides of the engine's parser, which tells of much only by the memory that
/// it takes: sizes of allocations, and places in tables of names. A size that another release
/// changes only makes its parser's limits coarser. tests/engine_test.cpp looks whether they hold.
namespace PelXercesAllocations {

/// Whether the engine takes so many bytes for an object of a class, before which it keeps a pointer
/// to its memory manager.
template <class Object>
bool isFor(std::size_t bytes) {
    static const std::size_t header =
        xercesc::XMLPlatformUtils::alignPointerForNewBlockAllocation(sizeof(void*));
    return bytes == sizeof(Object) + header;
}

/// How newer releases keep a reader and its entity. When there is no memory for that, they destroy
/// the reader before twice.
struct ReaderOfEntity {
    void* reader;
    void* entity;
    bool isOwned;
};

/// The parser's array of the places of characters in their source.
constexpr std::size_t converterPlaces = std::size_t{16} * 1024 * sizeof(XMLUInt32);

/// A hash table of names: the places it begins with, and how many names for each four places make
/// it grow; with none it never does.
struct Table {
    std::size_t places;
    std::size_t namesPerFour = 3;
};

constexpr Table treeNames{257, 4}; // as the library makes it grow
constexpr Table undeclaredElements{29};
constexpr Table declarations{109}; // elements, entities and notations of a grammar
constexpr Table declaredAttributes{29};
constexpr Table ids{109};
constexpr Table treeDeclarations{193, 0};
constexpr Table tagAttributes{7, 16};

} // namespace PelXercesAllocations
