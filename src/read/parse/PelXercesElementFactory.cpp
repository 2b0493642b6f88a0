// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesElementFactory.h"

#include "xerces/engine/PelXercesLinks.h"

#include <xercesc/util/XMLString.hpp>

#include <algorithm>

using Fields = PelXercesFields;
using xercesc::DOMAttrImpl;
using xercesc::DOMAttrMapImpl;
using xercesc::DOMElementImpl;
using xercesc::XMLElementDecl;
using xercesc::XMLString;

namespace {

bool isBefore(const DOMAttrImpl* one, const DOMAttrImpl* two) {
    return XMLString::compareString(Fields::nameOf(*one), Fields::nameOf(*two)) < 0;
}

} // namespace

const PelXercesElementFactory::Model*
PelXercesElementFactory::modelOf(const XMLElementDecl& declaration) {
    const auto found = models.find(&declaration);
    if (found != models.end())
        return &found->second;
    if (declaration.hasAttDefs())
        return nullptr;
    const XMLCh* const name = pool.getPooledString(declaration.getFullName());
    return &models.emplace(&declaration, Model{name, nullptr}).first->second;
}

DOMElementImpl* PelXercesElementFactory::makeElement(const XMLElementDecl& declaration,
                                                     const Attributes& attributes,
                                                     XMLSize_t count) {
    const Model* const model = modelOf(declaration);
    if (model == nullptr)
        return nullptr;
    DOMElementImpl& element = nodes.makeElement();
    Fields::nameOf(element) = model->name;
    names.addElement(model->name);
    if (model->element != nullptr && Fields::attributesOf(*model->element)->hasDefaults())
        addDefaults(element, *model->element);
    for (XMLSize_t i = 0; i < count; ++i) {
        const xercesc::XMLAttr& source = *attributes.elementAt(i);
        addAttribute(element, pool.getPooledString(source.getName()), source.getValue(),
                     source.getSpecified());
    }
    for (const DOMAttrImpl* const attribute : pending)
        names.addAttribute(Fields::nameOf(*attribute));
    keepAttributes(*Fields::attributesOf(element));
    return &element;
}

void PelXercesElementFactory::addAttribute(DOMElementImpl& element, const XMLCh* name,
                                           const XMLCh* value, bool isSpecified) {
    DOMAttrImpl& attribute = nodes.makeAttribute();
    Fields::nameOf(attribute) = name;
    xercesc::DOMNodeImpl& node = Fields::nodeOf(attribute);
    Fields::ownerOf(node) = &element;
    node.isOwned(true);
    node.isSpecified(isSpecified);
    PelXercesLinks::append(attribute, makeText(value, XMLString::stringLen(value)));
    pending.push_back(&attribute);
}

// What removed attributes become again. The scanner adds to a start tag what it does not have of
// them.
void PelXercesElementFactory::addDefaults(DOMElementImpl& element, const DOMElementImpl& model) {
    DOMAttrMapImpl& defaults = *Fields::defaultsOf(model);
    for (XMLSize_t i = 0; i < defaults.getLength(); ++i) {
        const auto& attribute = static_cast<const DOMAttrImpl&>(*defaults.item(i));
        addAttribute(element, attribute.getName(), PelXercesLinks::valueOf(attribute),
                     attribute.getSpecified());
    }
    keepAttributes(*Fields::defaultsOf(element));
    Fields::defaultsOf(element)->hasDefaults(defaults.hasDefaults());
    Fields::attributesOf(element)->hasDefaults(true);
}

// The engine keeps attributes in the order of their names. A name that a tag has twice is an error,
// and then nobody gets to see the tree.
void PelXercesElementFactory::keepAttributes(DOMAttrMapImpl& map) {
    if (pending.empty())
        return;
    std::sort(pending.begin(), pending.end(), isBefore);
    std::copy(pending.begin(), pending.end(), nodes.makeAttributeList(map, pending.size()));
    pending.clear();
}
