// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesTree.h"

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesDeclaration.h"

PelXercesNodeRef PelXercesTree::share(const PelXercesEngine::Share& engine,
                                      PelXercesNewDocument document) {
    auto* const tree = new PelXercesTree(engine, std::move(document));
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the references own it
    return {*tree, tree->getDocument()};
}

PelDOM::NodeType PelXercesNodeRef::typeOf(const xercesc::DOMNode* engineNode) {
    if (engineNode == nullptr)
        return PelDOM::NO_NODE;
    const auto type = static_cast<PelDOM::NodeType>(PelXercesLinks::typeOf(*engineNode));
    const bool mayBeDeclaration = type == PelDOM::PROCESSING_INSTRUCTION_NODE;
    return mayBeDeclaration && PelXercesDeclaration::isDeclaration(*engineNode)
               ? PelDOM::XML_DECL_NODE
               : type;
}
