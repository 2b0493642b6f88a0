// SPDX-License-Identifier: MIT
#pragma once

#include "reading/PelPlainTree.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The grammar of plain documents. `Source` is the encoding, PelPlainUtf8 or PelPlainUtf16.
///
/// Every function that gives a bool gives false as soon as the text is not surely well-formed, and
/// nothing is of use after that.
template <class Source>
class PelPlainMarkup {
public:
    using Unit = typename Source::Unit;

    PelPlainMarkup(const Unit* source, const Unit* sourceEnd, PelPlainTree& ownTree)
        : at(source), end(sourceEnd), tree(ownTree), names(tree.getDocument()),
          text(tree.getDocument()) {}

    /// The whole document.
    bool read();

private:
    struct Tag {
        const Unit* name;
        std::size_t length;
    };

    static constexpr bool isSpace(Unit unit) {
        return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
    }

    bool isAt(char expected) const { return at != end && *at == static_cast<Unit>(expected); }

    bool skip(char expected) {
        if (!isAt(expected))
            return false;
        ++at;
        return true;
    }

    bool isAt(std::string_view expected) const {
        if (static_cast<std::size_t>(end - at) < expected.size())
            return false;
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (at[i] != static_cast<Unit>(expected[i]))
                return false;
        return true;
    }

    bool skip(std::string_view expected) {
        if (!isAt(expected))
            return false;
        at += expected.size();
        return true;
    }

    bool skipSpace() {
        const Unit* const begin = at;
        while (at != end && isSpace(*at))
            ++at;
        return at != begin;
    }

    void skipMark();
    bool readDeclaration();
    bool readDeclared(std::string_view name, std::u16string& value);
    bool skipName();
    bool skipWideName(bool isFirst);
    const PelPlainNames::Name* nameFrom(const Unit* begin);
    std::u16string unitsFrom(const Unit* begin) const;

    bool readOutside();
    bool readStartTag();
    bool readAttribute();
    template <char quote>
    bool readValue();
    bool readEndTag();
    bool readContent();
    bool readMarkup();
    bool readText();
    bool readReference();
    bool readCharacterReference();
    bool readComment();
    bool readCdata();
    bool readInstruction();

    template <class Run>
    bool copy(std::string_view terminator);
    std::size_t unitsUpTo(std::string_view terminator) const;

    const Unit* at;
    const Unit* const end;
    PelPlainTree& tree;
    PelPlainNames names;
    PelPlainText text;
    std::vector<Tag> open;
};
