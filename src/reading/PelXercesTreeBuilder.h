// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelXercesFastNodes.h"
#include "reading/PelXercesReadMemory.h"
#include "reading/PelXercesSubset.h"
#include "xerces/PelXercesLinks.h"

#include <xercesc/parsers/XercesDOMParser.hpp>

#include <optional>
#include <string>

/// The engine's parser, building a tree that is ready to be shared: the tree's memory is that of
/// all trees, while the parser's own goes with the read.
///
/// On the fast road it links elements, their attributes and character data itself, made by
/// PelXercesFastNodes, without the run-time casts on which the engine spends most of a read.
/// Whatever else there is (the root, CDATA sections, comments, instructions, document types) goes
/// the engine's road. The tree is the same either way, as it is on the plain road,
/// where PelPlainScanner makes it if it can.
///
/// It also tells the read's limits what it sees of entities, defaults and declarations.
class PelXercesTreeBuilder final : public xercesc::XercesDOMParser {
public:
    enum class Road { engine, fast, plain };
#ifdef QRNDOM_FAST_READ
    static constexpr Road usualRoad = PelXercesLinks::areKnown ? Road::plain : Road::engine;
#else
    static constexpr Road usualRoad = Road::engine;
#endif

    PelXercesTreeBuilder(PelXercesReadMemory& readMemory, Road road);

    /// Ends the parse with an error where a document type begins.
    void refuseDocumentTypes() noexcept {
        areTypesRefused = true;
    }

    void error(unsigned int code, const XMLCh* domain, xercesc::XMLErrorReporter::ErrTypes type,
               const XMLCh* text, const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
               XMLFileLoc column) override;

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

    void doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* publicId,
                     const XMLCh* systemId, bool hasSubset, bool hasExternal) override;
    void startIntSubset() override;
    void endIntSubset() override;
    void doctypeComment(const XMLCh* comment) override;
    void elementDecl(const xercesc::DTDElementDecl& declaration, bool isIgnored) override;
    void entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter,
                    bool isIgnored) override;
    void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute,
                bool isIgnored) override;
    void endAttList(const xercesc::DTDElementDecl& element) override;
    void notationDecl(const xercesc::XMLNotationDecl& notation, bool isIgnored) override;

    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

private:
    using Attributes = xercesc::RefVectorOf<xercesc::XMLAttr>;

    bool makeElement(const xercesc::XMLElementDecl& declaration, const Attributes& attributes,
                     XMLSize_t count, bool isEmpty);
    void makeEnginesElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId,
                            const XMLCh* prefix, const Attributes& attributes, XMLSize_t count,
                            bool isEmpty, bool isRoot);
    static void sort(const Attributes& attributes, XMLSize_t count, Attributes& sorted);
    void forgetIds(const Attributes& attributes, XMLSize_t count);
    void reportHere(const XMLCh* text);
    void requirePairs(const XMLCh* literal);
    void requireSmall(const xercesc::ContentSpecNode* model);
    void endText();
    void reportElement();
    void addDefaults(const xercesc::XMLElementDecl& declaration, const Attributes& attributes,
                     XMLSize_t count);
    void growNameTable(std::size_t more);

    PelXercesReadMemory& memory;
    PelXercesReadLimits& limits;
    PelXercesNameLimits& names;
    const Road road;
    bool areTypesRefused = false;
    bool hasExternalSubset = false;
    const PelXercesTreeMemory::Report report;
    PelXercesSubset subset{fInternalSubset};
    bool isInSubset = false;
    std::size_t namePlaces = 257;
    std::u16string pendingText;
    std::optional<PelXercesFastNodes> fast; // none: the engine's road
};
