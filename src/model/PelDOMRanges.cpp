// SPDX-License-Identifier: MIT
#include "model/PelDOMCursor.h"

#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMRanges.h>

PelDOMPlace::PelDOMPlace(std::shared_ptr<PelDOMCursor> start) : cursor(std::move(start)) {
    step();
}

PelDOMNodeImp* PelDOMPlace::getNode() const {
    return cursor != nullptr ? cursor->getNode() : nullptr;
}

void PelDOMPlace::step() {
    if (cursor != nullptr && !cursor->step())
        cursor.reset();
}

PelDOMIterator<PelDOMElement> PelDOMElementRange::begin() const {
    return PelDOMIterator<PelDOMElement>(
        PelDOMPlace(selection != nullptr ? selection->walk() : nullptr));
}
