// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesEngine.h"
#include "xerces/engine/PelXercesMemory.h"
#include "xerces/tree/PelXercesChangeLog.h"
#include "xerces/tree/PelXercesChildCounts.h"
#include "xerces/tree/PelXercesNodePool.h"
#include "xerces/tree/PelXercesOrphans.h"

#include <xercesc/dom/DOMDocument.hpp>

#include <memory>
#include <utility>

class PelXercesNodeRef;

/// An engine document that no one shares yet, and what is known of it.
struct PelXercesNewDocument {
    PelXercesDocumentPtr document{};
    PelXercesChildCounts childCounts{};
};

/// An engine document, shared by all references to its nodes: the last one releases it. It keeps
/// the engine up as long as it lives.
class PelXercesTree {
public:
    /// Shares a document; gives the first reference, to the document node. `engine` is what kept
    /// the engine up while the document was made.
    static PelXercesNodeRef share(const PelXercesEngine::Share& engine,
                                  PelXercesNewDocument document);

    PelXercesTree(const PelXercesTree&) = delete;
    PelXercesTree& operator=(const PelXercesTree&) = delete;

    xercesc::DOMDocument* getDocument() const noexcept { return document.get(); }

    /// How many children a node has; 0 if they have to be counted.
    std::size_t knownChildCount(const xercesc::DOMNode& parent) const {
        return changes.hasAny() ? 0 : childCounts.of(parent);
    }

    PelXercesChangeLog changes;

private:
    friend class PelXercesNodeRef;
    friend class PelXercesOrphans;

    PelXercesTree(const PelXercesEngine::Share& engine, PelXercesNewDocument&& own)
        : engineShare(engine), document(std::move(own.document)),
          childCounts(std::move(own.childCounts)), nodes(*document), orphans(*this) {}

    const PelXercesEngine::Share engineShare; // outlives the document
    const PelXercesDocumentPtr document;
    const PelXercesChildCounts childCounts;
    PelXercesNodeRef* newest = nullptr; // plain: a tree is used by one thread at a time

public:
    PelXercesNodePool nodes;
    PelXercesOrphans orphans;
};
