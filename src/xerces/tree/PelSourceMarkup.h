// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// Steps through the markup of a document in UTF-8 that is known to be well-formed. Each takes the
/// place where something begins and gives the one behind it.
namespace PelSourceMarkup {

constexpr bool isSpace(char unit) {
    return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
}

bool isWhiteSpace(std::string_view text);

std::size_t behindSpace(std::string_view text, std::size_t at);
std::size_t behindName(std::string_view text, std::size_t at);
std::size_t behindComment(std::string_view text, std::size_t at);
std::size_t behindSection(std::string_view text, std::size_t at);
std::size_t behindInstruction(std::string_view text, std::size_t at);
std::size_t behindDocumentType(std::string_view text, std::size_t at);
std::size_t behindStartTag(std::string_view text, std::size_t at);

/// Behind the byte-order mark and the XML declaration, where there are such.
std::size_t behindDeclaration(std::string_view text);

/// The white space in front of something on a line of its own; none where something else precedes
/// it.
std::optional<std::string_view> indentationAt(std::string_view text, std::size_t begin);

/// One attribute of a start tag.
struct Attribute {
    std::size_t begin; ///< Of the name.
    std::size_t nameEnd;
    std::size_t valueBegin; ///< Behind the quote.
    std::size_t end;        ///< Behind the closing quote.
};

/// The attribute at, or behind white space at, `at`; false at the end of the tag.
bool findAttribute(std::string_view text, std::size_t at, Attribute& attribute);

/// The character of one of the five entities that XML declares; 0 for another name.
char16_t predefined(std::string_view name);

/// The next reference to a general entity that is declared, from `at` on and before `end`; `end`
/// when there is none. Character references and the five that XML declares are none.
std::size_t findReference(std::string_view text, std::size_t at, std::size_t end);

} // namespace PelSourceMarkup
