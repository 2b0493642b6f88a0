// SPDX-License-Identifier: MIT
#pragma once

#include "write/PelXercesSerializer.h"

#include <cstddef>
#include <vector>

/// The layout of a PelDOMWriter: each child of a document on a line of its own, and within elements
/// if an indent is wanted. Declarations, and white space in the document, are left out: the writer
/// has its own.
///
/// White space is added only where no text stands: not in an element that holds text or stands in
/// one that does, and not where `xml:space` says "preserve". Where it is added, it takes the place
/// of the white space that was there.
class PelXercesIndent final : public PelXercesLayout {
public:
    /// No indent: nothing is added within elements.
    PelXercesIndent(PelXercesMarkup& markup, int indent, const xercesc::DOMNode& topNode);

    bool replaces(const xercesc::DOMNode& node, xercesc::DOMNode::NodeType type) override;
    void beginContent(const xercesc::DOMNode& element) override;
    void endContent() override;
    void endDocumentChild(const xercesc::DOMNode& child) override;
    void end() override;

    /// Without an end to it, the indentation of a deep document would take the square of its depth.
    static constexpr std::size_t widest = 256;

    /// Whether text other than white space stands among the children of an element.
    static bool isWithText(const xercesc::DOMNode& element);

    /// Whether `xml:space` keeps white space in an element, by its own attribute or as it is around
    /// it.
    static bool isPreserved(const xercesc::DOMNode& element, bool isPreservedAround);
    static bool isPreservedAround(const xercesc::DOMNode& node);

private:
    struct Content {
        bool isIndented;
        bool isWithinText;
        bool isPreserved;
    };

    void newline();

    PelXercesMarkup& out;
    const std::size_t indentation;
    const xercesc::DOMNode::NodeType topType;
    std::vector<Content> open; // what is around the top, then the open elements
};
