// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesRenaming.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <vector>

using xercesc::DOMAttrImpl;
using xercesc::DOMAttrMapImpl;
using xercesc::DOMElementImpl;

namespace {

DOMAttrMapImpl& attributesOf(const DOMElementImpl& element) {
    return *static_cast<DOMAttrMapImpl*>(element.getAttributes());
}

// What an element has by default, in one of its two maps, exchanged for what a new element has
// there.
class Exchange {
public:
    Exchange(DOMAttrMapImpl& ofElement, DOMAttrMapImpl& ofNew) : map(ofElement), source(ofNew) {
        former.reserve(map.getLength());
        added.reserve(source.getLength());
    }

    // Leaves what was set for the element.
    void begin() noexcept {
        take(source, added, true);
        take(map, former, false);
    }

    // No memory may be left for this.
    void finish() {
        for (DOMAttrImpl* const attribute : added)
            if (map.findNamePoint(attribute->getName()) < 0)
                map.setNamedItem(attribute);
    }

    // There was room for what was taken out.
    void undo() noexcept {
        for (DOMAttrImpl* const attribute : added)
            if (map.getNamedItem(attribute->getName()) == attribute)
                map.removeNamedItem(attribute->getName());
        for (DOMAttrImpl* const attribute : former)
            map.setNamedItem(attribute);
        former.clear();
    }

    void giveBack(PelXercesNodePool& nodes) noexcept {
        for (const auto* const list : {&former, &added})
            for (DOMAttrImpl* const attribute : *list)
                if (map.getNamedItem(attribute->getName()) != attribute)
                    nodes.takeBack(*attribute);
    }

    bool hasAdded() const noexcept { return !added.empty(); }

private:
    using Attributes = std::vector<DOMAttrImpl*>;

    static void take(DOMAttrMapImpl& from, Attributes& to, bool areAll) noexcept {
        from.hasDefaults(false); // nothing takes the place of what goes
        for (XMLSize_t i = from.getLength(); i-- > 0;) {
            auto* const attribute = static_cast<DOMAttrImpl*>(from.item(i));
            if (!areAll && attribute->getSpecified())
                continue;
            from.removeNamedItemAt(i);
            to.push_back(attribute);
        }
    }

    DOMAttrMapImpl& map;
    DOMAttrMapImpl& source;
    Attributes former;
    Attributes added;
};

// The engine's own way also adds what the element has by default, and mistakes it where there is
// any.
void setName(DOMElementImpl& element, const XMLCh* name, xercesc::DOMDocumentImpl& document) {
    if (PelXercesFields::areKnown()) {
        PelXercesFields::nameOf(element) = document.getPooledString(name);
        return;
    }
    try {
        document.renameNode(&element, nullptr, name);
    } catch (const xercesc::DOMException&) {
        // The root that came with a created document is the one element that knows namespaces: it
        // takes any name, and complains of a prefix without a namespace afterwards.
        if (!xercesc::XMLString::equals(element.getTagName(), name))
            throw;
    }
}

} // namespace

void PelXercesRenaming::rename(DOMElementImpl& element, const XMLCh* name,
                               PelXercesNodePool& nodes) {
    auto& document = static_cast<xercesc::DOMDocumentImpl&>(*element.getOwnerDocument());
    nodes.expectName();
    DOMAttrMapImpl& defaults = *element.getDefaultAttributes();
    if (document.getDoctype() == nullptr && defaults.getLength() == 0) {
        setName(element, name, document);
        return;
    }
    DOMAttrMapImpl& attributes = attributesOf(element);
    const bool hadDefaults = attributes.hasDefaults();
    const XMLCh* const formerName = element.getTagName();
    DOMElementImpl& spare = nodes.makeElement(name);
    try {
        Exchange ofDefaults(defaults, *spare.getDefaultAttributes());
        Exchange ofAttributes(attributes, attributesOf(spare));
        ofDefaults.begin();
        ofAttributes.begin();
        try {
            setName(element, name, document);
            ofDefaults.finish();
            ofAttributes.finish();
        } catch (...) {
            setName(element, formerName, document);
            ofAttributes.undo();
            ofDefaults.undo();
            attributes.hasDefaults(hadDefaults);
            ofDefaults.giveBack(nodes);
            ofAttributes.giveBack(nodes);
            throw;
        }
        attributes.hasDefaults(ofDefaults.hasAdded());
        ofDefaults.giveBack(nodes);
        ofAttributes.giveBack(nodes);
    } catch (...) {
        nodes.takeBack(spare);
        throw;
    }
    nodes.takeBack(spare);
}
