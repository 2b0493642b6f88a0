// SPDX-License-Identifier: MIT
#pragma once

#include "write/PelXercesKeptChildren.h"
#include "write/PelXercesSerializer.h"
#include "xerces/tree/PelSourceMarkup.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Writes a tree as its source has it, but for what has changed since. The walk keeps its place on
/// the heap, so that depth costs no stack.
class PelXercesKeptWriter {
public:
    /// The serializer writes what is new, into the same markup.
    PelXercesKeptWriter(PelXercesMarkup& markup, PelXercesSerializer& newNodes,
                        const PelXercesKeptSource& ownSource, PelXercesSourceStyle ownStyle)
        : out(markup), serializer(newNodes), source(ownSource), style(std::move(ownStyle)),
          text(ownSource.getText()) {}

    /// A node of the tree; a document with its XML declaration if it has one.
    void writeNode(const xercesc::DOMNode& top, bool hasDeclaration);

private:
    using Piece = PelXercesKeptChildren::Piece;

    /// An element or document whose end is still to come.
    struct OpenNode {
        const xercesc::DOMNode* node;
        std::vector<Piece> pieces;
        std::size_t next;
        bool isNew;
        bool isPreserved; // white space in it
    };

    void writePiece(const Piece& piece);
    void begin(const xercesc::DOMNode& node, const std::optional<std::string>& indentation);
    void beginElement(const xercesc::DOMNode& element);
    void beginNewElement(const xercesc::DOMNode& element,
                         const std::optional<std::string>& indentation);
    void writeStartTag(const xercesc::DOMNode& element, bool hasContent);
    const xercesc::DOMAttr* attributeIn(const xercesc::DOMNode& element,
                                        const PelSourceMarkup::Attribute& spelled) const;
    void writeMoved(const xercesc::DOMNode& node, const std::optional<std::string>& indentation);
    void end(const OpenNode& closed);
    bool isPreserved(const xercesc::DOMNode& element) const;
    std::vector<Piece> piecesOfNew(const xercesc::DOMNode& element,
                                   const std::optional<std::string>& indentation,
                                   bool areLinesContent) const;

    // Copies a piece of the source, together with those that follow it there.
    void copy(std::size_t begin, std::size_t end);
    void flushCopied();

    // White space that is new, or a piece that has moved.
    void add(std::string_view changed) {
        flushCopied();
        out.addSource(changed);
    }
    PelXercesSerializer& written() {
        flushCopied();
        return serializer;
    }

    PelXercesMarkup& out;
    PelXercesSerializer& serializer;
    const PelXercesKeptSource& source;
    const PelXercesSourceStyle style;
    const std::string_view text;
    std::size_t copiedBegin = 0;
    std::size_t copiedEnd = 0;
    bool endsWithBracket = false; // what was written last
    std::vector<OpenNode> open;
};
