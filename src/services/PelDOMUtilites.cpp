// SPDX-License-Identifier: MIT
#include "read/PelReadMessage.h"
#include "services/PelXercesDOMUtilities.h"
#include "write/PelWriteMessage.h"
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
    return PelReadMessage::get();
}

PelString PelDOMUtilites::getLastWriteMessage() {
    return PelWriteMessage::get();
}

PelString PelDOMUtilites::describeEngine() {
    return PelXercesEngine::describe();
}

PelDOMUtilites::PelDOMUtilites() = default;
PelDOMUtilites::PelDOMUtilites(const PelDOMUtilites& other) = default;
PelDOMUtilites& PelDOMUtilites::operator=(const PelDOMUtilites& other) = default;
PelDOMUtilites::~PelDOMUtilites() = default;
