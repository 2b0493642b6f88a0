// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/engine/PelXercesPrototypes.h"

/// Holds what PelXercesFields expects against the engine that runs. Sizes come first, then the
/// prototypes bit by bit, then a tree is linked through the fields and asked for through the
/// engine's interface. Pointers are followed only into the document's own memory, so an engine
/// whose nodes are others is found out without harm.
class PelXercesLayoutCheck {
public:
    /// Decides, once in a process, whether the fields are known. The engine is up, and no other
    /// thread starts it.
    static void run();

    /// The engine makes what is to be looked at.
    PelXercesLayoutCheck();

    /// To be asked once: it changes the nodes.
    bool succeeds();

    PelXercesZeroedDocument owner;
    xercesc::DOMDocumentImpl& document;

    // In the order in which they were made, which is that of their memory.
    xercesc::DOMElementImpl* parent;
    xercesc::DOMElementImpl* element;
    xercesc::DOMAttrImpl* attribute;
    xercesc::DOMTextImpl* text;
    xercesc::DOMCommentImpl* comment;
    xercesc::DOMCDATASectionImpl* section;
    xercesc::DOMProcessingInstructionImpl* instruction;
    xercesc::DOMDocumentTypeImpl* type;

private:
    bool areSizesKnown() const;
    bool areNamesKnown() const;
    bool isHeapKnown() const;
    bool isTreeKnown() const;

    template <class Node>
    bool isDataKnown(Node& node, const void* next) const;
};
