// SPDX-License-Identifier: MIT
#pragma once

#include "write/PelXercesMarkup.h"
#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/dom/DOMDocument.hpp>

#include <ostream>
#include <string>

/// Writes a subtree as XML text. The walk keeps its place on the heap, so that depth costs no
/// stack.
class PelXercesNodeWriter {
public:
    PelXercesNodeWriter(PelXercesMarkup& markup, const std::u16string& encoding, bool newlines);

    /// Writes `top` and all below it, flushing `stream` after each child of a document.
    std::ostream& writeNode(std::ostream& stream, const xercesc::DOMNode& top);

private:
    void begin(const xercesc::DOMNode& node, xercesc::DOMNode::NodeType type);
    void beginElement(const xercesc::DOMNode& element);
    void beginDocument(const xercesc::DOMDocument& document);
    void writeDeclaration(const PelXercesDeclaration& values);
    void writeDocumentType(const xercesc::DOMNode& node);
    void newline();

    PelXercesMarkup& out;
    const std::u16string& encodingName;
    const bool hasNewlines;
    const PelXercesEscapes* textPlace = &PelXercesEscapes::uncheckedText;
    const PelXercesEscapes* attributePlace = &PelXercesEscapes::uncheckedAttribute;
};
