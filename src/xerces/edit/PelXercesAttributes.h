// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesTree.h"

/// Changes to the attributes of an element, and to its name, on which its default attributes
/// depend. When no memory is left, the exception finds the element as it was.
namespace PelXercesAttributes {

/// Sets an attribute. Throws the engine's exception for a name that XML forbids.
void set(const PelXercesNodeRef& element, const XMLCh* name, const XMLCh* value);

/// Gives an element a new attribute, in the place of one with its name. Takes it back when that
/// fails.
void add(PelXercesNodePool& nodes, xercesc::DOMElementImpl& element, xercesc::DOMAttrImpl& made);

/// Removes an attribute; a default takes its place if there is one.
void remove(const PelXercesNodeRef& element, const XMLCh* name);

/// Gives an element a name, which XML allows, and the default attributes that its document's type
/// declares for that. Records no change.
void rename(const PelXercesNodeRef& element, const XMLCh* name);

} // namespace PelXercesAttributes
