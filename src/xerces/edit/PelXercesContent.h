// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesNodeRef.h"

/// What a node of any kind holds: its value, and the text in and below it.
///
/// Changes answer INVALID_VALUE for a kind of node that has no such content and for what XML
/// forbids there. When no memory is left, the exception finds the tree unchanged.
class PelXercesContent {
public:
    /// The data of a text, CDATA section, comment or instruction; else empty.
    static PelString valueOf(const PelXercesNodeRef& node);
    static PelDOM::Error setValue(const PelXercesNodeRef& node, const PelString& value);

    /// The texts and CDATA sections of an element and of all elements below it, one after the
    /// other; else the value.
    static PelString textOf(const PelXercesNodeRef& node);

    /// Replaces all children of an element by one text, or by none if it is empty; else sets the
    /// value.
    static PelDOM::Error setText(const PelXercesNodeRef& node, const PelString& text);

    /// What a prefix stands for at an element; empty when it stands for nothing.
    static PelString namespaceOf(const xercesc::DOMElement& element, std::u16string_view prefix);
};
