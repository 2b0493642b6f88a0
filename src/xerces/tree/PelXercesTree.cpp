// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesTree.h"

#include "xerces/tree/PelXercesNodeRef.h"

#include <utility>

PelXercesNodeRef PelXercesTree::share(const PelXercesEngine::Share& engine,
                                      PelXercesNewDocument document) {
    auto* const tree = new PelXercesTree(engine, std::move(document));
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the references own it
    return {*tree, tree->getDocument()};
}
