// SPDX-License-Identifier: MIT
#pragma once

#include "read/input/PelXercesReadMemory.h"
#include "xerces/tree/PelXercesTree.h"

#include <xercesc/parsers/XercesDOMParser.hpp>

#include <cstddef>
#include <utility>

/// The engine's parser, as far as it concerns document types: what is declared is held to the
/// limits of the read, and the text of the internal subset is ours, since the engine's loses part
/// of it.
class PelXercesDTDHandler : public xercesc::XercesDOMParser {
public:
    explicit PelXercesDTDHandler(PelXercesReadMemory& readMemory);

    /// Ends the parse with an error where a document type begins.
    void refuseDocumentTypes() noexcept { areTypesRefused = true; }

    PelXercesDeclaredIds takeDeclaredIds() noexcept { return std::move(declaredIds); }

    void error(unsigned int code, const XMLCh* domain, xercesc::XMLErrorReporter::ErrTypes type,
               const XMLCh* text, const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
               XMLFileLoc column) override;
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

    void doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* publicId,
                     const XMLCh* systemId, bool hasSubset, bool hasExternal) override;
    void startIntSubset() override;
    void endIntSubset() override;
    void endExtSubset() override;
    void doctypeComment(const XMLCh* comment) override;
    void elementDecl(const xercesc::DTDElementDecl& declaration, bool isIgnored) override;
    void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute,
                bool isIgnored) override;
    void startAttList(const xercesc::DTDElementDecl& element) override;
    void endAttList(const xercesc::DTDElementDecl& element) override;
    void entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter,
                    bool isIgnored) override;
    void notationDecl(const xercesc::XMLNotationDecl& notation, bool isIgnored) override;

protected:
    /// Steps the engine takes to look whether a declared attribute is there.
    static constexpr std::size_t declaredSteps = 15;

    void reportHere(const XMLCh* text);
    void requirePairs(const XMLCh* literal);
    void growNameTable(std::size_t more);

    PelXercesReadLimits& limits;
    PelXercesNameLimits& names;

private:
    void refuseUndeclaredReferences();

    PelXercesReadMemory& memory;
    PelXercesEntities& entities;
    bool areTypesRefused = false;
    bool hasExternalSubset = false;
    bool isInSubset = false;
    bool mayBeDeclared = false; // entities that are not, by something external
    PelXercesDeclaredIds declaredIds;
};
