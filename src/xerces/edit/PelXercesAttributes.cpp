// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesAttributes.h"

#include "xerces/engine/PelXercesLinks.h"

using xercesc::DOMAttrImpl;

void PelXercesAttributes::add(PelXercesNodePool& nodes, xercesc::DOMElementImpl& element,
                              DOMAttrImpl& made) {
    try {
        if (xercesc::DOMNode* const replaced = element.getAttributes()->setNamedItem(&made))
            nodes.takeBack(static_cast<DOMAttrImpl&>(*replaced));
    } catch (...) {
        nodes.takeBack(made);
        throw;
    }
}

// The engine's own way leaves an empty value behind when no memory is left. Nor does its table of
// IDs ever forget one: each new value would take a further place, up to a number at which it fails.
void PelXercesAttributes::set(const PelXercesNodeRef& element, const XMLCh* name,
                              const XMLCh* value) {
    PelXercesNodePool& nodes = element.getTree().nodes;
    auto& owner = *element.as<xercesc::DOMElementImpl>();
    auto* const former = static_cast<DOMAttrImpl*>(owner.getAttributeNode(name));
    if (former != nullptr && PelXercesLinks::textOf(*former) != nullptr) {
        nodes.setData(*PelXercesLinks::textOf(*former), value);
        former->setSpecified(true);
        return;
    }
    nodes.requireName(name);
    add(nodes, owner, nodes.makeAttribute(name, value, true));
}

// The engine's own way loses the attribute when no memory is left for the default.
void PelXercesAttributes::remove(const PelXercesNodeRef& element, const XMLCh* name) {
    PelXercesNodePool& nodes = element.getTree().nodes;
    auto& owner = *element.as<xercesc::DOMElementImpl>();
    auto& map = *static_cast<xercesc::DOMAttrMapImpl*>(owner.getAttributes());
    const int index = map.findNamePoint(name);
    if (index < 0) {
        owner.removeAttribute(name);
        return;
    }
    const auto* const byDefault = static_cast<DOMAttrImpl*>(
        map.hasDefaults() ? owner.getDefaultAttributes()->getNamedItem(name) : nullptr);
    if (byDefault != nullptr) {
        add(nodes, owner,
            nodes.makeAttribute(name, PelXercesLinks::valueOf(*byDefault),
                                byDefault->getSpecified()));
        return;
    }
    const bool hasDefaults = map.hasDefaults();
    map.hasDefaults(false);
    auto* const removed =
        static_cast<DOMAttrImpl*>(map.removeNamedItemAt(static_cast<XMLSize_t>(index)));
    map.hasDefaults(hasDefaults);
    nodes.takeBack(*removed);
}
