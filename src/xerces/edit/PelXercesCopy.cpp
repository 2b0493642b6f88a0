// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesCopy.h"

#include "xerces/edit/PelXercesAttributes.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesRules.h"

#include <xercesc/dom/DOMCDATASection.hpp>
#include <xercesc/dom/DOMComment.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMProcessingInstruction.hpp>

using xercesc::DOMAttrImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMNode;

namespace {

/// Makes a copy node by node.
class Copier {
public:
    Copier(const PelXercesNodeRef& owner, const PelXercesNodeRef& source)
        : nodes(owner.getTree().nodes), document(*owner.getDocument()),
          isClone(&owner.getTree() == &source.getTree()),
          isOfOtherVersion(source.getDocument()->getXmlVersion() != document.getXmlVersion()) {}

    // Null where there is none; an exception finds all taken back.
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

    // What XML 1.0 has not, none of its documents can be written with.
    bool isAllowedText(const XMLCh* value) const {
        return !isOfOtherVersion || PelXercesRules::isText(value, document);
    }

    DOMElementImpl* copyElement(const DOMNode& source) {
        if (!isAllowed(source.getNodeName()))
            return nullptr;
        DOMElementImpl& element = nodes.makeElement(source.getNodeName());
        try {
            if (copyAttributes(*source.getAttributes(), element))
                return &element;
        } catch (...) {
            nodes.takeBack(element);
            throw;
        }
        nodes.takeBack(element);
        return nullptr;
    }

    bool copyAttributes(const xercesc::DOMNamedNodeMap& attributes, DOMElementImpl& element) {
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
            const auto& attribute = static_cast<const DOMAttrImpl&>(*attributes.item(i));
            if (!isClone && !attribute.getSpecified())
                continue; // a default of the other document
            const XMLCh* const value = PelXercesLinks::valueOf(attribute);
            if (!isAllowed(attribute.getName()) || !isAllowedText(value))
                return false;
            PelXercesAttributes::add(
                nodes, element,
                nodes.makeAttribute(attribute.getName(), value, attribute.getSpecified()));
        }
        return true;
    }

    // Whether all below a node could be copied.
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

    PelXercesNodePool& nodes;
    xercesc::DOMDocument& document;
    const bool isClone;
    const bool isOfOtherVersion;
};

} // namespace

PelXercesNodeRef PelXercesCopy::make(const PelXercesNodeRef& owner, const PelXercesNodeRef& source,
                                     bool isDeep) {
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
