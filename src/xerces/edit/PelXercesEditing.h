// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesTree.h"

/// Changes to the structure of a tree. All of them are made here and recorded in its change log.
/// Those that answer a truth value say whether XML and the DOM allow the change; if not, nothing is
/// changed.
namespace PelXercesEditing {

/// Makes `child` the last child of `parent`, taking it from its old parent. Where the DOM forbids
/// that, throws the engine's DOM exception and changes nothing.
void append(const PelXercesNodeRef& parent, const PelXercesNodeRef& child);

/// Makes an element whose only child is a text, as the last child of an element. Throws the
/// engine's exception for a name that XML forbids.
void appendTextElement(const PelXercesNodeRef& parent, const XMLCh* name, const XMLCh* text);

/// Puts `child` in front of `before`, a child of `parent`; behind all children if that is none.
bool insert(const PelXercesNodeRef& parent, const PelXercesNodeRef& child,
            const PelXercesNodeRef& before);

/// Puts `child` into the place of `old`, a child of `parent`.
bool replace(const PelXercesNodeRef& parent, const PelXercesNodeRef& child,
             const PelXercesNodeRef& old);

/// Takes `child` from `parent`.
bool remove(const PelXercesNodeRef& parent, const PelXercesNodeRef& child);

/// Replaces all children of an element by one text; by none if that is null.
void replaceChildren(const PelXercesNodeRef& parent, const XMLCh* text);

/// Gives an element another name, which XML allows.
void rename(const PelXercesNodeRef& element, const XMLCh* name);

} // namespace PelXercesEditing
