// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/dom/DOMAttr.hpp>

#include <cstdint>
#include <vector>

/// The order in which an element's attributes were written: their numbers ascend. The engine keeps
/// attributes by name, and so do all here where nodes have no numbers.
namespace PelXercesAttributeOrder {

/// All attributes, written ones first; those that only a declaration gave follow, by name. By name
/// altogether unless they are wanted as they were written.
void list(const xercesc::DOMNode& element, std::vector<xercesc::DOMAttr*>& attributes,
          bool isAsWritten = true);

/// Those of the tag that was read count from 1; those that came later have larger numbers than any
/// tag has attributes.
constexpr std::uint32_t mostInTag = std::uint32_t{1} << 24;

/// 0 where there are no numbers, and for one that nobody wrote.
std::uint32_t numberOf(xercesc::DOMAttr& attribute);
void setNumber(xercesc::DOMAttr& attribute, std::uint32_t number);

} // namespace PelXercesAttributeOrder
