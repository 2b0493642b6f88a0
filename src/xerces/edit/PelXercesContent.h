// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesTree.h"

/// What a node of any kind holds (its value, the text in and below it), and copies of nodes.
///
/// Changes answer INVALID_VALUE for a kind of node that has no such content and for what XML
/// forbids there. When no memory is left, the exception finds the tree unchanged.
namespace PelXercesContent {

/// The data of a text, CDATA section, comment or instruction; else empty.
PelString valueOf(const PelXercesNodeRef& node);
PelDOM::Error setValue(const PelXercesNodeRef& node, const PelString& value);

/// All texts and CDATA sections below an element, in document order; of other nodes the value.
PelString textOf(const PelXercesNodeRef& node);

/// Replaces all children of an element by one text, or by none if it is empty; of other nodes sets
/// the value.
PelDOM::Error setText(const PelXercesNodeRef& node, const PelString& text);

/// What a prefix stands for at an element; empty when it stands for nothing.
PelString namespaceOf(const xercesc::DOMElement& element, std::u16string_view prefix);

/// A copy of `source`, of any tree, and, if `isDeep`, of all below it, in the tree of `owner` and
/// without a parent. None for kinds of which a document has one at most, and where the document's
/// version of XML does not allow a name or a text.
PelXercesNodeRef copy(const PelXercesNodeRef& owner, const PelXercesNodeRef& source, bool isDeep);

} // namespace PelXercesContent
