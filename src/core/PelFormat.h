// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Reads a printf-style pattern piece by piece.
class PelFormatPattern {
public:
    enum class Length { none, hh, h, l, ll, j, z, t, L };

    /// Plain text, or one conversion.
    struct Piece {
        std::u16string_view text; ///< As it stands in the pattern; "%" for "%%".
        char16_t kind = 0;        ///< The conversion's letter; 0 for text.
        bool isUnknown = false;   ///< Text that looks like a conversion and is none.
        std::string flags;
        bool widthIsArgument = false;
        int width = 0;
        bool precisionIsArgument = false;
        int precision = -1; ///< Negative: none.
        Length length = Length::none;
        std::u16string_view lengthText; ///< The length modifier as it stands in the pattern.
    };

    static constexpr int maxCount = 100'000;

    explicit PelFormatPattern(std::u16string_view pattern) : text(pattern) {}

    bool atEnd() const { return position == text.size(); }

    Piece next();

    /// The pattern with `modifier` as its one conversion's length modifier; empty unless the
    /// pattern holds exactly one conversion, which is one of `kinds`, takes no other argument and
    /// has no width or precision beyond `maxCount`.
    static std::u16string forOneValue(std::u16string_view pattern, std::u16string_view kinds,
                                      std::u16string_view modifier);

private:
    bool at(std::u16string_view choices) const;
    bool readCount(int& count, bool& isArgument);
    void readLength(Piece& piece);

    std::u16string_view text;
    std::size_t position = 0;
};
