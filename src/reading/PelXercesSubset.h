// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

/// The declarations of an internal subset as text that reads back as the same declarations. The
/// engine's own text does not where a value holds quotes, references or line breaks, and leaves out
/// the sign of parameter entities and the names of notations.
class PelXercesSubset {
public:
    explicit PelXercesSubset(xercesc::XMLBuffer& subsetText) : text(subsetText) {}

    void addAttribute(const xercesc::DTDAttDef& attribute);
    void addComment(const XMLCh* comment);
    void addEntity(const xercesc::DTDEntityDecl& entity, bool isParameter);
    void addNotation(const xercesc::XMLNotationDecl& notation);

private:
    void addIdentifiers(const XMLCh* publicId, const XMLCh* systemId);
    void addIdentifier(const XMLCh* identifier);
    void addQuoted(const XMLCh* value, const char16_t* escaped);

    xercesc::XMLBuffer& text;
};
