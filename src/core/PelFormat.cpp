// SPDX-License-Identifier: MIT
#include "core/PelFormatPattern.h"
#include "core/PelPlatform.h"

#include <qrndom/PelString.h>

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

using Length = PelFormatPattern::Length;
using Piece = PelFormatPattern::Piece;

/// Renders one pattern with its arguments.
class Rendering {
public:
    explicit Rendering(std::va_list arguments) { va_copy(list, arguments); }
    ~Rendering() { va_end(list); }
    Rendering(const Rendering&) = delete;
    Rendering& operator=(const Rendering&) = delete;

    std::u16string render(std::u16string_view pattern) {
        for (PelFormatPattern reader(pattern); !reader.atEnd();) {
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
            print(piece, "j", signedArgument(piece.length));
            break;
        case u'u':
        case u'o':
        case u'x':
        case u'X':
            print(piece, "j", unsignedArgument(piece.length));
            break;
        default:
            if (piece.length == Length::L)
                print(piece, "L", va_arg(list, long double));
            else
                print(piece, "", va_arg(list, double));
        }
    }

    std::intmax_t signedArgument(Length length) {
        switch (length) {
        case Length::hh:
            return static_cast<signed char>(va_arg(list, int));
        case Length::h:
            return static_cast<short>(va_arg(list, int));
        case Length::none:
            return va_arg(list, int);
        case Length::l:
            return va_arg(list, long);
        case Length::z:
        case Length::t:
            return va_arg(list, std::ptrdiff_t);
        case Length::j:
            return va_arg(list, std::intmax_t);
        default:
            return va_arg(list, long long);
        }
    }

    std::uintmax_t unsignedArgument(Length length) {
        switch (length) {
        case Length::hh:
            return static_cast<unsigned char>(va_arg(list, int));
        case Length::h:
            return static_cast<unsigned short>(va_arg(list, int));
        case Length::none:
            return va_arg(list, unsigned int);
        case Length::l:
            return va_arg(list, unsigned long);
        case Length::z:
        case Length::t:
            return va_arg(list, std::size_t);
        case Length::j:
            return va_arg(list, std::uintmax_t);
        default:
            return va_arg(list, unsigned long long);
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

std::u16string render(std::u16string_view pattern, std::va_list arguments) {
    return Rendering(arguments).render(pattern);
}

} // namespace

PelString& PelString::format(const char16_t* pattern, ...) {
    const PelString copy(pattern); // the pattern may be this string's own text
    std::va_list arguments;
    va_start(arguments, pattern);
    std::u16string rendered = render(copy.view(), arguments);
    va_end(arguments);
    replace(std::move(rendered));
    return *this;
}

PelString& PelString::format(const unsigned short* pattern, ...) {
    const PelString copy(pattern);
    std::va_list arguments;
    va_start(arguments, pattern);
    std::u16string rendered = render(copy.view(), arguments);
    va_end(arguments);
    replace(std::move(rendered));
    return *this;
}
