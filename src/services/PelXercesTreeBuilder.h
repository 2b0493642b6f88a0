// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/XercesVersion.hpp>

class PelXercesReadMemory;

// The fast road reaches into the engine's own classes, so it is taken with the release that it was
// proven on and no other.
#if defined(QRNDOM_FAST_READ) && _XERCES_VERSION == 30204
#define QRNDOM_FAST_READ_IS_ON true
#else
#define QRNDOM_FAST_READ_IS_ON false
#endif

/// The engine's parser, building a tree that is ready to be shared: the tree's memory is that of
/// all trees, while the parser's own goes with the read.
///
/// On the fast road it makes and links elements, their attributes and character data itself,
/// without the run-time casts on which the engine spends most of a read. Whatever else there is
/// (the root, elements with declared attributes, CDATA sections, comments, instructions, document
/// types) goes the engine's road. The tree is the same either way.
class PelXercesTreeBuilder final : public xercesc::XercesDOMParser {
public:
    enum class Road { engine, fast };
    static constexpr Road usualRoad = QRNDOM_FAST_READ_IS_ON ? Road::fast : Road::engine;

    PelXercesTreeBuilder(PelXercesReadMemory& memory, Road road);

    void startDocument() override;

#if QRNDOM_FAST_READ_IS_ON
    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId,
                      const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                      XMLSize_t count, bool isEmpty, bool isRoot) override;
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                    const XMLCh* prefix) override;
    void docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) override;
#endif

private:
    const Road road;
};
