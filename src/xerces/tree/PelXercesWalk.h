// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMNodeImp.h"

#include <xercesc/dom/DOMNode.hpp>

#include <string_view>

/// Steps from one node of a tree to another.
namespace PelXercesWalk {

using Relative = PelDOMNodeImp::Relative;

/// Null when there is none.
xercesc::DOMNode* relativeOf(const xercesc::DOMNode& node, Relative which);

/// The relative, or the nearest node beyond it in the same direction, that is an element with a tag
/// name ("*": any); null when there is none.
xercesc::DOMNode* elementFrom(const xercesc::DOMNode& node, Relative start,
                              std::u16string_view name);

/// The node after another one in document order, below `root`; null after the last.
xercesc::DOMNode* nextInTree(const xercesc::DOMNode& root, xercesc::DOMNode* node);

/// The same without the nodes below that one.
xercesc::DOMNode* nextBehind(const xercesc::DOMNode& root, const xercesc::DOMNode* node);

/// The last node in document order among a node and all below it.
xercesc::DOMNode* lastWithin(xercesc::DOMNode* node);

/// Whether that is an element with a tag name ("*": any). A document keeps equal names at one
/// address: `pooled`, at first null, takes that of the first match, and from then on addresses are
/// compared.
bool isElement(const xercesc::DOMNode& node, std::u16string_view name, const XMLCh*& pooled);

} // namespace PelXercesWalk
