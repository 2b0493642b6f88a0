// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesAttributeOrder.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// The text that a tree was read from, where each node stands in it, and which nodes have changed
/// since.
///
/// The places are the structure of the text: one for each node and attribute that it holds, in
/// document order, an element's attributes behind it. They stay when nodes go. A node's number
/// leads to its place; new nodes have none.
class PelXercesKeptSource {
public:
    /// Bytes of the text. An element's reaches behind its end tag. What came from an entity has the
    /// place of the reference.
    struct Place {
        std::uint32_t begin;
        std::uint32_t end;
    };

    static constexpr std::size_t mostBytes = UINT32_MAX;

    /// The text as UTF-8, its byte-order mark included, and the encoding that it was read in; or
    /// the bytes as they were read, which cannot be cut.
    PelXercesKeptSource(std::shared_ptr<const unsigned char[]> ownBytes, std::size_t size,
                        std::u16string ownEncoding, bool mayBeCut = true)
        : bytes(std::move(ownBytes)), text(reinterpret_cast<const char*>(bytes.get()), size),
          encoding(std::move(ownEncoding)), isCuttable(mayBeCut) {}
    PelXercesKeptSource(const PelXercesKeptSource&) = delete;
    PelXercesKeptSource& operator=(const PelXercesKeptSource&) = delete;

    std::string_view getText() const { return text; }
    const std::u16string& getEncoding() const { return encoding; }

    /// Whether nodes have places in the text. Else it stands for the unchanged document alone.
    bool canBeCut() const { return isCuttable; }

    /// All places, by number less 1.
    const std::vector<Place>& getPlaces() const { return places; }

    /// A new place, behind all others, and its number; the end of an element may come later.
    std::uint32_t addPlace(std::size_t begin, std::size_t end) {
        places.push_back({static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)});
        return static_cast<std::uint32_t>(places.size());
    }
    void setEnd(std::size_t number, std::size_t end) {
        places[number - 1].end = static_cast<std::uint32_t>(end);
    }

    /// Gives a node the number of its place; 0: it is not in the text.
    void setNumber(const xercesc::DOMNode& node, std::uint32_t number) {
        setKnown(node, {number, 0});
    }

    /// 0 for a new node.
    std::size_t numberOf(const xercesc::DOMNode& node) const { return knownOf(node).number; }

    /// Null for a new node.
    const Place* placeOf(const xercesc::DOMNode& node) const;

    /// The value, the name or the attributes of a node change; of an attribute, its value.
    void noteChange(xercesc::DOMNode& node);

    /// A node gets or loses a child.
    void noteChildren(xercesc::DOMNode& parent);

    bool isChanged(const xercesc::DOMNode& node) const { return hasMark(node, changed); }

    /// Whether a node has ever got or lost a child.
    bool hasOtherChildren(const xercesc::DOMNode& parent) const {
        return hasMark(parent, otherChildren);
    }

    /// Whether a node or anything below it is not as it was read.
    bool isChangedWithin(const xercesc::DOMNode& node) const {
        return hasMark(node, changed) || hasMark(node, changedBelow);
    }

    /// Whether something has changed anywhere.
    bool hasChanges() const { return isAnyChanged; }

    /// The number that an attribute has among those of its element. It has no place of its own: the
    /// tag is gone through where it is wanted.
    void setAttributeNumber(const xercesc::DOMAttr& attribute, std::uint32_t number) {
        setKnown(attribute, {number, 0});
    }
    void copyAttributeNumber(const xercesc::DOMAttr& former, const xercesc::DOMAttr& attribute) {
        setKnown(attribute, knownOf(former));
    }

    /// Whether an attribute was not in the tag as it was read.
    bool isNew(const xercesc::DOMAttr& attribute) const {
        return knownOf(attribute).number > PelXercesAttributeOrder::mostInTag;
    }

    /// Whether a node stands in the text by itself. What an entity brought does not: it has the
    /// place of the reference, together with others.
    bool standsAlone(const xercesc::DOMNode& node) const;

    /// The line and column, in characters and from 1, of a node that has a place.
    std::pair<unsigned long, unsigned long> positionOf(const xercesc::DOMNode& node) const;

private:
    enum Mark : std::uint16_t { changed = 1, changedBelow = 2, otherChildren = 4 };

    struct Known {
        std::uint32_t number = 0;
        std::uint16_t marks = 0;
    };

    Known knownOf(const xercesc::DOMNode& node) const;
    void setKnown(const xercesc::DOMNode& node, Known known);
    bool hasMark(const xercesc::DOMNode& node, Mark mark) const;
    void mark(xercesc::DOMNode& node, Mark mark);
    void markUpFrom(xercesc::DOMNode& lowest);

    const std::shared_ptr<const unsigned char[]> bytes;
    const std::string_view text;
    const std::u16string encoding;
    std::vector<Place> places;
    const bool isCuttable;
    bool isAnyChanged = false;
    std::unordered_map<const xercesc::DOMNode*, Known> withoutFields;
    mutable std::vector<std::uint32_t> lineStarts; // empty: not looked for yet
};
