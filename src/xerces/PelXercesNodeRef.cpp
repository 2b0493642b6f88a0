// SPDX-License-Identifier: MIT
#include "xerces/PelXercesNodeRef.h"

#include "xerces/PelXercesDeclaration.h"

PelDOM::NodeType PelXercesNodeRef::getType() const {
    if (node == nullptr)
        return PelDOM::NO_NODE;
    const auto type = static_cast<PelDOM::NodeType>(node->getNodeType());
    const bool mayBeDeclaration = type == PelDOM::PROCESSING_INSTRUCTION_NODE;
    return mayBeDeclaration && PelXercesDeclaration::isDeclaration(*node) ? PelDOM::XML_DECL_NODE
                                                                          : type;
}
