// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesContent.h"

#include "xerces/edit/PelXercesAttributes.h"
#include "xerces/edit/PelXercesEditing.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesAttributeOrder.h"
#include "xerces/tree/PelXercesRules.h"
#include "xerces/tree/PelXercesWalk.h"

#include <xercesc/dom/DOMCharacterData.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <string>
#include <vector>

using xercesc::DOMAttrImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMNode;

namespace {

// Whether a node of that kind may have that value.
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

/// Copies into one tree, from the same or another one.
class Copier {
public:
    Copier(const PelXercesNodeRef& owner, const PelXercesNodeRef& source)
        : tree(owner.getTree()), nodes(tree.nodes), document(*owner.getDocument()),
          isClone(&owner.getTree() == &source.getTree()),
          isOfOtherVersion(source.getDocument()->getXmlVersion() != document.getXmlVersion()) {}

    // Null for what cannot be copied. An exception finds all taken back.
    DOMNode* copyAll(DOMNode& source) {
        DOMNode* const copy = copyOne(source);
        if (copy == nullptr)
            return nullptr;
        try {
            if (copyBelow(source, *copy))
                return copy;
        } catch (...) {
            nodes.takeBack(*copy);
            throw;
        }
        nodes.takeBack(*copy);
        return nullptr;
    }

    DOMNode* copyOne(const DOMNode& source) {
        const XMLCh* const value = source.getNodeValue();
        if (value != nullptr && !isAllowedText(value))
            return nullptr;
        switch (source.getNodeType()) {
        case DOMNode::ELEMENT_NODE:
            return copyElement(source);
        case DOMNode::TEXT_NODE:
            return &nodes.makeText(value);
        case DOMNode::CDATA_SECTION_NODE:
            return &nodes.makeCDATASection(value);
        case DOMNode::COMMENT_NODE:
            return &nodes.makeComment(value);
        case DOMNode::PROCESSING_INSTRUCTION_NODE:
            return isAllowed(source.getNodeName())
                       ? &nodes.makeInstruction(source.getNodeName(), value)
                       : nullptr;
        default:
            return nullptr;
        }
    }

private:
    bool isAllowed(const XMLCh* name) const {
        return !isOfOtherVersion || PelXercesRules::isName(name, document);
    }

    // Characters that only XML 1.1 has cannot be written in a document of XML 1.0.
    bool isAllowedText(const XMLCh* value) const {
        return !isOfOtherVersion || PelXercesRules::isText(value, document);
    }

    DOMElementImpl* copyElement(const DOMNode& source) {
        if (!isAllowed(source.getNodeName()))
            return nullptr;
        DOMElementImpl& element = nodes.makeElement(source.getNodeName());
        try {
            if (copyAttributes(source, element))
                return &element;
        } catch (...) {
            nodes.takeBack(element);
            throw;
        }
        nodes.takeBack(element);
        return nullptr;
    }

    // In the order in which the originals were written.
    bool copyAttributes(const DOMNode& source, DOMElementImpl& element) {
        PelXercesAttributeOrder::list(source, listed);
        for (const xercesc::DOMAttr* const original : listed) {
            const auto& attribute = *original;
            if (!isClone && !attribute.getSpecified())
                continue; // a default of the other document
            const XMLCh* const value = PelXercesLinks::valueOf(attribute);
            if (!isAllowed(attribute.getName()) || !isAllowedText(value))
                return false;
            DOMAttrImpl& made =
                nodes.makeAttribute(attribute.getName(), value, attribute.getSpecified());
            tree.numberAttribute(made);
            PelXercesAttributes::add(nodes, element, made);
        }
        return true;
    }

    // False if something below the node cannot be copied.
    bool copyBelow(DOMNode& source, DOMNode& copy) {
        DOMNode* from = &source;
        DOMNode* to = &copy;
        for (;;) {
            if (DOMNode* const child = from->getFirstChild()) {
                from = child;
            } else {
                for (; from != &source && from->getNextSibling() == nullptr;
                     to = to->getParentNode())
                    from = from->getParentNode();
                if (from == &source)
                    return true;
                from = from->getNextSibling();
                to = to->getParentNode();
            }
            DOMNode* const child = copyOne(*from);
            if (child == nullptr)
                return false;
            append(*to, *child);
            to = child;
        }
    }

    static void append(DOMNode& parent, DOMNode& child) {
        if (PelXercesFields::areKnown())
            PelXercesLinks::insert(static_cast<DOMElementImpl&>(parent), child, nullptr);
        else
            parent.appendChild(&child);
    }

    PelXercesTree& tree;
    PelXercesNodePool& nodes;
    xercesc::DOMDocument& document;
    const bool isClone;
    const bool isOfOtherVersion;
    std::vector<xercesc::DOMAttr*> listed;
};

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
    node.getTree().setData(*node.getNode(), value.view().data());
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

PelXercesNodeRef PelXercesContent::copy(const PelXercesNodeRef& owner,
                                        const PelXercesNodeRef& source, bool isDeep) {
    if (source.getType() == PelDOM::XML_DECL_NODE)
        return {};
    PelXercesOrphans& orphans = owner.getTree().orphans;
    orphans.prepare();
    Copier copier(owner, source);
    DOMNode* const copy =
        isDeep ? copier.copyAll(*source.getNode()) : copier.copyOne(*source.getNode());
    if (copy == nullptr)
        return {};
    orphans.add(*copy);
    return owner.to(copy);
}
