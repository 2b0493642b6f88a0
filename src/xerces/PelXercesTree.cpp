// SPDX-License-Identifier: MIT
#include "xerces/PelXercesTree.h"

#include "xerces/PelXercesNodeRef.h"

#include <utility>

PelXercesNodeRef PelXercesTree::share(const PelXercesEngine::Share& engine,
                                      PelXercesDocumentPtr document) {
    auto* const tree = new PelXercesTree(engine, std::move(document));
    return {*tree, tree->getDocument()};
}
