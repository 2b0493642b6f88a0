// SPDX-License-Identifier: MIT
#pragma once

#include "services/PelXercesDOMTreeErrorReporter.h"
#include "services/PelXercesLocalResolver.h"
#include "services/PelXercesTreeBuilder.h"
#include "xerces/PelXercesEngine.h"
#include "xerces/PelXercesMemory.h"
#include "xerces/PelXercesNodeRef.h"

#include <xercesc/util/SecurityManager.hpp>

/// One read: a parser with the library's settings, and a strict verdict. Any error, reported or
/// thrown, gives no document.
class PelXercesReader {
public:
    explicit PelXercesReader(PelXercesTreeBuilder::Road road = PelXercesTreeBuilder::usualRoad);
    PelXercesReader(const PelXercesReader&) = delete;
    PelXercesReader& operator=(const PelXercesReader&) = delete;

    /// The document node, or no node.
    PelXercesNodeRef readFile(const PelString& name);
    PelXercesNodeRef readSource(const xercesc::InputSource& source);

private:
    template <class Parse>
    PelXercesNodeRef read(Parse parse);

    const PelXercesEngine::Share engine;
    PelXercesLocalResolver resolver;
    xercesc::SecurityManager limits;
    PelXercesReadMemory memory;
    PelXercesTreeBuilder parser;
    PelXercesDOMTreeErrorReporter reporter; // goes before the parser
};
