// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesTree.h"

#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesDeclaration.h"
#include "xerces/tree/PelXercesWalk.h"

#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <vector>

PelXercesNodeRef PelXercesTree::share(const PelXercesEngine::Share& engine,
                                      PelXercesNewDocument document) {
    auto* const tree = new PelXercesTree(engine, std::move(document));
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the references own it
    return {*tree, tree->getDocument()};
}

void PelXercesTree::recordInSource(const PelXercesChangeLog::Change& change) {
    if (change.kind == PelXercesChangeLog::Change::RENAMING)
        source->noteChange(*change.node);
    else
        source->noteChildren(*change.parent);
}

void PelXercesTree::setData(xercesc::DOMNode& node, const XMLCh* data) {
    if (xercesc::XMLString::equals(node.getNodeValue(), data))
        return;
    nodes.setData(node, data);
    if (source)
        source->noteChange(node);
}

void PelXercesTree::numberAttribute(xercesc::DOMAttr& attribute) {
    if (lastNumber == UINT32_MAX)
        renumber();
    PelXercesAttributeOrder::setNumber(attribute, ++lastNumber);
    if (source)
        source->setAttributeNumber(attribute, lastNumber);
}

void PelXercesTree::copyNumber(xercesc::DOMAttr& former, xercesc::DOMAttr& attribute) {
    PelXercesAttributeOrder::setNumber(attribute, PelXercesAttributeOrder::numberOf(former));
    if (source)
        source->copyAttributeNumber(former, attribute);
}

void PelXercesTree::passPlace(const xercesc::DOMNode& former, const xercesc::DOMNode& node) {
    if (!source || source->isChanged(former))
        return;
    source->setNumber(node, static_cast<std::uint32_t>(source->numberOf(former)));
    source->setNumber(former, 0);
}

// When the numbers have run out, those that were given since the read are given anew, in their
// order.
void PelXercesTree::renumber() {
    std::vector<xercesc::DOMAttr*> attributes;
    std::uint32_t last = PelXercesAttributeOrder::mostInTag;
    const auto renumberWithin = [&](xercesc::DOMNode& top) {
        for (xercesc::DOMNode* node = &top; node != nullptr;
             node = PelXercesWalk::nextInTree(top, node)) {
            if (node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE)
                continue;
            PelXercesAttributeOrder::list(*node, attributes);
            for (xercesc::DOMAttr* const attribute : attributes)
                if (PelXercesAttributeOrder::numberOf(*attribute) >
                    PelXercesAttributeOrder::mostInTag)
                    PelXercesAttributeOrder::setNumber(*attribute, ++last);
        }
    };
    renumberWithin(*document);
    for (xercesc::DOMNode* const orphan : orphans.getNodes())
        renumberWithin(*orphan);
    lastNumber = last;
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
