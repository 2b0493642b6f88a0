// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMDocument.hpp>

#include <string_view>

/// What XML allows in names and in the data of each kind of node. The whole text counts: a U+0000
/// in it is forbidden and ends nothing.
class PelXercesRules {
public:
    /// A name for an element or attribute. The engine takes every such name for that document.
    static bool isName(std::u16string_view name, const xercesc::DOMDocument& document) noexcept;

    /// Characters that may stand in text and attribute values of that document. What markup would
    /// be is no hindrance: it is escaped.
    static bool isText(std::u16string_view text, const xercesc::DOMDocument& document) noexcept;

    /// The data of a CDATA section: without `]]>`.
    static bool isCDATA(std::u16string_view data) noexcept;

    /// The data of a comment: without `--`, and without `-` at the end.
    static bool isComment(std::u16string_view data) noexcept;

    /// The target of a processing instruction: a name other than `xml` in any case of letters.
    static bool isInstructionTarget(std::u16string_view target,
                                    const xercesc::DOMDocument& document) noexcept;

    /// The data of a processing instruction: without `?>`.
    static bool isInstruction(std::u16string_view data) noexcept;
};
