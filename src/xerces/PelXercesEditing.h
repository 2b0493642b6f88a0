// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/PelXercesNodeRef.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMText.hpp>

/// Changes to the structure of a tree. Every one goes through here, so that live lists learn of it.
class PelXercesEditing {
public:
    /// Makes `child` the last child of `parent`, taking it from its old parent. Where the DOM
    /// forbids that, throws the engine's DOM exception and changes nothing.
    static void append(const PelXercesNodeRef& parent, xercesc::DOMNode& child);

    /// The same for a node of the same document that is new and empty, and an element as the
    /// parent: the DOM never forbids that.
    static void appendNew(const PelXercesNodeRef& parent, xercesc::DOMElement& child);
    static void appendNew(const PelXercesNodeRef& parent, xercesc::DOMText& child);
};
