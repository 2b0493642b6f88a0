// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/PelXercesNodeRef.h"

/// Changes to the structure of a tree. Every one goes through here, so that live lists learn of it.
class PelXercesEditing {
public:
    /// Makes `child` the last child of `parent`, taking it from its old parent. Where the DOM
    /// forbids that, throws the engine's DOM exception and changes nothing.
    static void append(const PelXercesNodeRef& parent, xercesc::DOMNode& child);
};
