// SPDX-License-Identifier: MIT
#pragma once

#include "read/limits/PelXercesReadLimits.h"

#include <qrndom/PelDOMReader.h>

/// How a document is to be read. By default as the services do, which have but one message.
struct PelXercesReadSettings {
    /// By PelPlainScanner, where it can; by the engine's scanner, with nodes made by
    /// PelXercesElementFactory; or all of it by the engine. Each but the last does what the next
    /// does where it gives up, and the tree is the same. All three are the last where the engine's
    /// fields are not known.
    enum class Method { plainScanner, fastNodes, engine };
#ifdef QRNDOM_FAST_READ
    static constexpr Method usualMethod = Method::plainScanner;
#else
    static constexpr Method usualMethod = Method::engine;
#endif

    PelDOMReader::Validation validation = PelDOMReader::IF_DECLARED;
    PelDOMReader::DocumentType documentType = PelDOMReader::ACCEPT;
    bool isExternalDTDRead = true;
    bool areExternalEntitiesRead = true;
    bool isIgnorableWhitespaceKept = false;
    bool isSourceKept = false;
    PelString base;
    std::size_t maxMessages = 1;
    bool areExceptionsPrinted = true;
    PelXercesReadLimits::Bounds bounds;
    Method method = usualMethod;

    bool isAnythingExternalRead() const {
        return isExternalDTDRead && areExternalEntitiesRead;
    }
};
