// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesFields.h"

#include <cstddef>

/// Makes elements, attributes and texts for one document out of prototypes: nodes that the engine
/// made once, of which each new node is a copy with links of its own. The engine's constructors
/// take three times as long, and they reserve room in every text that is rarely used.
///
/// Only where the engine's fields are known: their trial makes nodes here too.
class PelXercesPrototypes {
public:
    explicit PelXercesPrototypes(xercesc::DOMDocumentImpl& ownDocument);

    /// Whether nodes made here are the same, bit by bit, as those that the engine makes in this
    /// document, whose memory is zeroed.
    static bool areRight(xercesc::DOMDocumentImpl& owner);

    /// Without a name, attributes or a parent, as all that follow.
    xercesc::DOMElementImpl& makeElement();
    xercesc::DOMAttrImpl& makeAttribute();
    xercesc::DOMTextImpl& makeText(const XMLCh* units, std::size_t size);

    /// The list of the attributes in a map of an element, of `size` places, in order of their
    /// names.
    xercesc::DOMNode** makeAttributeList(xercesc::DOMAttrMapImpl& map, std::size_t size);

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
};
