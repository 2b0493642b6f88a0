// SPDX-License-Identifier: MIT
#pragma once

#include "read/input/PelXercesCheckedStream.h"
#include "read/input/PelXercesEntities.h"
#include "read/limits/PelXercesNameLimits.h"
#include "read/limits/PelXercesReadLimits.h"
#include "xerces/engine/PelXercesMemory.h"

#include <xercesc/internal/XMLScanner.hpp>

#include <cstddef>
#include <unordered_map>

/// The memory of one read but for its tree, the limits that it keeps to, its open streams, and
/// what its entities are called.
class PelXercesReadMemory final : public PelXercesJobMemory {
public:
    PelXercesReadLimits& getLimits() noexcept { return limits; }
    PelXercesOpenStreams& getStreams() noexcept { return streams; }
    PelXercesEntities& getEntities() noexcept { return entities; }
    PelXercesNameLimits& getNames() noexcept { return names; }

    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;

    /// Whether memory is zero when it is new.
    void setCleared(bool isToBeCleared) noexcept { isCleared = isToBeCleared; }

    /// Whose attribute list is being scanned, if any. There every reference counts as one that has
    /// to be declared, also when a parameter entity in the list has made the engine doubt it.
    void setListScanner(xercesc::XMLScanner* scanner) noexcept { listScanner = scanner; }

private:
    bool isCleared = false;
    xercesc::XMLScanner* listScanner = nullptr;
    PelXercesEntities entities;
    PelXercesReadLimits limits;
    PelXercesNameLimits names{limits};
    PelXercesOpenStreams streams; // goes before the limits, and these before the memory
};

/// The memory of trees that are read: like that of all trees, but what a read takes of it counts.
class PelXercesTreeMemory final : public PelXercesMemory {
public:
    static PelXercesTreeMemory& get();

    void* allocate(XMLSize_t size) override;
    void deallocate(void* memory) override;

    /// While it lives, what trees take on its thread is reported to `limits`.
    class Report {
    public:
        explicit Report(PelXercesReadLimits& readLimits) noexcept;
        ~Report();
        Report(const Report&) = delete;
        Report& operator=(const Report&) = delete;

    private:
        friend class PelXercesTreeMemory;

        PelXercesReadLimits& limits;
        Report* const previous;
        std::unordered_map<const void*, std::size_t> large; // others are given back with the tree
    };
};
