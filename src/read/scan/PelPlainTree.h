// SPDX-License-Identifier: MIT
#pragma once

#include "read/scan/PelPlainNames.h"
#include "read/scan/PelPlainText.h"
#include "xerces/engine/PelXercesPrototypes.h"
#include "xerces/tree/PelXercesTree.h"

#include <string>
#include <vector>

/// Makes the nodes of a plain document in the order of its text, as the engine's parser would.
class PelPlainTree {
public:
    using Name = PelPlainNames::Name;

    /// `encoding` is what the bytes are in.
    PelPlainTree(const XMLCh* systemId, const XMLCh* encoding,
                 const PelXercesReadLimits::Bounds& readBounds);

    xercesc::DOMDocumentImpl& getDocument() const { return document; }
    const PelXercesReadLimits::Bounds& getBounds() const { return bounds; }

    /// What the XML declaration says; `encoding` is empty when it names none.
    void declare(const std::u16string& encoding, bool isStandalone);

    /// A start tag: its name, its attributes, its end; false when a name comes twice, or for more
    /// attributes than the engine's parser may read.
    void openElement(const Name& name);
    void addAttribute(const Name& name, PelPlainText& value);
    bool endTag();

    /// The end of the element that was opened last.
    void closeElement();

    bool isInElement() const { return !levels.empty(); }

    void addText(PelPlainText& text);
    void addCdata(PelPlainText& text);
    void addComment(PelPlainText& text);
    void addInstruction(const std::u16string& target, PelPlainText& data);

    /// The document, which is complete.
    PelXercesNewDocument take();

private:
    struct Level {
        xercesc::DOMElementImpl* element;
        xercesc::DOMChildNode* first; // links of the first child
        xercesc::DOMNode* last;       // child
        xercesc::DOMChildNode* lastLinks;
        std::size_t count; // of children
    };

    bool isNearLimits();
    template <class Node>
    void append(Node& node);
    xercesc::DOMTextImpl& makeText(PelPlainText& text);

    const PelXercesReadLimits::Bounds& bounds;
    PelXercesDocumentPtr owner;
    xercesc::DOMDocumentImpl& document;
    PelXercesChildCounts childCounts;
    PelXercesPrototypes nodes;
    std::vector<Level> levels;
    std::size_t attributeWork = 0;
    std::size_t mostPlaces = 0;
};
