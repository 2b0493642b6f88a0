// SPDX-License-Identifier: MIT
#include "xerces/engine/PelXercesEngine.h"

#include "xerces/engine/PelXercesFields.h"
#include "xerces/engine/PelXercesLayoutCheck.h"
#include "xerces/engine/PelXercesMemory.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <mutex>
#include <new>

using xercesc::XMLPlatformUtils;

namespace {

// All of these are free of destructors, so that handles in static storage may be dropped at exit.
std::mutex lifecycle;
long startsToStop = 0;
long shares = 0;

// A start of the engine that fails leaves it half built, in which state neither another start nor a
// stop would survive.
bool isHalfStarted = false;

bool isUp() {
    return XMLPlatformUtils::fgMemoryManager != nullptr;
}

// The engine's first start takes half of this. Where there is none, it is better not begun.
bool hasMemoryToStart() {
    constexpr std::size_t needed = std::size_t{1} << 20;
    try {
        ::operator delete(::operator new(needed));
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// The engine fills a table on the first append to any tree, which two threads must not do at once.
void fillLazyTables() {
    static bool areFilled = false;
    if (areFilled)
        return;
    xercesc::DOMImplementation::getImplementation()
        ->createDocument(nullptr, u"x", nullptr)
        ->release();
    areFilled = true;
}

bool startLocked() {
    if (isHalfStarted || (!isUp() && !hasMemoryToStart()))
        return false;
    isHalfStarted = !isUp();
    XMLPlatformUtils::Initialize();
    isHalfStarted = false;
    bool isReady = false;
    try {
        fillLazyTables();
        PelXercesLayoutCheck::run();
        isReady = true;
    } catch (...) { // what was thrown may need the engine to go
    }
    if (!isReady)
        XMLPlatformUtils::Terminate();
    return isReady;
}

} // namespace

bool PelXercesEngine::start() {
    const std::lock_guard<std::mutex> lock(lifecycle);
    if (!startLocked())
        return false;
    ++startsToStop;
    return true;
}

void PelXercesEngine::stop() {
    const std::lock_guard<std::mutex> lock(lifecycle);
    if (isHalfStarted)
        return;
    if (startsToStop > 0)
        --startsToStop;
    else if (isUp())
        XMLPlatformUtils::Initialize(); // shares or others keep it up: this stop takes back itself
    XMLPlatformUtils::Terminate();
}

PelXercesEngine::Share::Share() {
    const std::lock_guard<std::mutex> lock(lifecycle);
    if (shares == 0 && !startLocked())
        throw PelXercesOutOfMemory();
    ++shares;
}

PelXercesEngine::Share::Share(const Share& /*other*/) noexcept {
    const std::lock_guard<std::mutex> lock(lifecycle);
    ++shares;
}

PelXercesEngine::Share::~Share() {
    const std::lock_guard<std::mutex> lock(lifecycle);
    if (--shares == 0)
        XMLPlatformUtils::Terminate();
}

PelString PelXercesEngine::describe() {
    const PelString release("Xerces-C++ " XERCES_FULLVERSIONDOT);
    try {
        if (!start())
            return release + u", which does not start";
    } catch (const xercesc::XMLException&) {
        return release + u", which does not start";
    }
    const bool areKnown = PelXercesFields::areKnown();
    stop();
    if (!areKnown)
        return release + u", used through its interface alone";
#ifdef QRNDOM_FAST_READ
    return release + u", whose fields are known";
#else
    return release + u", whose fields are known, and whose parser reads everything";
#endif
}
