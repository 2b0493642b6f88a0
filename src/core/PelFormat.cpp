// SPDX-License-Identifier: MIT
#include "core/PelFormat.h"

#include "core/PelPlatform.h"

#include <qrndom/PelString.h>

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <type_traits>

namespace {

constexpr int maxCount = 100'000;

enum class Length { none, hh, h, l, ll, j, z, t, L };

// Plain text, or one conversion.
struct Piece {
    std::u16string_view text; // as it stands in the pattern; "%" for "%%"
    char16_t kind = 0;        // the conversion's letter; 0 for text
    bool isUnknown = false;   // text that looks like a conversion and is none
    std::string flags;
    bool widthIsArgument = false;
    int width = 0;
    bool precisionIsArgument = false;
    int precision = -1; // negative: none
    Length length = Length::none;
    std::u16string_view lengthText; // the length modifier as it stands in the pattern
};

// Reads a pattern piece by piece.
class Pattern {
public:
    explicit Pattern(std::u16string_view pattern) : text(pattern) {}

    bool atEnd() const { return position == text.size(); }

    Piece next() {
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

private:
    bool at(std::u16string_view choices) const {
        return position < text.size() && choices.find(text[position]) != choices.npos;
    }

    // False when the number is too large for an int.
    bool readCount(int& count, bool& isArgument) {
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

    void readLength(Piece& piece) {
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

    std::u16string_view text;
    std::size_t position = 0;
};

// Renders one pattern with its arguments.
class Rendering {
public:
    explicit Rendering(std::va_list arguments) { va_copy(list, arguments); }
    ~Rendering() { va_end(list); }
    Rendering(const Rendering&) = delete;
    Rendering& operator=(const Rendering&) = delete;

    std::u16string render(std::u16string_view pattern) {
        for (Pattern reader(pattern); !reader.atEnd();) {
            Piece piece = reader.next();
            if (piece.kind == 0)
                result.append(piece.text);
            else
                convert(piece);
        }
        return std::move(result);
    }

private:
    void convert(Piece& piece) {
        if (piece.widthIsArgument)
            piece.width = va_arg(list, int);
        if (piece.precisionIsArgument)
            piece.precision = va_arg(list, int);
        switch (piece.kind) {
        case u's':
            pad(piece, stringArgument(piece.precision));
            break;
        case u'c':
            pad(piece, std::u16string(1, static_cast<char16_t>(va_arg(list, int))));
            break;
        case u'd':
        case u'i':
            print(piece, "j", integerArgument<std::make_signed_t>(piece.length));
            break;
        case u'u':
        case u'o':
        case u'x':
        case u'X':
            print(piece, "j", integerArgument<std::make_unsigned_t>(piece.length));
            break;
        default:
            if (piece.length == Length::L)
                print(piece, "L", va_arg(list, long double));
            else
                print(piece, "", va_arg(list, double));
        }
    }

    template <template <class> class Sign>
    Sign<std::intmax_t> integerArgument(Length length) {
        switch (length) {
        case Length::hh:
            return static_cast<Sign<char>>(va_arg(list, int));
        case Length::h:
            return static_cast<Sign<short>>(va_arg(list, int));
        case Length::none:
            return va_arg(list, Sign<int>);
        case Length::l:
            return va_arg(list, Sign<long>);
        case Length::z:
        case Length::t:
            return va_arg(list, Sign<std::ptrdiff_t>);
        case Length::j:
            return va_arg(list, Sign<std::intmax_t>);
        default:
            return va_arg(list, Sign<long long>);
        }
    }

    // Callers pass either 16-bit type, so the units are read as bytes; with a precision, no further
    // than it allows.
    std::u16string stringArgument(int precision) {
        const void* const argument = va_arg(list, const void*);
        if (argument == nullptr)
            return std::u16string(u"(null)").substr(0, static_cast<std::size_t>(precision));
        std::u16string text;
        const auto* bytes = static_cast<const unsigned char*>(argument);
        for (; precision < 0 || text.size() < static_cast<std::size_t>(precision); bytes += 2) {
            char16_t unit = 0;
            std::memcpy(&unit, bytes, sizeof unit);
            if (unit == 0)
                break;
            text.push_back(unit);
        }
        return text;
    }

    void pad(const Piece& piece, const std::u16string& text) {
        const bool isLeft = piece.width < 0 || piece.flags.find('-') != std::string::npos;
        const std::size_t width =
            static_cast<std::size_t>(std::abs(static_cast<long>(piece.width)));
        const std::size_t padding = width > text.size() ? width - text.size() : 0;
        result.append(isLeft ? 0 : padding, u' ').append(text).append(isLeft ? padding : 0, u' ');
    }

    // Numbers are the C library's: the same conversion with the widest type of its kind.
    template <class Number>
    void print(const Piece& piece, const char* modifier, Number number) {
        const std::string conversion =
            "%" + piece.flags + "*.*" + modifier + static_cast<char>(piece.kind);
        const PelPlatform::ClassicNumbers classic;
        std::string printed(64, '\0');
        int length = std::snprintf(printed.data(), printed.size(), conversion.c_str(), piece.width,
                                   piece.precision, number);
        if (length < 0) { // longer than an int can say
            result.append(piece.text);
            return;
        }
        if (static_cast<std::size_t>(length) >= printed.size()) {
            printed.resize(static_cast<std::size_t>(length) + 1);
            length = std::snprintf(printed.data(), printed.size(), conversion.c_str(), piece.width,
                                   piece.precision, number);
        }
        result.append(printed.begin(), printed.begin() + std::max(length, 0));
    }

    std::va_list list;
    std::u16string result;
};

} // namespace

std::u16string PelFormat::forOneValue(std::u16string_view pattern, std::u16string_view kinds,
                                      std::u16string_view modifier) {
    std::u16string result;
    int conversions = 0;
    for (Pattern reader(pattern); !reader.atEnd();) {
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

PelString& PelString::format(const char16_t* pattern, ...) {
    const PelString copy(pattern); // the pattern may be this string's own text
    std::va_list arguments;
    va_start(arguments, pattern);
    replace(Rendering(arguments).render(copy.view()));
    va_end(arguments);
    return *this;
}

PelString& PelString::format(const unsigned short* pattern, ...) {
    const PelString copy(pattern);
    std::va_list arguments;
    va_start(arguments, pattern);
    replace(Rendering(arguments).render(copy.view()));
    va_end(arguments);
    return *this;
}
