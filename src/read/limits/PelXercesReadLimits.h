// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

/// What one read has taken, and what it may take for the input that it has got, so that little
/// input cannot take much time or memory. Whoever sees something that counts reports it here,
/// before the engine does it where there is a way; a bound that is passed ends the read by the
/// engine's OutOfMemoryException.
///
/// Work is counted in steps of about a nanosecond. Its kinds have one bound together, since they
/// add up; the one with the greatest share is named.
class PelXercesReadLimits {
public:
    /// What every document may take, and what it may take besides for each byte of input.
    struct Bounds {
        std::size_t work = 800'000'000; ///< Steps.
        std::size_t workPerByte = 500;
        std::size_t memory = std::size_t{64} << 20; ///< Bytes, of the parser and the tree.
        std::size_t memoryPerByte = 280;
        std::size_t expansion = std::size_t{8} << 20; ///< Characters.
        std::size_t expansionPerByte = 8;
        std::size_t milliseconds =
            1'500; ///< Of processor time: a last guard for what is not counted.
        std::size_t nanosecondsPerByte = 800;
        std::size_t entityExpansions = 50'000;
        std::size_t references = 100'000;
        std::size_t names = 100'000;      ///< Different ones in the tree; declarations of a kind.
        std::size_t alikeNames = 400;     ///< In one chain of a table that grows.
        std::size_t alikeInFixed = 1'000; ///< In one chain of a table that does not.
        std::size_t modelParts = 10'000;
        std::size_t listCharacters = std::size_t{1} << 16;
        std::size_t reportCharacters = std::size_t{4} << 20;

        /// Whether no document without a type, of this size in bytes, can come near these bounds,
        /// but for those on names and on work, which depend on more than the size.
        bool areFarFrom(std::size_t size) const noexcept;
    };

    enum class Work { attributes, declarations, values, content, models, files };

    PelXercesReadLimits();
    PelXercesReadLimits(const PelXercesReadLimits&) = delete;
    PelXercesReadLimits& operator=(const PelXercesReadLimits&) = delete;

    void setBounds(const Bounds& newBounds);
    const Bounds& getBounds() const noexcept { return bounds; }

    /// What was too much, in words; null as long as all is within bounds.
    const char16_t* getExcess() const noexcept { return excess; }

    /// Bytes of input have been read.
    void addInput(std::size_t bytes) noexcept;

    /// Bytes of a file have been read; those of a file that was read before are no new input.
    void addFileInput(std::size_t bytes, bool isAgain) {
        isAgain ? addExpansion(bytes) : addInput(bytes);
    }

    /// Whether the file has been opened before; it has from now on.
    bool opensAgain(const std::string& path) { return !files.insert(path).second; }

    /// The engine is about to do some work, or has just done it.
    void addWork(Work kind, std::uint64_t steps) {
        shares[static_cast<std::size_t>(kind)] += steps;
        if ((work += steps) > workBound)
            exceedWork();
    }

    /// Called once per parser event; checks the time every 32 calls.
    void addEvent() {
        if (++events % eventsPerLook == 0)
            lookAtClock();
    }

    /// Characters have come into the document that are not written where they stand.
    void addExpansion(std::size_t characters);

    /// An entity of this length has been declared.
    void addEntity(std::size_t length);

    /// The reference that took memory last is to an entity of this length. The length of one that
    /// nobody tells counts as that of the longest.
    void addReferenceTo(std::size_t length) noexcept { expansion -= longestEntity - length; }

    /// An error or a warning has this many characters.
    void addReport(std::size_t characters) {
        require((reports += characters) <= bounds.reportCharacters, u"too many errors");
    }

    /// The parser takes memory, or gives it back; the tree only takes some.
    void addMemory(std::size_t bytes, std::size_t overhead);
    void removeMemory(std::size_t bytes) noexcept { memory -= bytes; }
    void addTreeMemory(std::size_t bytes);

    /// What is taken of memory ends the read at any time only while it is watched, be it for the
    /// amount or for the time by then. Else it does where the engine begins something; some of its
    /// clearing up takes memory, too, and must not fail.
    void watchMemory(bool isToBeWatched) noexcept { isWatched = isToBeWatched; }

    /// The engine makes a part of a content model, by recursion over the groups around it.
    void addModelPart() {
        if (++madeParts > fewParts)
            requireStack(stackForParts);
    }

    /// It is about to make an automaton of a model, by recursion over so many parts.
    void requireStackFor(std::size_t parts) {
        if (parts > fewParts)
            requireStack(parts <= SIZE_MAX / stackPerPart ? parts * stackPerPart : SIZE_MAX);
    }

    /// While an automaton is made, each state takes one table of this size, and these steps.
    void expectStates(std::size_t tableBytes, std::size_t steps) noexcept {
        stateBytes = tableBytes;
        stepsPerState = steps;
    }

    void require(bool isWithin, const char16_t* what) {
        if (!isWithin)
            exceed(what);
    }

private:
    std::uint64_t boundFor(std::size_t base, std::size_t perByte) const noexcept;

    static constexpr unsigned eventsPerLook = 32;

    // Of a thread's stack: what a part of a model may take, and what must be left while the parts
    // are made. Asking what is left takes long, so it is not done for the sake of few.
    static constexpr std::size_t fewParts = 100;
    static constexpr std::size_t stackPerPart = 256;
    static constexpr std::size_t stackForParts = std::size_t{16} << 10;

    void exceed(const char16_t* what);
    void exceedWork();
    void requireStack(std::size_t bytes);
    void lookAtClock();
    void requireMemory();

    Bounds bounds;
    std::size_t input = 0;
    std::uint64_t work = 0; // on 32 bits, too, there is more of it than a size can tell
    std::uint64_t workBound = 0;
    std::size_t memory = 0;
    std::uint64_t memoryBound = 0;
    std::array<std::uint64_t, 6> shares{};
    std::size_t expansion = 0;
    std::size_t longestEntity = 0;
    std::size_t references = 0;
    std::size_t reports = 0;
    std::size_t stateBytes = 0;
    std::size_t stepsPerState = 0;
    std::set<std::string> files;
    std::size_t madeParts = 0;
    std::uintptr_t stackEnd = 0;
    unsigned events = 0;
    double nextLook = 0;
    double start = -1;
    bool isWatched = false;
    const char16_t* excess = nullptr;
};
