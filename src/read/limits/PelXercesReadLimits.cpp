// SPDX-License-Identifier: MIT
#include "read/limits/PelXercesReadLimits.h"

#include "core/PelPlatform.h"
#include "xerces/engine/PelXercesAllocations.h"

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/internal/XMLReader.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <algorithm>
#include <chrono>
#include <exception>
#include <limits>

namespace {

// In the order of PelXercesReadLimits::Work.
constexpr const char16_t* kindsOfWork[] = {u"too much work for the attributes of elements",
                                           u"too much work for declarations",
                                           u"too much work for checking attribute values",
                                           u"too much work for checking content",
                                           u"too much work for content models",
                                           u"too much work for finding files"};

// No bound that is set is too large to be counted with.
constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

constexpr std::uint64_t productOf(std::uint64_t one, std::uint64_t other) {
    return one != 0 && other > most / one ? most : one * other;
}

constexpr std::uint64_t sumOf(std::uint64_t one, std::uint64_t other) {
    return other > most - one ? most : one + other;
}

} // namespace

PelXercesReadLimits::PelXercesReadLimits() {
    setBounds({});
}

void PelXercesReadLimits::setBounds(const Bounds& newBounds) {
    bounds = newBounds;
    addInput(0);
}

// The engine's parser reads such documents with less than half of this memory and a third of this
// time. It takes one reader for the document itself.
bool PelXercesReadLimits::Bounds::areFarFrom(std::size_t size) const noexcept {
    constexpr std::uint64_t memoryOfAny = std::uint64_t{2} << 20;
    constexpr std::uint64_t memoryOfByte = 280;
    constexpr std::uint64_t millisecondsOfAny = 200;
    constexpr std::uint64_t nanosecondsOfByte = 400;
    constexpr std::uint64_t perMillisecond = 1'000'000;
    const std::uint64_t time = productOf(milliseconds, perMillisecond);
    return sumOf(memory, productOf(memoryPerByte, size)) >=
               sumOf(memoryOfAny, productOf(memoryOfByte, size)) &&
           sumOf(time, productOf(nanosecondsPerByte, size)) >=
               sumOf(millisecondsOfAny * perMillisecond, productOf(nanosecondsOfByte, size)) &&
           references > 0;
}

std::uint64_t PelXercesReadLimits::boundFor(std::size_t base, std::size_t perByte) const noexcept {
    return sumOf(base, productOf(perByte, input));
}

void PelXercesReadLimits::addInput(std::size_t bytes) noexcept {
    input += bytes;
    workBound = boundFor(bounds.work, bounds.workPerByte);
    memoryBound = boundFor(bounds.memory, bounds.memoryPerByte);
}

void PelXercesReadLimits::addExpansion(std::size_t characters) {
    expansion += characters;
    require(expansion <= boundFor(bounds.expansion, bounds.expansionPerByte),
            u"too much text from entities, default attributes or files read again");
}

void PelXercesReadLimits::addEntity(std::size_t length) {
    longestEntity = std::max(longestEntity, length);
}

// Each reference to an entity, wherever it stands, takes one reader; nothing else tells of those in
// attribute values and in document types. Models are made of nodes, start tags of attributes;
// nothing of these sizes is taken where the engine clears up.
void PelXercesReadLimits::addMemory(std::size_t bytes, std::size_t overhead) {
    using PelXercesAllocations::isFor;
    const bool isReference = isFor<xercesc::XMLReader>(bytes);
    memory += bytes + overhead;
    if (bytes == stateBytes)
        addWork(Work::models, stepsPerState);
    if (isReference) {
        require(++references <= bounds.references, u"too many references to entities");
        addExpansion(longestEntity);
    }
    const bool isSafe = isWatched && !isFor<PelXercesAllocations::ReaderOfEntity>(bytes);
    if (isSafe || isReference || isFor<xercesc::ContentSpecNode>(bytes) ||
        isFor<xercesc::XMLAttr>(bytes)) {
        addEvent();
        requireMemory();
    }
}

void PelXercesReadLimits::addTreeMemory(std::size_t bytes) {
    memory += bytes;
    requireMemory();
}

void PelXercesReadLimits::requireMemory() {
    require(memory <= memoryBound, u"too much memory");
}

void PelXercesReadLimits::exceedWork() {
    exceed(kindsOfWork[std::max_element(shares.begin(), shares.end()) - shares.begin()]);
}

// The end of the stack is asked for once: a read stays on its thread.
void PelXercesReadLimits::requireStack(std::size_t bytes) {
    const char here = 0;
    const auto place = reinterpret_cast<std::uintptr_t>(&here);
    if (stackEnd == 0)
        stackEnd = place - PelPlatform::stackLeft();
    require(place - stackEnd >= bytes, u"too large a content model for the stack of this thread");
}

// Processor time takes a call of the system, the other clock does not.
void PelXercesReadLimits::lookAtClock() {
    constexpr double pause = 0.02;
    const double now =
        std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    if (now < nextLook)
        return;
    nextLook = now + pause;
    const double time = PelPlatform::processorTime();
    if (start < 0)
        start = time;
    const double bound =
        1e-3 * static_cast<double>(bounds.milliseconds) +
        1e-9 * static_cast<double>(bounds.nanosecondsPerByte) * static_cast<double>(input);
    require(time - start <= bound, u"too much processor time");
}

// Only the first time, and never while something else is thrown: what the engine clears up then
// must not fail. Without any input there is nothing to refuse.
void PelXercesReadLimits::exceed(const char16_t* what) {
    if (excess != nullptr || input == 0 || std::uncaught_exceptions() > 0)
        return;
    excess = what;
    throw xercesc::OutOfMemoryException();
}
