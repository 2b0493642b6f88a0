// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_set>

/// Bounds on what one read may make of its input, so that little input cannot take much time or
/// memory; most of them grow with the input. The engine bounds only references to entities in
/// content and attribute values. Whoever sees something that counts reports it here, and a bound
/// that is passed ends the read by the engine's OutOfMemoryException.
class PelXercesReadLimits {
public:
    static constexpr std::size_t freeExpansion = std::size_t{8} << 20; ///< Characters.
    static constexpr std::size_t expansionPerByte = 8;
    static constexpr std::size_t freeMemory = std::size_t{64} << 20; ///< Bytes, the tree left out.
    static constexpr std::size_t memoryPerByte = 48;
    static constexpr std::size_t memoryPerLevel = 512;
    static constexpr std::size_t maxReferences = 100'000;
    static constexpr std::size_t maxNames = 100'000;
    static constexpr std::size_t maxModelNodes = 10'000;
    static constexpr std::size_t maxChoice = std::size_t{1} << 16; ///< Characters.

    PelXercesReadLimits() = default;
    PelXercesReadLimits(const PelXercesReadLimits&) = delete;
    PelXercesReadLimits& operator=(const PelXercesReadLimits&) = delete;

    /// What was too much, in words; null as long as all is within bounds.
    const char16_t* getExcess() const noexcept { return excess; }

    /// Bytes of input have been read.
    void addInput(std::size_t bytes) noexcept { input += bytes; }

    /// Bytes of a file have been read; those of a file that was read before are no new input.
    void addFileInput(std::size_t bytes, bool isAgain) {
        isAgain ? addExpansion(bytes) : addInput(bytes);
    }

    /// Whether the file has been opened before; it has from now on.
    bool opensAgain(const std::string& path) { return !files.insert(path).second; }

    /// Characters have come into the document that are not written where they stand.
    void addExpansion(std::size_t characters);

    /// The document has declared an element, an entity or a notation, the `number`th of its kind.
    void addDeclaration(std::size_t number) {
        require(number < maxNames, u"too many declarations");
    }

    /// What has been declared: an entity's length, an element's content model, the values from
    /// which an attribute may choose, if any.
    void addEntity(std::size_t length);
    void addContentModel(const xercesc::ContentSpecNode* model);
    void addChoice(const XMLCh* values);

    /// An element begins, or ends; the parser keeps a record of each level for good.
    void openElement() noexcept { deepest = std::max(deepest, ++depth); }
    void closeElement() noexcept { --depth; }

    /// An element or an attribute has come into the document. A name is at the same address as long
    /// as the document lives.
    void addName(const XMLCh* name) {
        const XMLCh*& seen =
            seenNames[reinterpret_cast<std::uintptr_t>(name) / 8 % seenNames.size()];
        if (seen != name)
            addRareName(seen = name);
    }

    /// The reference that took memory last is to an entity of this length. The length of one that
    /// nobody tells counts as that of the longest.
    void addReferenceTo(std::size_t length) noexcept { expansion -= longestEntity - length; }

    /// The parser takes memory, or gives it back.
    void addMemory(std::size_t bytes);
    void removeMemory(std::size_t bytes) noexcept { memory -= bytes; }

    /// Memory is bounded only while it is watched: much of the engine's clearing up takes some, and
    /// must not fail.
    void watchMemory(bool isToBeWatched) noexcept { isWatched = isToBeWatched; }

private:
    void require(bool isWithin, const char16_t* what);
    void addRareName(const XMLCh* name);

    std::size_t input = 0;
    std::size_t expansion = 0;
    std::size_t longestEntity = 0;
    std::size_t references = 0;
    std::size_t memory = 0;
    std::size_t depth = 0;
    std::size_t deepest = 0;
    std::set<std::string> files;
    std::unordered_set<const XMLCh*> names;
    std::array<const XMLCh*, 256> seenNames{};
    bool isWatched = false;
    const char16_t* excess = nullptr;
};
