// SPDX-License-Identifier: MIT
#include "xerces/PelXercesTree.h"

#include "xerces/PelXercesNodeRef.h"

#include <utility>

PelXercesNodeRef PelXercesTree::share(const PelXercesEngine::Share& engine,
                                      PelXercesDocumentPtr document) {
    std::unique_ptr<PelXercesTree> tree(new PelXercesTree(engine, std::move(document)));
    PelXercesNodeRef first(*tree, tree->getDocument());
    (void)tree.release(); // the references own it from here on
    return first;
}
