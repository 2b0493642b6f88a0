// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesElementFactory.h"

#include "xerces/engine/PelXercesLinks.h"

#include <xercesc/util/XMLString.hpp>

using Fields = PelXercesFields;
using xercesc::DOMAttrImpl;
using xercesc::DOMAttrMapImpl;
using xercesc::DOMElementImpl;
using xercesc::XMLElementDecl;
using xercesc::XMLString;

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
    DOMElementImpl& element = nodes.makeElement(model->name);
    names.addElement(model->name);
    if (model->element != nullptr && Fields::attributesOf(*model->element)->hasDefaults())
        addDefaults(element, *model->element);
    for (XMLSize_t i = 0; i < count; ++i) {
        const xercesc::XMLAttr& source = *attributes.elementAt(i);
        addAttribute(element, pool.getPooledString(source.getName()), source.getValue(),
                     source.getSpecified());
    }
    for (const DOMAttrImpl* const attribute : nodes.getAdded())
        names.addAttribute(Fields::nameOf(*attribute));
    // A name that a tag has twice is an error, and then nobody gets to see the tree.
    nodes.endAttributes(*Fields::attributesOf(element));
    return &element;
}

void PelXercesElementFactory::addAttribute(DOMElementImpl& element, const XMLCh* name,
                                           const XMLCh* value, bool isSpecified) {
    DOMAttrImpl& attribute =
        nodes.addAttribute(element, name, makeText(value, XMLString::stringLen(value)));
    Fields::nodeOf(attribute).isSpecified(isSpecified);
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
    nodes.endAttributes(*Fields::defaultsOf(element));
    Fields::defaultsOf(element)->hasDefaults(defaults.hasDefaults());
    Fields::attributesOf(element)->hasDefaults(true);
}
