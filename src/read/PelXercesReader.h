// SPDX-License-Identifier: MIT
#pragma once

#include "read/input/PelXercesDOMTreeErrorReporter.h"
#include "read/input/PelXercesLocalResolver.h"
#include "read/input/PelXercesReadMemory.h"
#include "read/input/PelXercesReadSettings.h"
#include "read/parse/PelXercesTreeBuilder.h"
#include "xerces/engine/PelXercesEngine.h"
#include "xerces/tree/PelXercesTree.h"

#include <qrndom/PelDOMMessage.h>

#include <xercesc/util/SecurityManager.hpp>

#include <memory>
#include <utility>
#include <vector>

/// One read, by PelPlainScanner if it accepts the document, else by the engine's parser, and a
/// strict verdict. Any error, reported or thrown, gives no document.
class PelXercesReader {
public:
    explicit PelXercesReader(const PelXercesReadSettings& readSettings = {});
    PelXercesReader(const PelXercesReader&) = delete;
    PelXercesReader& operator=(const PelXercesReader&) = delete;

    /// The document node; or no node, and messages. A text without `encoding` is in the one that it
    /// begins with.
    PelXercesNodeRef readFile(const PelString& name);
    PelXercesNodeRef readText(const PelString& name, const void* bytes, std::size_t size,
                              const XMLCh* encoding = nullptr);

    std::vector<PelDOMMessage>& getMessages() noexcept { return reporter.getMessages(); }

private:
    /// What the engine reads with. Most documents need none of it.
    struct ParserSetup {
        explicit ParserSetup(PelXercesReader& reader);

        PelXercesLocalResolver resolver;
        xercesc::SecurityManager references;
        PelXercesTreeBuilder parser;
    };

    template <class Scan, class Parse>
    PelXercesNodeRef read(Scan scanDocument, Parse parse);
    template <class Parse>
    PelXercesNodeRef readByEngine(Parse parse);
    void note(const XMLCh* text) noexcept;
    std::unique_ptr<PelXercesKeptSource> locate(xercesc::DOMDocument& document,
                                                const PelXercesTreeBuilder& parser);
    void keep(std::shared_ptr<const XMLByte[]> bytes, std::size_t size) {
        if (settings.isSourceKept)
            keptBytes = std::move(bytes);
        keptSize = size;
    }
    PelXercesNewDocument scan(const void* bytes, std::size_t size, const XMLCh* encoding,
                              const XMLCh* systemId) const;

    const PelXercesEngine::Share engine;
    const PelXercesReadSettings settings;
    PelXercesReadMemory memory;
    PelXercesReadLimits& limits = memory.getLimits();
    PelXercesDOMTreeErrorReporter reporter{memory, settings.maxMessages};
    std::shared_ptr<const XMLByte[]> keptBytes; // null: nothing is kept
    std::size_t keptSize = 0;
};
