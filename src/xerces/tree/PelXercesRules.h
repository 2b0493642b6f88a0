// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMDocument.hpp>

#include <string_view>

/// What XML allows in names and in the data of each kind of node. The whole text counts: a U+0000
/// in it is forbidden and ends nothing.
namespace PelXercesRules {

/// A name for an element or attribute of that document. The engine takes every such name.
bool isName(std::u16string_view name, const xercesc::DOMDocument& document) noexcept;

/// Text or an attribute value of that document. It may look like markup: it will be escaped.
bool isText(std::u16string_view text, const xercesc::DOMDocument& document) noexcept;

/// The data of a CDATA section: without `]]>`.
bool isCDATA(std::u16string_view data) noexcept;

/// The data of a comment: without `--`, and without `-` at the end.
bool isComment(std::u16string_view data) noexcept;

/// The target of a processing instruction: a name that is not reserved, as `xml` is in any case of
/// letters.
bool isReserved(std::u16string_view target) noexcept;
bool isInstructionTarget(std::u16string_view target, const xercesc::DOMDocument& document) noexcept;

/// The data of a processing instruction: without `?>`.
bool isInstruction(std::u16string_view data) noexcept;

} // namespace PelXercesRules
