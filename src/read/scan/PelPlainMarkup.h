// SPDX-License-Identifier: MIT
#pragma once

#include "read/scan/PelPlainCursor.h"
#include "read/scan/PelPlainTree.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The grammar of plain documents. `Source` is the encoding, PelPlainUtf8 or PelPlainUtf16.
///
/// Every function that gives a bool gives false as soon as the text is not surely well-formed, and
/// nothing is of use after that.
template <class Source>
class PelPlainMarkup : private PelPlainCursor<Source> {
public:
    using Unit = typename Source::Unit;

    PelPlainMarkup(const Unit* source, const Unit* sourceEnd, PelPlainTree& ownTree)
        : Cursor(source, sourceEnd, ownTree.getDocument()), first(source), tree(ownTree),
          names(tree.getDocument(), tree.getBounds()) {}

    /// The whole document.
    bool read();

private:
    // From there to where the reading is, in bytes.
    PelPlainTree::Span spanFrom(const Unit* begin) const {
        return {static_cast<std::size_t>(begin - first), static_cast<std::size_t>(at - first)};
    }

    struct Tag {
        const Unit* name;
        std::size_t length;
    };

    void skipMark();
    bool readDeclaration();
    bool readDeclared(std::string_view name, std::u16string& value);
    const XMLCh* nameFrom(const Unit* begin);

    bool readOutside();
    bool readStartTag();
    bool readAttribute();
    template <char quote>
    bool readValue();
    bool readEndTag();
    bool readContent();
    bool readMarkup();
    bool readText();
    bool readComment();
    bool readCdata();
    bool readInstruction();
    template <class Run>
    bool readUpTo(std::string_view terminator, std::string_view forbidden = {});

    using Cursor = PelPlainCursor<Source>;
    using Cursor::at;
    using Cursor::end;
    using Cursor::isAt;
    using Cursor::readReference;
    using Cursor::skip;
    using Cursor::skipName;
    using Cursor::skipSpace;
    using Cursor::text;
    using Cursor::unitsFrom;

    template <class Run>
    bool copy(std::string_view terminator) {
        return Cursor::template copy<Run>(terminator);
    }

    const Unit* const first;
    PelPlainTree& tree;
    PelPlainNames names;
    std::vector<Tag> open;
};
