// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesContent.h"

#include "xerces/edit/PelXercesEditing.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesRules.h"
#include "xerces/tree/PelXercesWalk.h"

#include <xercesc/dom/DOMCharacterData.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <string>

using xercesc::DOMNode;

namespace {

// What may be set as the value of that node.
bool isAllowed(const PelXercesNodeRef& node, std::u16string_view value) {
    switch (node.getType()) {
    case PelDOM::TEXT_NODE:
        return PelXercesRules::isText(value, *node.getDocument());
    case PelDOM::CDATA_SECTION_NODE:
        return PelXercesRules::isCDATA(value);
    case PelDOM::COMMENT_NODE:
        return PelXercesRules::isComment(value);
    case PelDOM::PROCESSING_INSTRUCTION_NODE:
        return PelXercesRules::isInstruction(value);
    default:
        return false;
    }
}

bool isCharacters(const DOMNode& node) {
    return node.getNodeType() == DOMNode::TEXT_NODE ||
           node.getNodeType() == DOMNode::CDATA_SECTION_NODE;
}

} // namespace

PelString PelXercesContent::valueOf(const PelXercesNodeRef& node) {
    switch (node.getType()) {
    case PelDOM::TEXT_NODE:
    case PelDOM::CDATA_SECTION_NODE:
    case PelDOM::COMMENT_NODE:
    case PelDOM::PROCESSING_INSTRUCTION_NODE:
        return node->getNodeValue();
    default:
        return {};
    }
}

PelDOM::Error PelXercesContent::setValue(const PelXercesNodeRef& node, const PelString& value) {
    if (!isAllowed(node, value.view()))
        return PelDOM::INVALID_VALUE;
    node.getTree().nodes.setData(*node.getNode(), value.view().data());
    return PelDOM::SUCCESS;
}

PelString PelXercesContent::textOf(const PelXercesNodeRef& node) {
    if (node.getType() != PelDOM::ELEMENT_NODE)
        return valueOf(node);
    std::u16string text;
    for (DOMNode* below = node->getFirstChild(); below != nullptr;
         below = PelXercesWalk::nextInTree(*node.getNode(), below)) {
        if (!isCharacters(*below))
            continue;
        const auto& characters = static_cast<const xercesc::DOMCharacterData&>(*below);
        text.append(characters.getData(), characters.getLength());
    }
    return PelString(std::move(text));
}

PelString PelXercesContent::namespaceOf(const xercesc::DOMElement& element,
                                        std::u16string_view prefix) {
    if (prefix == u"xml")
        return xercesc::XMLUni::fgXMLURIName;
    if (prefix == u"xmlns")
        return xercesc::XMLUni::fgXMLNSURIName;
    std::u16string name = u"xmlns";
    if (!prefix.empty())
        name.append(u":").append(prefix);
    for (const DOMNode* node = &element;
         node != nullptr && node->getNodeType() == DOMNode::ELEMENT_NODE;
         node = node->getParentNode())
        if (const DOMNode* const found = node->getAttributes()->getNamedItem(name.c_str()))
            return PelXercesLinks::valueOf(*found);
    return {};
}

PelDOM::Error PelXercesContent::setText(const PelXercesNodeRef& node, const PelString& text) {
    if (node.getType() != PelDOM::ELEMENT_NODE)
        return setValue(node, text);
    if (!PelXercesRules::isText(text.view(), *node.getDocument()))
        return PelDOM::INVALID_VALUE;
    PelXercesEditing::replaceChildren(node, text.isEmpty() != 0 ? nullptr : text.view().data());
    return PelDOM::SUCCESS;
}
