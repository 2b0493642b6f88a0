// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMText.h"

#include "xerces/handles/PelXercesDOMNode.h"

#include <xercesc/dom/DOMText.hpp>

PelDOM::Error PelXercesDOMText::setValue(const PelString& value) {
    if (PelDOM::checkString(value, 0) != PelDOM::SUCCESS)
        return PelDOM::INVALID_VALUE;
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    node->getTree().nodes.setData(*node->getNode(), value.view().data());
    return PelDOM::SUCCESS;
}

PelString PelXercesDOMText::getValue() {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    return node != nullptr ? node->as<xercesc::DOMText>()->getData() : PelString();
}
