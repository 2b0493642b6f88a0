// SPDX-License-Identifier: MIT
#include "xerces/edit/PelXercesAttributes.h"

#include "xerces/engine/PelXercesLinks.h"

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

void noteChange(PelXercesTree& tree, xercesc::DOMNode& node) {
    if (tree.getSource() != nullptr)
        tree.getSource()->noteChange(node);
}

/// Exchanges the default attributes in one of an element's two maps for those of a new element.
class Exchange {
public:
    Exchange(DOMAttrMapImpl& ofElement, DOMAttrMapImpl& ofNew) : map(ofElement), source(ofNew) {
        former.reserve(map.getLength());
        added.reserve(source.getLength());
    }

    // Leaves the attributes that were set.
    void begin() noexcept {
        take(source, added, true);
        take(map, former, false);
    }

    // May run out of memory.
    void finish() {
        for (DOMAttrImpl* const attribute : added)
            if (map.findNamePoint(attribute->getName()) < 0)
                map.setNamedItem(attribute);
    }

    // Needs no memory: the map has had room for all of these.
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

// Where the fields are known, the name alone is set: the engine's renameNode also changes the
// default attributes, and gets them wrong.
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

void PelXercesAttributes::add(PelXercesNodePool& nodes, DOMElementImpl& element,
                              DOMAttrImpl& made) {
    try {
        if (xercesc::DOMNode* const replaced = element.getAttributes()->setNamedItem(&made))
            nodes.takeBack(static_cast<DOMAttrImpl&>(*replaced));
    } catch (...) {
        nodes.takeBack(made);
        throw;
    }
}

// The engine's setAttribute leaves an empty value behind when no memory is left. Its table of IDs
// never forgets one either: each new value takes another place, until the table fails.
void PelXercesAttributes::set(const PelXercesNodeRef& element, const XMLCh* name,
                              const XMLCh* value) {
    PelXercesTree& tree = element.getTree();
    auto& owner = *element.as<DOMElementImpl>();
    auto* const former = static_cast<DOMAttrImpl*>(owner.getAttributeNode(name));
    const bool wasWritten = former != nullptr && former->getSpecified();
    if (wasWritten && xercesc::XMLString::equals(PelXercesLinks::valueOf(*former), value))
        return;
    if (former != nullptr && PelXercesLinks::textOf(*former) != nullptr) {
        tree.nodes.setData(*PelXercesLinks::textOf(*former), value);
        former->setSpecified(true);
        if (wasWritten)
            noteChange(tree, *former);
        else
            tree.numberAttribute(*former);
    } else {
        tree.nodes.requireName(name);
        DOMAttrImpl& made = tree.nodes.makeAttribute(name, value, true);
        if (wasWritten)
            tree.copyNumber(*former, made);
        else
            tree.numberAttribute(made);
        add(tree.nodes, owner, made);
        if (wasWritten)
            noteChange(tree, made);
    }
    if (!wasWritten)
        noteChange(tree, owner);
}

// The engine's removeAttribute loses the attribute when no memory is left for the default.
void PelXercesAttributes::remove(const PelXercesNodeRef& element, const XMLCh* name) {
    PelXercesNodePool& nodes = element.getTree().nodes;
    auto& owner = *element.as<DOMElementImpl>();
    DOMAttrMapImpl& map = attributesOf(owner);
    const int index = map.findNamePoint(name);
    if (index < 0) {
        owner.removeAttribute(name);
        return;
    }
    noteChange(element.getTree(), owner);
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

void PelXercesAttributes::rename(const PelXercesNodeRef& renamed, const XMLCh* name) {
    PelXercesNodePool& nodes = renamed.getTree().nodes;
    auto& element = *renamed.as<DOMElementImpl>();
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
