// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesFields.h"
#include "xerces/engine/PelXercesMemory.h"

#include <array>
#include <cstddef>
#include <vector>

/// A document in zeroed memory, so that what lies between fields is the same in all its nodes. It
/// knows what memory it has.
class PelXercesZeroedDocument {
public:
    PelXercesZeroedDocument();

    xercesc::DOMDocumentImpl& get() const;

    /// Whether so many bytes from this place on are the document's.
    bool holds(const void* place, std::size_t size) const { return size <= sizeFrom(place); }

    /// How many bytes from this place on are the document's.
    std::size_t sizeFrom(const void* place) const;

    class Memory final : public PelXercesMemory {
    public:
        void* allocate(XMLSize_t size) override;

        struct Block {
            char* begin = nullptr;
            std::size_t size = 0;
        };
        std::array<Block, 8> blocks; // the first, which are enough
    };

    Memory memory;

private:
    PelXercesDocumentPtr document;
};

/// Makes elements, attributes and texts for one document out of prototypes: nodes that the engine
/// made once, of which each new node is a copy with links of its own. The engine's constructors
/// take three times as long, and they reserve room in every text that is rarely used.
///
/// Only where the engine's fields are known. Names are those of the document's table.
class PelXercesPrototypes {
public:
    explicit PelXercesPrototypes(xercesc::DOMDocumentImpl& ownDocument);

    /// Whether copies are the same, bit by bit, as these nodes that the engine has made in a zeroed
    /// document. Puts copies into their places.
    static bool areRight(xercesc::DOMDocumentImpl& owner, xercesc::DOMElementImpl& element,
                         xercesc::DOMAttrImpl& attribute, xercesc::DOMTextImpl& text);

    /// Without attributes or a parent, as the text that follows.
    xercesc::DOMElementImpl& makeElement(const XMLCh* name);
    xercesc::DOMTextImpl& makeText(const XMLCh* units, std::size_t size);

    /// Makes an attribute of an element, which is in none of its maps until endAttributes.
    xercesc::DOMAttrImpl& addAttribute(xercesc::DOMElementImpl& element, const XMLCh* name,
                                       xercesc::DOMTextImpl& value);

    /// Those added since the last endAttributes.
    const std::vector<xercesc::DOMAttrImpl*>& getAdded() const { return added; }

    /// Puts them into a map that is empty so far, in the order of their names. False when two have
    /// the same name.
    bool endAttributes(xercesc::DOMAttrMapImpl& map);

private:
    template <class Node>
    class Mould;
    struct Prototypes;
    static const Prototypes& prototypes();

    void* take(std::size_t size);

    xercesc::DOMDocumentImpl& document;
    const Prototypes& known;
    char*& freeBegin; // of the document's block of memory
    XMLSize_t& freeSize;
    std::vector<xercesc::DOMAttrImpl*> added;
};
