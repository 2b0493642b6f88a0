// SPDX-License-Identifier: MIT
#pragma once

#include "read/parse/PelXercesDTDHandler.h"
#include "read/parse/PelXercesElementFactory.h"
#include "read/parse/PelXercesLocator.h"

#include <optional>
#include <string>
#include <vector>

/// The engine's parser, building a tree that is ready to be shared: the tree's memory is that of
/// all trees, while the parser's own goes with the read.
///
/// If it may, it links elements, their attributes and character data itself, made by
/// PelXercesElementFactory, without the run-time casts on which the engine spends most of a read.
/// The engine makes whatever else there is: the root, CDATA sections, comments, instructions,
/// document types. The tree is the same either way.
///
/// It also tells the read's limits what it sees of names, references and defaults.
class PelXercesTreeBuilder final : public PelXercesDTDHandler {
public:
    PelXercesTreeBuilder(PelXercesReadMemory& readMemory, bool areFastNodesMade);

    void XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone,
                 const XMLCh* actualEncoding) override;
    void startDocument() override;

    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId,
                      const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                      XMLSize_t count, bool isEmpty, bool isRoot) override;
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                    const XMLCh* prefix) override;
    void docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) override;
    void docComment(const XMLCh* comment) override;
    void docPI(const XMLCh* target, const XMLCh* data) override;
    void startEntityReference(const xercesc::XMLEntityDecl& entity) override;
    void endEntityReference(const xercesc::XMLEntityDecl& entity) override;

    /// Whether the XML declaration says standalone="no".
    bool saysNotStandalone() const { return isNotStandalone; }

    /// Has it note what references in content bring.
    void noteReferences() { areReferencesNoted = true; }

    /// What they have brought, in their order.
    const std::vector<PelXercesBroughtNodes>& getBrought() const { return brought; }

private:
    using Attributes = xercesc::RefVectorOf<xercesc::XMLAttr>;

    bool makeElement(const xercesc::XMLElementDecl& declaration, const Attributes& attributes,
                     XMLSize_t count, bool isEmpty);
    void makeEnginesElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId,
                            const XMLCh* prefix, const Attributes& attributes, XMLSize_t count,
                            bool isEmpty, bool isRoot);
    static void sort(const Attributes& attributes, XMLSize_t count, Attributes& sorted);
    void forgetIds(const Attributes& attributes, XMLSize_t count);
    void endText();
    void noteText();
    void noteMarkup(const xercesc::DOMNode* parent);
    void reportElement();
    void addDefaults(const xercesc::XMLElementDecl& declaration, const Attributes& attributes,
                     XMLSize_t count);

    const bool isFast;
    const PelXercesTreeMemory::Report report;
    std::u16string pendingText;
    bool isNotStandalone = false;
    bool areReferencesNoted = false;
    std::vector<PelXercesBroughtNodes> brought;
    unsigned referenceDepth = 0;                       // references within references
    const xercesc::DOMNode* referenceParent = nullptr; // of the outermost
    std::optional<PelXercesElementFactory> fast;       // none: the engine makes all nodes
};
