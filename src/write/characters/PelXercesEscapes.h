// SPDX-License-Identifier: MIT
#pragma once

#include <array>

/// What each character becomes in one kind of place in the text of a document.
struct PelXercesEscapes {
    enum class Treatment : unsigned char {
        stands,
        ends,      ///< U+0000, the end of the text
        entity,    ///< `&amp;` and its like
        reference, ///< `&#x1;`
        newline,   ///< what readers make of it
        bracket,   ///< the first of `]]>`, if that follows
        refused,
    };

    /// For messages: "a comment".
    const char16_t* name;

    /// What becomes of characters that the encoding does not hold, or that would not come back.
    Treatment otherwise;

    /// Whether characters that XML forbids are refused.
    bool isChecked;

    /// XML 1.1 takes more characters as references, and fewer as they are.
    bool isVersion11;

    std::array<Treatment, 128> ascii;

    /// The places of the engine's own formatter: its modes NoEscapes, CharEscapes and AttrEscapes.
    static const PelXercesEscapes anywhere;
    static const PelXercesEscapes uncheckedText;
    static const PelXercesEscapes uncheckedAttribute;

    /// The same as its modes for XML 1.1.
    static const PelXercesEscapes uncheckedText11;
    static const PelXercesEscapes uncheckedAttribute11;

    struct Set;

    /// The places of a document that is to be read again.
    static const Set& of(bool isVersion11);
};

struct PelXercesEscapes::Set {
    PelXercesEscapes text;
    PelXercesEscapes attribute;
    PelXercesEscapes cdata;
    PelXercesEscapes name;
    PelXercesEscapes comment;
    PelXercesEscapes instruction;
    PelXercesEscapes identifier;
    PelXercesEscapes subset;
    PelXercesEscapes literal; ///< of a subset: the value of an entity, the default of an attribute
};
