// SPDX-License-Identifier: MIT
#include "core/PelFormatPattern.h"

#include <algorithm>
#include <climits>

PelFormatPattern::Piece PelFormatPattern::next() {
    Piece piece;
    const std::size_t begin = position;
    if (!at(u"%")) {
        position = std::min(text.find(u'%', begin), text.size());
        piece.text = text.substr(begin, position - begin);
        return piece;
    }
    ++position;
    if (at(u"%")) {
        piece.text = text.substr(position++, 1);
        return piece;
    }
    while (at(u"-+ #0"))
        piece.flags.push_back(static_cast<char>(text[position++]));
    bool isKnown = readCount(piece.width, piece.widthIsArgument);
    if (at(u".")) {
        ++position;
        isKnown = readCount(piece.precision, piece.precisionIsArgument) && isKnown;
    }
    readLength(piece);
    isKnown = isKnown && at(u"diuoxXcsfFeEgGaA");
    if (isKnown)
        piece.kind = text[position];
    piece.isUnknown = !isKnown;
    position = std::min(position + 1, text.size());
    piece.text = text.substr(begin, position - begin);
    return piece;
}

std::u16string PelFormatPattern::forOneValue(std::u16string_view pattern, std::u16string_view kinds,
                                             std::u16string_view modifier) {
    std::u16string result;
    int conversions = 0;
    for (PelFormatPattern reader(pattern); !reader.atEnd();) {
        const Piece piece = reader.next();
        if (piece.isUnknown || piece.widthIsArgument || piece.precisionIsArgument ||
            piece.width > maxCount || piece.precision > maxCount)
            return {};
        if (piece.kind == 0) {
            result.append(piece.text);
            if (piece.text == u"%")
                result.push_back(u'%');
            continue;
        }
        if (kinds.find(piece.kind) == kinds.npos)
            return {};
        ++conversions;
        result.append(piece.text, 0, piece.text.size() - 1 - piece.lengthText.size());
        result.append(modifier).push_back(piece.kind);
    }
    return conversions == 1 ? result : std::u16string();
}

bool PelFormatPattern::at(std::u16string_view choices) const {
    return position < text.size() && choices.find(text[position]) != choices.npos;
}

// False when the number is too large for an int.
bool PelFormatPattern::readCount(int& count, bool& isArgument) {
    if (at(u"*")) {
        ++position;
        isArgument = true;
        return true;
    }
    long long value = 0;
    while (at(u"0123456789"))
        value = std::min(value * 10 + (text[position++] - u'0'), 1LL + INT_MAX);
    if (value > INT_MAX)
        return false;
    count = static_cast<int>(value);
    return true;
}

void PelFormatPattern::readLength(Piece& piece) {
    static constexpr struct {
        std::u16string_view name;
        Length length;
    } modifiers[] = {{u"hh", Length::hh}, {u"h", Length::h}, {u"ll", Length::ll},
                     {u"l", Length::l},   {u"j", Length::j}, {u"z", Length::z},
                     {u"t", Length::t},   {u"L", Length::L}};
    for (const auto& modifier : modifiers)
        if (text.compare(position, modifier.name.size(), modifier.name) == 0) {
            piece.length = modifier.length;
            piece.lengthText = text.substr(position, modifier.name.size());
            position += modifier.name.size();
            return;
        }
}
