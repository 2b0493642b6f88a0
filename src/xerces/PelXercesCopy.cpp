// SPDX-License-Identifier: MIT
#include "xerces/PelXercesCopy.h"

#include "xerces/PelXercesLinks.h"
#include "xerces/PelXercesRules.h"

#include <xercesc/dom/DOMCDATASection.hpp>
#include <xercesc/dom/DOMComment.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMProcessingInstruction.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>

using xercesc::DOMAttrImpl;
using xercesc::DOMElementImpl;
using xercesc::DOMNode;

namespace {

/// Makes the nodes of a copy, one at a time.
class Copier {
public:
    Copier(const PelXercesNodeRef& owner, const PelXercesNodeRef& source)
        : document(*static_cast<xercesc::DOMDocumentImpl*>(owner.getDocument())),
          isClone(&owner.getTree() == &source.getTree()),
          hasOtherNames(source.getDocument()->getXmlVersion() != document.getXmlVersion()) {}

    // Null where there is none.
    DOMNode* copy(const DOMNode& source) {
        const XMLCh* const value = source.getNodeValue();
        switch (source.getNodeType()) {
        case DOMNode::ELEMENT_NODE:
            return copyElement(source);
        case DOMNode::TEXT_NODE:
            return document.createTextNode(value);
        case DOMNode::CDATA_SECTION_NODE:
            return document.createCDATASection(value);
        case DOMNode::COMMENT_NODE:
            return document.createComment(value);
        case DOMNode::PROCESSING_INSTRUCTION_NODE:
            return isAllowed(source.getNodeName())
                       ? document.createProcessingInstruction(source.getNodeName(), value)
                       : nullptr;
        default:
            return nullptr;
        }
    }

private:
    bool isAllowed(const XMLCh* name) const {
        return !hasOtherNames || PelXercesRules::isName(name, document);
    }

    DOMElementImpl* copyElement(const DOMNode& source) {
        if (!isAllowed(source.getNodeName()))
            return nullptr;
        auto* const element =
            static_cast<DOMElementImpl*>(document.createElementNoCheck(source.getNodeName()));
        const xercesc::DOMNamedNodeMap& attributes = *source.getAttributes();
        for (XMLSize_t i = attributes.getLength(); i-- > 0;) {
            const auto& attribute = static_cast<const DOMAttrImpl&>(*attributes.item(i));
            if (!isClone && !attribute.getSpecified())
                continue; // a default of the other document
            if (!isAllowed(attribute.getName()))
                return nullptr;
            auto* const made =
                static_cast<DOMAttrImpl*>(document.createAttribute(attribute.getName()));
            made->setValueFast(PelXercesLinks::valueOf(attribute));
            made->setSpecified(attribute.getSpecified());
            element->setAttributeNode(made);
        }
        return element;
    }

    xercesc::DOMDocumentImpl& document;
    const bool isClone;
    const bool hasOtherNames;
};

void append(DOMNode& parent, DOMNode& child) {
    if (PelXercesLinks::areKnown)
        PelXercesLinks::insert(static_cast<DOMElementImpl&>(parent), child, nullptr);
    else
        parent.appendChild(&child);
}

} // namespace

PelXercesNodeRef PelXercesCopy::make(const PelXercesNodeRef& owner, const PelXercesNodeRef& source,
                                     bool isDeep) {
    if (source.getType() == PelDOM::XML_DECL_NODE)
        return {};
    Copier copier(owner, source);
    DOMNode* const copy = copier.copy(*source.getNode());
    if (copy == nullptr)
        return {};
    const DOMNode* from = source.getNode();
    DOMNode* to = copy;
    while (isDeep) {
        if (const DOMNode* const child = from->getFirstChild()) {
            from = child;
        } else {
            for (; from != source.getNode() && from->getNextSibling() == nullptr;
                 to = to->getParentNode())
                from = from->getParentNode();
            if (from == source.getNode())
                break;
            from = from->getNextSibling();
            to = to->getParentNode();
        }
        DOMNode* const child = copier.copy(*from);
        if (child == nullptr)
            return {};
        append(*to, *child);
        to = child;
    }
    return owner.to(copy);
}
