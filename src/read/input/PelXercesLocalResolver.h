// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>

class PelXercesDOMTreeErrorReporter;
class PelXercesReadMemory;
struct PelXercesReadSettings;

/// Finds the external entities and DTDs that a document names: local files only, unless the library
/// is built with remote entities. A remote one counts as unreadable and is never looked up. What
/// the settings leave out counts as empty.
class PelXercesLocalResolver final : public xercesc::XMLEntityResolver {
public:
    PelXercesLocalResolver(PelXercesReadMemory& readMemory,
                           const PelXercesReadSettings& readSettings,
                           PelXercesDOMTreeErrorReporter& errorReporter)
        : memory(readMemory), settings(readSettings), reporter(errorReporter) {}

    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

private:
    xercesc::InputSource* leaveOut(const PelString& id, const XMLCh* reason);

    PelXercesReadMemory& memory;
    const PelXercesReadSettings& settings;
    PelXercesDOMTreeErrorReporter& reporter;
};
