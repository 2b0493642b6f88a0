// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/util/XMLEntityResolver.hpp>

class PelXercesReadMemory;

/// Finds the external entities and DTDs that a document names: local files only, unless the library
/// is built with remote entities. A remote one counts as unreadable and is never looked up.
class PelXercesLocalResolver final : public xercesc::XMLEntityResolver {
public:
    explicit PelXercesLocalResolver(PelXercesReadMemory& readMemory) : memory(readMemory) {}

    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

private:
    PelXercesReadMemory& memory;
};
