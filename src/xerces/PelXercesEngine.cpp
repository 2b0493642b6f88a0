// SPDX-License-Identifier: MIT
#include "xerces/PelXercesEngine.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <mutex>

using xercesc::XMLPlatformUtils;

namespace {

// All of these are free of destructors, so that handles in static storage may be dropped at exit.
std::mutex lifecycle;
long startsToStop = 0;
long shares = 0;

// A start of the engine that fails leaves it half built, in which state neither another start nor a
// stop would survive.
bool isHalfStarted = false;

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

void startLocked() {
    if (isHalfStarted)
        throw xercesc::OutOfMemoryException();
    isHalfStarted = XMLPlatformUtils::fgMemoryManager == nullptr; // else it is up already
    XMLPlatformUtils::Initialize();
    isHalfStarted = false;
    try {
        fillLazyTables();
    } catch (...) {
        XMLPlatformUtils::Terminate();
        throw;
    }
}

} // namespace

void PelXercesEngine::start() {
    const std::lock_guard<std::mutex> lock(lifecycle);
    startLocked();
    ++startsToStop;
}

void PelXercesEngine::stop() {
    const std::lock_guard<std::mutex> lock(lifecycle);
    if (isHalfStarted)
        return;
    if (startsToStop > 0)
        --startsToStop;
    else if (shares > 0)
        XMLPlatformUtils::Initialize();
    XMLPlatformUtils::Terminate();
}

PelXercesEngine::Share::Share() {
    const std::lock_guard<std::mutex> lock(lifecycle);
    if (shares == 0)
        startLocked();
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
