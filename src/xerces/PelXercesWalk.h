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

    /// Whether that is an element with a tag name ("*": any).
    static bool isElement(const xercesc::DOMNode& node, std::u16string_view name);
};
