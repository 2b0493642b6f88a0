// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesFields.h"
#include "xerces/engine/PelXercesMemory.h"

#include <array>
#include <cstddef>

/// A document in zeroed memory, so that what lies between fields is the same in all its nodes. It
/// is known what memory it has.
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

/// A tiny tree of the engine's own making, on which the engine's fields are tried out: each that
/// PelXercesFields names is held against what the engine's interface answers.
///
/// Sizes come first, and pointers are followed only into the document's own memory, so an engine
/// whose nodes are others is found out without harm.
class PelXercesLayoutCheck {
public:
    PelXercesLayoutCheck();

    bool succeeds() const;

    // In the order in which they were made, all but the first and the last children of the first.
    xercesc::DOMElementImpl* parent;
    xercesc::DOMElementImpl* element;
    xercesc::DOMAttrImpl* attribute; // of the parent
    xercesc::DOMTextImpl* text;
    xercesc::DOMCommentImpl* comment;
    xercesc::DOMCDATASectionImpl* section;
    xercesc::DOMProcessingInstructionImpl* instruction;
    xercesc::DOMElementImpl* removed;
    xercesc::DOMDocumentTypeImpl* type; // no child

    PelXercesZeroedDocument owner;
    xercesc::DOMDocumentImpl& document;

private:
    bool areSizesKnown() const;
    bool areLinksKnown() const;
    bool areAttributesKnown() const;
    bool areDataKnown() const;
    bool areNamesKnown() const;
    bool isHeapKnown() const;

    template <class Node>
    bool isChildKnown(Node& node, xercesc::DOMNode* previous, xercesc::DOMNode* next) const;
    template <class Node>
    bool isDataKnown(Node& node) const;
};
