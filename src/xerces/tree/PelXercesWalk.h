// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMNodeImp.h"

#include <xercesc/dom/DOMNode.hpp>

#include <string_view>

/// Steps from one node of a tree to another.
class PelXercesWalk {
public:
    using Relative = PelDOMNodeImp::Relative;

    /// Null when there is none.
    static xercesc::DOMNode* relativeOf(const xercesc::DOMNode& node, Relative which);

    /// The relative, or the nearest node beyond it in the same direction, that is an element with a
    /// tag name ("*": any); null when there is none.
    static xercesc::DOMNode* elementFrom(const xercesc::DOMNode& node, Relative start,
                                         std::u16string_view name);

    /// The node after another one in document order, below `root`; null after the last.
    static xercesc::DOMNode* nextInTree(const xercesc::DOMNode& root, xercesc::DOMNode* node);

    /// The same without the nodes below that one.
    static xercesc::DOMNode* nextBehind(const xercesc::DOMNode& root, const xercesc::DOMNode* node);

    /// The node before another one in document order, below `root`; null before the first.
    static xercesc::DOMNode* previousInTree(const xercesc::DOMNode& root, xercesc::DOMNode* node);

    /// The last node in document order among a node and all below it.
    static xercesc::DOMNode* lastWithin(xercesc::DOMNode* node);

    /// Whether that is an element with a tag name ("*": any).
    static bool isElement(const xercesc::DOMNode& node, std::u16string_view name);

    /// The same for many nodes of one document: it keeps all names that are the same at the same
    /// address, and once that is known, which is null at first, nothing else is compared.
    static bool isElement(const xercesc::DOMNode& node, std::u16string_view name,
                          const XMLCh*& pooled);
};
