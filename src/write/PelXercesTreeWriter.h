// SPDX-License-Identifier: MIT
#pragma once

#include "write/PelXercesCheckedMarkup.h"

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <vector>

/// Writes a subtree so that it reads back as the same one, indented if that is wanted. The walk
/// keeps its place on the heap, so that depth costs no stack.
///
/// White space is added only where no text stands: not in an element that holds text or stands in
/// one that does, and not where `xml:space` says "preserve". Where it is added, it takes the place
/// of the white space that was there.
class PelXercesTreeWriter {
public:
    /// No indent: nothing is added within elements.
    PelXercesTreeWriter(PelXercesCheckedMarkup& markup, int indent);

    /// Throws a PelXercesRefusal that says in which element it arose.
    void write(const xercesc::DOMNode& top);

private:
    struct OpenNode {
        const xercesc::DOMNode* node;
        bool isDocument;
        bool isIndented;
        bool isWithinText;
        bool isPreserved;
    };

    void walk(const xercesc::DOMNode*& node);
    const xercesc::DOMNode* begin(const xercesc::DOMNode& node);
    const xercesc::DOMNode* beginDocument(const xercesc::DOMNode& document);
    const xercesc::DOMNode* beginElement(const xercesc::DOMNode& element);
    void writeDocumentType(const xercesc::DOMNode& node);
    void end(const OpenNode& parent);
    OpenNode opened(const xercesc::DOMNode& element) const;
    void newline(std::size_t level);

    PelXercesCheckedMarkup& out;
    const std::size_t indentation;
    bool isPreservedAbove = false;
    std::vector<OpenNode> open; // the ancestors whose ends are still to come
};
