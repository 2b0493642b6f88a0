// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMElement.h"

#include "xerces/edit/PelXercesAttributes.h"
#include "xerces/edit/PelXercesContent.h"
#include "xerces/edit/PelXercesEditing.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/handles/PelXercesCursor.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/handles/PelXercesDOMNodeList.h"
#include "xerces/tree/PelXercesRules.h"
#include "xerces/tree/PelXercesWalk.h"

#include <qrndom/PelDOMNodeList.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMText.hpp>

#include <string_view>

using xercesc::DOMElement;

namespace {

// The engine element of a content object; null when the content has no owner.
DOMElement* elementOf(const PelDOMNodeContentImp& content) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(content);
    return node != nullptr ? node->as<DOMElement>() : nullptr;
}

// The attribute at a position; null when there is none.
xercesc::DOMNode* attributeAt(const PelDOMNodeContentImp& content, long index) {
    const DOMElement* const element = elementOf(content);
    return element != nullptr && index >= 0
               ? element->getAttributes()->item(static_cast<XMLSize_t>(index))
               : nullptr;
}

// The attribute of a name; null when there is none.
xercesc::DOMNode* attributeNamed(const PelDOMNodeContentImp& content, const PelString& name) {
    const DOMElement* const element = elementOf(content);
    return element != nullptr ? element->getAttributes()->getNamedItem(name.view().data())
                              : nullptr;
}

} // namespace

PelDOM::Error PelXercesDOMElement::removeAttribute(const PelString& name) {
    if (PelDOM::checkString(name, 0) != PelDOM::SUCCESS)
        return PelDOM::INVALID_VALUE;
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    PelXercesAttributes::remove(*node, name.view().data());
    return PelDOM::SUCCESS;
}

long PelXercesDOMElement::getNumAttributes() {
    const DOMElement* const element = elementOf(*this);
    return element != nullptr ? static_cast<long>(element->getAttributes()->getLength()) : 0;
}

PelString PelXercesDOMElement::getAttributeValueAt(long index) {
    const xercesc::DOMNode* const attribute = attributeAt(*this, index);
    return attribute != nullptr ? PelXercesLinks::valueOf(*attribute) : PelString();
}

PelString PelXercesDOMElement::getAttributeNameAt(long index) {
    const xercesc::DOMNode* const attribute = attributeAt(*this, index);
    return attribute != nullptr ? attribute->getNodeName() : PelString();
}

PelDOM::Error PelXercesDOMElement::setAttribute(const PelString& name, const PelString& value) {
    if (PelDOM::checkString(name, 0) != PelDOM::SUCCESS ||
        PelDOM::checkString(value, 1) != PelDOM::SUCCESS)
        return PelDOM::INVALID_VALUE;
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    PelXercesAttributes::set(*node, name.view().data(), value.view().data());
    return PelDOM::SUCCESS;
}

PelDOM::Error PelXercesDOMElement::appendTextElement(const PelString& name, const PelString& text) {
    if (PelDOM::checkString(name, 0) != PelDOM::SUCCESS ||
        PelDOM::checkString(text, 1) != PelDOM::SUCCESS)
        return PelDOM::INVALID_VALUE;
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    PelXercesEditing::appendTextElement(*node, name.view().data(), text.view().data());
    return PelDOM::SUCCESS;
}

PelString PelXercesDOMElement::getTagName() {
    const DOMElement* const element = elementOf(*this);
    return element != nullptr ? element->getTagName() : PelString();
}

PelString PelXercesDOMElement::getAttribute(const PelString& name) {
    const xercesc::DOMNode* const attribute = attributeNamed(*this, name);
    return attribute != nullptr ? PelXercesLinks::valueOf(*attribute) : PelString();
}

int PelXercesDOMElement::getElementsByTagName(const PelString& name, PelDOMNodeList& out) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return 0;
    out = PelDOMNodeList(new PelXercesDOMNodeList(*node, name.view()));
    return static_cast<int>(out.length());
}

PelDOMNodeImp* PelXercesDOMElement::getElement(PelDOMNodeImp::Relative start,
                                               const PelString& name) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return nullptr;
    xercesc::DOMNode* const found =
        PelXercesWalk::elementFrom(*node->getNode(), start, name.view());
    return PelXercesDOMNode::makeUntraced(*node, found);
}

PelDOM::Error PelXercesDOMElement::setTagName(const PelString& name) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    if (!PelXercesRules::isName(name.view(), *node->getDocument()))
        return PelDOM::INVALID_VALUE;
    PelXercesEditing::rename(*node, name.view().data());
    return PelDOM::SUCCESS;
}

bool PelXercesDOMElement::hasAttribute(const PelString& name) {
    return attributeNamed(*this, name) != nullptr;
}

PelDOM::Error PelXercesDOMElement::putAttribute(const PelString& name, const PelString& value) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return PelDOM::INTERNAL_ERROR;
    if (!PelXercesRules::isName(name.view(), *node->getDocument()) ||
        !PelXercesRules::isText(value.view(), *node->getDocument()))
        return PelDOM::INVALID_VALUE;
    PelXercesAttributes::set(*node, name.view().data(), value.view().data());
    return PelDOM::SUCCESS;
}

PelString PelXercesDOMElement::lookupNamespaceURI(const PelString& prefix) {
    const DOMElement* const element = elementOf(*this);
    return element != nullptr ? PelXercesContent::namespaceOf(*element, prefix.view())
                              : PelString();
}

bool PelXercesDOMElement::getOnlyText(PelString& value) {
    const DOMElement* const element = elementOf(*this);
    xercesc::DOMNode* const child = element != nullptr ? element->getFirstChild() : nullptr;
    if (child == nullptr || PelXercesLinks::nextOf(*child) != nullptr ||
        PelXercesLinks::typeOf(*child) != xercesc::DOMNode::TEXT_NODE)
        return false;
    const auto& text = static_cast<const xercesc::DOMText&>(*child);
    value = PelString(std::u16string_view(text.getData(), text.getLength()));
    return true;
}

std::shared_ptr<const PelDOMSelection>
PelXercesDOMElement::getChildElements(const PelString& name) {
    const PelXercesNodeRef* const node = PelXercesDOMNode::of(*this);
    if (node == nullptr)
        return nullptr;
    return std::make_shared<PelXercesChildElements>(
        PelXercesSelected{*node, PelXercesSelected::CHILD_ELEMENTS, std::u16string(name.view())});
}

std::vector<PelDOMAttribute> PelXercesDOMElement::getAttributes() {
    std::vector<PelDOMAttribute> attributes;
    const DOMElement* const element = elementOf(*this);
    if (element == nullptr)
        return attributes;
    const xercesc::DOMNamedNodeMap& map = *element->getAttributes();
    attributes.resize(map.getLength());
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        const xercesc::DOMNode& attribute = *map.item(i);
        attributes[i].name = attribute.getNodeName();
        attributes[i].value = PelXercesLinks::valueOf(attribute);
    }
    return attributes;
}
