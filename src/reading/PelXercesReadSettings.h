// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelXercesReadLimits.h"
#include "reading/PelXercesTreeBuilder.h"

#include <qrndom/PelDOMReader.h>

/// How a document is to be read. By default as the services do, which have but one message.
struct PelXercesReadSettings {
    PelDOMReader::Validation validation = PelDOMReader::IF_DECLARED;
    PelDOMReader::DocumentType documentType = PelDOMReader::ACCEPT;
    bool isExternalDTDRead = true;
    bool areExternalEntitiesRead = true;
    bool isIgnorableWhitespaceKept = false;
    PelString base;
    std::size_t maxMessages = 1;
    bool areExceptionsPrinted = true;
    PelXercesReadLimits::Bounds bounds;
    PelXercesTreeBuilder::Road road = PelXercesTreeBuilder::usualRoad;

    /// Whether a document without a type is read as the services read it.
    bool areUsualWithoutType() const {
        return validation != PelDOMReader::ALWAYS && bounds == PelXercesReadLimits::Bounds();
    }

    bool isAnythingExternalRead() const { return isExternalDTDRead && areExternalEntitiesRead; }
};
