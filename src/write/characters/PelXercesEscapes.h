// SPDX-License-Identifier: MIT
#pragma once

#include <array>

/// The escape table of one kind of place in a document: what is written for each character.
struct PelXercesEscapes {
    enum class Action : unsigned char {
        copy,
        end,       ///< U+0000, the end of the text
        entity,    ///< `&amp;` and its like
        reference, ///< `&#x1;`
        newline,   ///< a line feed, as which it would be read
        bracket,   ///< the first of `]]>`, if that follows
        refuse,
    };

    /// For messages: "a comment".
    const char16_t* name;

    /// For characters that the encoding does not hold, or that would not come back.
    Action otherwise;

    /// Whether characters that XML forbids are refused.
    bool isStrict;

    /// XML 1.1 takes more characters as references, and fewer as they are.
    bool isVersion11;

    std::array<Action, 128> ascii;

    /// Copies all of ASCII.
    static const PelXercesEscapes anywhere;

    struct Set;

    /// As the engine's formatter escapes texts and attributes, in its modes CharEscapes and
    /// AttrEscapes for that version of XML. The rest is copied.
    static const Set& asIs(bool isVersion11);

    /// Such that the text reads back as the same tree.
    static const Set& strict(bool isVersion11);
};

/// The tables of a document.
struct PelXercesEscapes::Set {
    PelXercesEscapes text;
    PelXercesEscapes attribute;    ///< between double quotes
    PelXercesEscapes singleQuoted; ///< the same between single ones
    PelXercesEscapes cdata;
    PelXercesEscapes name;
    PelXercesEscapes comment;
    PelXercesEscapes instruction;
    PelXercesEscapes identifier;
    PelXercesEscapes subset;
    PelXercesEscapes literal; ///< of a subset: the value of an entity, the default of an attribute
};
