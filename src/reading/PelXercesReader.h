// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelXercesDOMTreeErrorReporter.h"
#include "reading/PelXercesLocalResolver.h"
#include "reading/PelXercesReadMemory.h"
#include "reading/PelXercesTreeBuilder.h"
#include "xerces/PelXercesEngine.h"
#include "xerces/PelXercesNodeRef.h"
#include "xerces/PelXercesTree.h"

#include <xercesc/util/SecurityManager.hpp>

/// One read, by PelPlainScanner if it accepts the document, else by a parser with the library's
/// settings, and a strict verdict. Any error, reported or thrown, gives no document.
class PelXercesReader {
public:
    using Observer = PelXercesDOMTreeErrorReporter::Observer;

    explicit PelXercesReader(PelXercesTreeBuilder::Road road = PelXercesTreeBuilder::usualRoad,
                             Observer observer = {});
    PelXercesReader(const PelXercesReader&) = delete;
    PelXercesReader& operator=(const PelXercesReader&) = delete;

    /// The document node; or no node, and the thread's PelReadMessage. A text without `encoding` is
    /// in the one that it begins with.
    PelXercesNodeRef readFile(const PelString& name);
    PelXercesNodeRef readText(const void* bytes, std::size_t size, const XMLCh* encoding = nullptr);

private:
    /// What the engine reads with. Most documents need none of it.
    struct Machine {
        explicit Machine(PelXercesReader& reader);

        PelXercesLocalResolver resolver;
        xercesc::SecurityManager references;
        PelXercesTreeBuilder parser;
        PelXercesDOMTreeErrorReporter reporter; // goes before the parser
    };

    template <class Scan, class Parse>
    PelXercesNodeRef read(const PelString& name, Scan scanDocument, Parse parse);
    template <class Parse>
    PelXercesNodeRef readByEngine(const PelString& name, Parse parse);
    static PelXercesDocumentPtr scan(const void* bytes, std::size_t size, const XMLCh* encoding,
                                     const XMLCh* systemId);

    const PelXercesEngine::Share engine;
    const PelXercesTreeBuilder::Road road;
    const Observer observer;
    PelXercesReadMemory memory;
    PelXercesReadLimits& limits = memory.getLimits();
};
