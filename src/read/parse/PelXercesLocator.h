// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesKeptSource.h"

#include <xercesc/dom/DOMDocument.hpp>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// What one general entity reference in content has brought, as the parser saw it.
struct PelXercesBroughtNodes {
    const xercesc::DOMNode* lastMarkup = nullptr; ///< The last node that is no text; null: none.
    bool beginsWithText = false;
    bool endsWithText = false;
};

/// Finds where each node of a tree stands in the text that the engine's parser made it of: one pass
/// over the markup, in step with the tree.
class PelXercesLocator {
public:
    /// The text of `source` is well-formed. `references` are those of its content, in order, but
    /// not those within entities.
    PelXercesLocator(PelXercesKeptSource& ownSource, xercesc::DOMDocument& document,
                     const std::vector<PelXercesBroughtNodes>& references);

    /// False where text and tree do not fit.
    bool locate();

private:
    struct Group;

    struct Open {
        xercesc::DOMNode* node;
        std::uint32_t number;
    };

    bool locateMarkup();
    bool locateStartTag();
    bool closeElement();
    bool locateText();
    bool locateReferences(std::size_t reference, std::size_t end);
    bool locateGroup(const Group& group);
    void locateWithin(xercesc::DOMNode& top, std::size_t begin, std::size_t end);
    bool take(xercesc::DOMNode::NodeType type, std::size_t behind);

    PelXercesKeptSource& source;
    const std::string_view text;
    std::size_t at = 0;
    std::vector<Open> open; // the document, and the elements that the place is in
    xercesc::DOMNode* next; // the child of the last of them that comes next; null after the last
    const std::vector<PelXercesBroughtNodes>& brought;
    std::size_t used = 0; // of them
};
