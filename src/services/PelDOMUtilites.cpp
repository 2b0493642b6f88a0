// SPDX-License-Identifier: MIT
#include "core/PelThreadMessage.h"
#include "services/PelXercesDOMUtilities.h"
#include "xerces/engine/PelXercesEngine.h"

#include <qrndom/PelDOMUtilites.h>

#include <utility>

PelDOMUtilites* PelDOMUtilites::Utilities = nullptr;

PelDOMUtilites* PelDOMUtilites::getUtilities(PelDOM::Platform p) {
    PelDOM::error(u"PelDOMUtilites::getUtilities(PelDOM::Platform p)", nullptr);
    if (Utilities == nullptr && p == PelDOM::PLATFORM_XERCES)
        Utilities = new PelXercesDOMUtilities;
    return Utilities;
}

void PelDOMUtilites::releaseUtilities() {
    PelDOM::error(u"PelDOMUtilites::releaseUtilities()", nullptr);
    delete std::exchange(Utilities, nullptr);
}

PelString PelDOMUtilites::getLastReadMessage() {
    return PelThreadMessage::ofRead().get();
}

PelString PelDOMUtilites::getLastWriteMessage() {
    return PelThreadMessage::ofWrite().get();
}

PelString PelDOMUtilites::describeEngine() {
    return PelXercesEngine::describe();
}

PelDOMUtilites::PelDOMUtilites() = default;
PelDOMUtilites::PelDOMUtilites(const PelDOMUtilites& other) = default;
PelDOMUtilites& PelDOMUtilites::operator=(const PelDOMUtilites& other) = default;
PelDOMUtilites::~PelDOMUtilites() = default;
