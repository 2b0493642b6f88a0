// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesNodeRef.h"

#include <xercesc/dom/DOMNode.hpp>

/// Changes to the structure of a tree. Every one goes through here, so that live lists learn of it.
class PelXercesEditing {
public:
    /// Makes `child` the last child of `parent`, taking it from its old parent. Where the DOM
    /// forbids that, throws the engine's DOM exception and changes nothing.
    static void append(const PelXercesNodeRef& parent, const PelXercesNodeRef& child);

    /// Makes an element whose only child is a text, as the last child of an element. A name that
    /// XML forbids ends with the engine's exception.
    static void appendTextElement(const PelXercesNodeRef& parent, const XMLCh* name,
                                  const XMLCh* text);

    /// Puts `child` in front of `before`, a child of `parent`; makes it the last child when that is
    /// none. These answer whether XML and the DOM allow the change, and else change nothing.
    static bool insert(const PelXercesNodeRef& parent, const PelXercesNodeRef& child,
                       const PelXercesNodeRef& before);

    /// Puts `child` into the place of `old`, a child of `parent`.
    static bool replace(const PelXercesNodeRef& parent, const PelXercesNodeRef& child,
                        const PelXercesNodeRef& old);

    /// Takes `child` from `parent`.
    static bool remove(const PelXercesNodeRef& parent, const PelXercesNodeRef& child);

    /// Replaces all children of an element by one text; by none when that is null.
    static void replaceChildren(const PelXercesNodeRef& parent, const XMLCh* text);

    /// Gives an element another name, which XML allows.
    static void rename(const PelXercesNodeRef& element, const XMLCh* name);
};
