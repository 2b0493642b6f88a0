// SPDX-License-Identifier: MIT
#pragma once

/// Follows the text of an internal subset and tells where character references are known: in the
/// values of entities and the defaults of attributes.
class PelXercesSubsetScan {
public:
    explicit PelXercesSubsetScan(const char16_t* subset) : at(subset) {}

    /// Goes on to `place`, which is never behind the last one.
    bool knowsReferencesAt(const char16_t* place);

private:
    void step();
    bool begins(const char16_t* word) const;

    const char16_t* at;
    const char16_t* end = nullptr; ///< of the comment or instruction that `at` is in
    char16_t quote = 0;            ///< of the literal that `at` is in
    bool isReference = false;      ///< within a literal, between `&` and `;`
    bool hasValues = false;        ///< the literals of this declaration are values
};
