// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>
#include <xercesc/dom/impl/DOMNodeVector.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>

#include <cstddef>

/// Makes elements, attributes and texts for one document out of moulds: nodes that the engine made
/// once, of which each new node is a copy with links of its own. The engine's constructors take
/// three times as long, and they reserve room in every text that is rarely used.
///
/// This depends on what the engine's classes consist of, so it is tried out first: see areKnown.
class PelPlainNodes {
public:
    explicit PelPlainNodes(xercesc::DOMDocumentImpl& ownDocument);

    /// Whether nodes made here are the same, bit by bit, as the engine's would be at their places.
    /// The engine has to be up.
    static bool areKnown();

    /// Without a name, attributes or a parent, as all that follow.
    xercesc::DOMElementImpl& makeElement();
    xercesc::DOMAttrImpl& makeAttribute();
    xercesc::DOMTextImpl& makeText(const XMLCh* units, std::size_t size);

    /// The list of the attributes in a map of an element, of `size` places, in order of their
    /// names.
    xercesc::DOMNode** makeAttributeList(xercesc::DOMAttrMapImpl& map, std::size_t size);

private:
    struct Moulds;
    static const Moulds& moulds();

    void* take(std::size_t size);

    xercesc::DOMDocumentImpl& document;
    const Moulds& known;
    char*& freeBegin; // of the document's block of memory
    XMLSize_t& freeSize;
};
