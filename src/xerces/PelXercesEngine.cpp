// SPDX-License-Identifier: MIT
#include "xerces/PelXercesEngine.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <mutex>

using xercesc::XMLPlatformUtils;

namespace {

// All three are free of destructors, so that handles in static storage may be dropped at exit.
std::mutex lifecycle;
long startsToStop = 0;
long shares = 0;

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
    XMLPlatformUtils::Initialize();
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
