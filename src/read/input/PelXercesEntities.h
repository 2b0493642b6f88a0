// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelPlatform.h"
#include "read/input/PelEncodingCheck.h"

#include <qrndom/PelString.h>

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Where in a text the characters stand that take two UTF-16 units, as far as it was looked at.
class PelSurrogateIndex {
public:
    /// In an encoding, by any of its names; none where nobody knows it.
    explicit PelSurrogateIndex(const char* encoding);

    /// The text goes on with these bytes.
    void add(const void* bytes, std::size_t size);

    /// Whether all that stands before a column, in units from 1, of a line is known.
    bool isKnown(unsigned long line, unsigned long column) const;

    /// How many of them end before it.
    unsigned long countBefore(unsigned long line, unsigned long column) const;

private:
    using Place = std::pair<unsigned long, unsigned long>; // line and column

    PelConverter::Handle converter; // none: there is no more to know
    Place end{1, 0};                // of the last unit
    char16_t last = 0;
    std::vector<Place> places; // of the second units
};

/// The document of one read and the external entities in it, as messages speak of them. The engine
/// knows each by its system identifier.
class PelXercesEntities {
public:
    struct Failure {
        PelString id;
        PelString reason;
    };

    /// The document, which messages call `name`; what it names is found from the file `base`. Its
    /// bytes, if they are in memory, stay there.
    void addDocument(const PelString& id, const PelString& name, const PelString& base,
                     const void* bytes = nullptr, std::size_t size = 0);

    /// An entity to which the one with the identifier `parentId` refers by `name`.
    void add(const PelString& id, const PelString& parentId, const PelString& name);

    /// Whether the name of an entity begins as an address does: "urn:", "http:".
    static bool hasScheme(const PelString& name);

    /// The identifier itself where nothing else is known.
    PelString nameOf(const PelString& id) const;

    bool isDocument(const PelString& id) const { return id == documentId; }

    /// The column in characters of a column in UTF-16 units.
    unsigned long inCharacters(const PelString& id, const char* encoding, unsigned long line,
                               unsigned long column);

    /// Whether the next entity is the external subset; asking for it forgets it.
    void expectSubset(bool isNext) noexcept { isSubsetNext = isNext; }
    bool takeExpectsSubset() noexcept { return std::exchange(isSubsetNext, false); }

    /// The entity that has last been found to be unreadable; asking for it forgets it.
    void setFailure(const PelString& id, const PelString& reason) { failure = Failure{id, reason}; }
    std::optional<Failure> takeFailure() { return std::exchange(failure, std::nullopt); }

private:
    struct Entity {
        PelString name;
        PelString folder; // by which names in it are shown
        std::string path;
        const void* bytes = nullptr;
        std::size_t size = 0;
        std::size_t done = 0; // bytes that `pairs` has seen
        std::optional<PelSurrogateIndex> pairs;
    };

    bool addPiece(Entity& entity);

    PelString documentId;
    std::map<PelString, Entity> entities;
    const Entity* openEntity = nullptr; // whose file is kept open for the next messages
    std::optional<PelPlatform::InputFile> file;
    std::optional<Failure> failure;
    bool isSubsetNext = false;
};
