// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesNodeRef.h"

/// Changes to the attributes of an element. When no memory is left for one, the exception finds
/// them as they were.
class PelXercesAttributes {
public:
    /// Sets an attribute. A name that XML forbids ends with the engine's exception.
    static void set(const PelXercesNodeRef& element, const XMLCh* name, const XMLCh* value);

    /// Gives an element a new attribute, in the place of one with its name. Takes it back when that
    /// fails.
    static void add(PelXercesNodePool& nodes, xercesc::DOMElementImpl& element,
                    xercesc::DOMAttrImpl& made);

    /// Removes an attribute, whose place a default takes if there is one.
    static void remove(const PelXercesNodeRef& element, const XMLCh* name);
};
