// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

/// The declarations of an internal subset as text that reads back as the same declarations. The
/// engine's own text does not where a value holds quotes, references or line breaks, or a content
/// model repeats what is repeated, and leaves out the sign of parameter entities, the names of
/// notations and empty identifiers.
class PelXercesSubset {
public:
    explicit PelXercesSubset(xercesc::XMLBuffer& subsetText) : text(subsetText) {}

    /// In XML 1.1 more characters must be written as references.
    void setVersion11(bool isVersion11) { isXml11 = isVersion11; }

    void addElement(const xercesc::DTDElementDecl& element);
    void addAttribute(const xercesc::DTDAttDef& attribute);
    void addComment(const XMLCh* comment);
    void addEntity(const xercesc::DTDEntityDecl& entity, bool isParameter);
    void addNotation(const xercesc::XMLNotationDecl& notation);

private:
    template <class... Parts>
    void add(Parts... parts) {
        (text.append(parts), ...);
    }

    void addModel(const xercesc::ContentSpecNode& model);
    void addName(const xercesc::QName& name);
    void addIdentifiers(const XMLCh* publicId, const XMLCh* systemId, bool needsSystemId);
    void addIdentifier(const XMLCh* identifier);
    /// A space and the value, if there is one.
    void addQuoted(const XMLCh* value, const char16_t* escaped);

    xercesc::XMLBuffer& text;
    bool isXml11 = false;
};
