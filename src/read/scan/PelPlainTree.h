// SPDX-License-Identifier: MIT
#pragma once

#include "read/scan/PelPlainNames.h"
#include "read/scan/PelPlainText.h"
#include "xerces/engine/PelXercesPrototypes.h"
#include "xerces/tree/PelXercesTree.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Makes the nodes of a plain document in the order of its text, as the engine's parser would.
class PelPlainTree {
public:
    /// `encoding` is what the bytes are in.
    PelPlainTree(const XMLCh* systemId, const XMLCh* encoding,
                 const PelXercesReadLimits::Bounds& readBounds,
                 std::unique_ptr<PelXercesKeptSource> ownSource);

    /// Where something begins and ends in the text.
    struct Span {
        std::size_t begin;
        std::size_t end;
    };

    xercesc::DOMDocumentImpl& getDocument() const { return document; }
    const PelXercesReadLimits::Bounds& getBounds() const { return bounds; }

    /// What the XML declaration says; `encoding` is empty when it names none.
    void declare(const std::u16string& encoding, const std::u16string& standalone);

    /// A start tag: its name, its attributes, its end; false when a name comes twice, or for more
    /// attributes than the engine's parser may read.
    void openElement(const XMLCh* name, std::size_t begin);
    void addAttribute(const XMLCh* name, PelPlainText& value);
    bool endTag();

    /// The end of the element that was opened last.
    void closeElement(std::size_t end);

    void addText(PelPlainText& text, Span span);
    void addCdata(PelPlainText& text, Span span);
    void addComment(PelPlainText& text, Span span);
    void addInstruction(const std::u16string& target, PelPlainText& data, Span span);

    /// The document, which is complete.
    PelXercesNewDocument take();

private:
    struct Level {
        xercesc::DOMElementImpl* element;
        xercesc::DOMChildNode* first; // links of the first child
        xercesc::DOMNode* last;       // child
        xercesc::DOMChildNode* lastLinks;
        std::size_t count; // of children
        std::uint32_t number;
    };

    bool isNearLimits();
    template <class Node>
    std::uint32_t place(Node& node, Span span);
    template <class Node>
    void append(Node& node);
    template <class Node>
    void addLeaf(Node* node, PelPlainText& text, Span span);
    xercesc::DOMTextImpl& makeText(PelPlainText& text);

    const PelXercesReadLimits::Bounds& bounds;
    bool isNotStandalone = false;
    std::unique_ptr<PelXercesKeptSource> source; // null: places are of no interest
    PelXercesDocumentPtr owner;
    xercesc::DOMDocumentImpl& document;
    PelXercesChildCounts childCounts;
    PelXercesPrototypes nodes;
    std::vector<Level> levels;
    std::size_t attributeWork = 0;
    std::size_t mostPlaces = 0;
};
