// SPDX-License-Identifier: MIT
#include "xerces/PelXercesRenaming.h"

#include "xerces/PelXercesLinks.h"

#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>

#include <utility>

using xercesc::DOMAttrImpl;
using xercesc::DOMAttrMapImpl;
using xercesc::DOMElementImpl;

namespace {

DOMAttrImpl& attributeAt(const DOMAttrMapImpl& map, XMLSize_t index) {
    return *static_cast<DOMAttrImpl*>(map.item(index));
}

void setOwner(DOMAttrMapImpl& map, DOMElementImpl& element) {
    struct Opened : DOMAttrMapImpl {
        static auto owner() { return &Opened::fOwnerNode; }
    };
    map.*Opened::owner() = &element;
    for (XMLSize_t i = 0; i < map.getLength(); ++i) {
        attributeAt(map, i).fNode.fOwnerNode = &element;
        attributeAt(map, i).fNode.isOwned(true);
    }
}

// Takes an attribute out without a default taking its place.
DOMAttrImpl& take(DOMAttrMapImpl& map, XMLSize_t index) {
    DOMAttrImpl& taken = attributeAt(map, index);
    const bool hasDefaults = map.hasDefaults();
    map.hasDefaults(false);
    map.removeNamedItemAt(index);
    map.hasDefaults(hasDefaults);
    return taken;
}

// Puts the attributes of an element that are no defaults among those of another, in the place of
// defaults with their names.
void addSpecified(const DOMElementImpl& from, DOMElementImpl& to, PelXercesNodePool& nodes) {
    DOMAttrMapImpl& attributes = *to.fAttributes;
    attributes.reserve(from.fAttributes->getLength() + 1);
    for (XMLSize_t i = 0; i < from.fAttributes->getLength(); ++i) {
        DOMAttrImpl& attribute = attributeAt(*from.fAttributes, i);
        if (!attribute.getSpecified())
            continue;
        const int replaced = attributes.findNamePoint(attribute.getName());
        if (replaced >= 0)
            nodes.takeBack(take(attributes, static_cast<XMLSize_t>(replaced)));
        attributes.setNamedItemFast(&attribute);
    }
}

void takeSpecified(DOMAttrMapImpl& attributes) {
    for (XMLSize_t i = attributes.getLength(); i-- > 0;)
        if (attributeAt(attributes, i).getSpecified())
            take(attributes, i);
}

} // namespace

// Both maps of a new element with that name are got ready and then exchanged.
void PelXercesRenaming::rename(DOMElementImpl& element, const XMLCh* name,
                               PelXercesNodePool& nodes) {
    auto& document = static_cast<xercesc::DOMDocumentImpl&>(*element.fParent.fOwnerDocument);
    if (!PelXercesLinks::areKnown) {
        document.renameNode(&element, nullptr, name);
        return;
    }
    if (document.getDoctype() == nullptr && element.fDefaultAttributes->getLength() == 0) {
        element.fName = document.getPooledString(name);
        return;
    }
    DOMElementImpl& spare = nodes.makeElement(name);
    try {
        addSpecified(element, spare, nodes);
    } catch (...) {
        takeSpecified(*spare.fAttributes);
        setOwner(*element.fAttributes, element);
        nodes.takeBack(spare);
        throw;
    }
    takeSpecified(*element.fAttributes);
    std::swap(element.fName, spare.fName);
    std::swap(element.fAttributes, spare.fAttributes);
    std::swap(element.fDefaultAttributes, spare.fDefaultAttributes);
    setOwner(*element.fAttributes, element);
    setOwner(*element.fDefaultAttributes, element);
    setOwner(*spare.fAttributes, spare);
    setOwner(*spare.fDefaultAttributes, spare);
    nodes.takeBack(spare);
}
