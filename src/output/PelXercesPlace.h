// SPDX-License-Identifier: MIT
#pragma once

#include <array>

/// What each character becomes in one kind of place in the text of a document.
struct PelXercesPlace {
    enum class Fate : unsigned char {
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
    Fate otherwise;

    /// Whether characters that XML forbids are refused.
    bool isChecked;

    /// XML 1.1 takes more characters as references, and fewer as they are.
    bool isVersion11;

    std::array<Fate, 128> ascii;

    /// The places of the engine's own formatter: its modes NoEscapes, CharEscapes and AttrEscapes.
    static const PelXercesPlace anywhere;
    static const PelXercesPlace uncheckedText;
    static const PelXercesPlace uncheckedAttribute;

    /// The same as its modes for XML 1.1.
    static const PelXercesPlace uncheckedText11;
    static const PelXercesPlace uncheckedAttribute11;

    struct Set;

    /// The places of a document that is to be read again.
    static const Set& of(bool isVersion11);
};

struct PelXercesPlace::Set {
    PelXercesPlace text;
    PelXercesPlace attribute;
    PelXercesPlace cdata;
    PelXercesPlace name;
    PelXercesPlace comment;
    PelXercesPlace instruction;
    PelXercesPlace identifier;
    PelXercesPlace subset;
    PelXercesPlace literal; ///< of a subset: the value of an entity, the default of an attribute
};
