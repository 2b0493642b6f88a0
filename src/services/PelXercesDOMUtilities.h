// SPDX-License-Identifier: MIT
#pragma once

#include "read/PelXercesReader.h"

#include <qrndom/PelDOMUtilites.h>

/// The services over the Xerces engine. It keeps no count of its starts and stops: each init is one
/// start of the engine, each terminate one stop.
class PelXercesDOMUtilities : public PelDOMUtilites {
public:
    PelXercesDOMUtilities() = default;
    PelXercesDOMUtilities(const PelXercesDOMUtilities&) = default;
    PelXercesDOMUtilities& operator=(const PelXercesDOMUtilities&) = default;

    /// Terminates first, unless the status is NOT_INITIALIZED.
    ~PelXercesDOMUtilities() override;

    PelDOMDocument createDocument(const PelString& rootName) override;
    PelDOM::Error init() override;
    PelDOM::Error terminate() override;
    PelDOMDocument readDocument(const PelString& fileName) override;
    PelDOMDocument readDocumentFromStringA(PelString text) override;
    PelDOMDocument readDocumentFromStringW(PelString text) override;
    PelDOM::Error writeDocument(const PelDOMDocument& document, PelString& target, int toFile,
                                int newlines, int terminator) override;
    PelDOM::Error writeDocument(const PelDOMDocument& document, const PelString& fileName) override;

private:
    template <class Read>
    PelDOMDocument read(const PelString& argument, Read readBy);
    bool isReadyFor(const PelString& argument);
};
