// SPDX-License-Identifier: MIT
#pragma once

#include "write/PelXercesMarkup.h"
#include "write/characters/PelXercesEscapes.h"

#include <array>
#include <cstddef>

/// The markup of a document that a reader will take and find the same tree in; a PelXercesRefusal
/// where there is no such markup.
class PelXercesCheckedMarkup {
public:
    PelXercesCheckedMarkup(PelXercesMarkup& markup, bool isVersion11);

    template <std::size_t size>
    PelXercesCheckedMarkup& markup(const char16_t (&literal)[size]) {
        out.markup(literal);
        return *this;
    }

    /// All of these are NUL-terminated.
    PelXercesCheckedMarkup& name(const char16_t* name);
    PelXercesCheckedMarkup& text(const char16_t* value);
    PelXercesCheckedMarkup& attribute(const char16_t* value);
    PelXercesCheckedMarkup& cdata(const char16_t* data);
    PelXercesCheckedMarkup& comment(const char16_t* data);
    PelXercesCheckedMarkup& instruction(const char16_t* target, const char16_t* data);
    PelXercesCheckedMarkup& identifier(const char16_t* identifier); ///< with its quotes
    PelXercesCheckedMarkup& subset(const char16_t* subset);

    PelXercesCheckedMarkup& newline(std::size_t spaces = 0);

private:
    // The engine keeps one copy of each name, so a name is known by its address.
    struct KnownName {
        const char16_t* characters = nullptr;
        std::size_t length = 0;
    };

    std::size_t check(const char16_t* name) const;

    PelXercesMarkup& out;
    const PelXercesEscapes::Set& places;
    std::array<KnownName, 256> known{};
};
