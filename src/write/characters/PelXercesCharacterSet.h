// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/util/TransService.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Which characters an encoding can hold, so that they come back when they are read.
///
/// The formatter asks its own converter that, unit by unit, which garbles pairs and shift states in
/// the encodings served by ICU. Here a second converter is asked, character by character.
class PelXercesCharacterSet {
public:
    /// Throws the engine's TranscodingException for an encoding that the engine does not know.
    explicit PelXercesCharacterSet(const std::u16string& encoding);

    bool holdsEverything() const { return isUniversal; }

    bool isUtf8() const;
    bool isUtf16() const;

    /// Whether readers tell from a declaration's first bytes how to read its encoding's name.
    bool isRecognised() const;

    /// Whether a unit that is no surrogate can be written and read.
    bool holds(char16_t unit) {
        return units[unit] != Answer::unknown ? units[unit] == Answer::yes : ask(unit);
    }

    /// Whether a surrogate pair can.
    bool holds(char16_t high, char16_t low);

    /// Whether a line feed is the one byte 0x0A.
    bool hasByteLineFeed() const;

private:
    bool ask(char16_t unit);
    bool comesBack(std::u16string_view character) const;

    enum class Answer : char { unknown, no, yes };

    std::unique_ptr<xercesc::XMLTranscoder> converter;
    bool isUniversal;
    std::vector<Answer> units;
    std::unordered_map<char32_t, bool> pairs;
};
