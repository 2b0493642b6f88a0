// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/export.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

/// A string of UTF-16 code units: every name, value and text of the library.
///
/// Owns     its text; copies are independent.
/// Lives    as long as the caller likes; borrowed buffers live until the string next changes.
/// Threads  like a standard string: several readers at once, or one writer.
/// Errors   never refuses text: a null pointer is empty, ill-formed UTF-8 becomes U+FFFD.
/// Cost     a copy copies the text; getStringA and getStringWAsUnsignedShort build their form on
///          first use.
class QRNDOM_API PelString {
    // Literals and standard strings, and nothing that only converts to them.
    template <class Text>
    using IfText = std::enable_if_t<std::is_same_v<std::decay_t<Text>, char*> ||
                                        std::is_same_v<std::decay_t<Text>, const char*> ||
                                        std::is_same_v<std::decay_t<Text>, char16_t*> ||
                                        std::is_same_v<std::decay_t<Text>, const char16_t*> ||
#ifdef __cpp_char8_t
                                        std::is_same_v<std::decay_t<Text>, char8_t*> ||
                                        std::is_same_v<std::decay_t<Text>, const char8_t*> ||
                                        std::is_same_v<Text, std::u8string> ||
#endif
                                        std::is_same_v<Text, std::string> ||
                                        std::is_same_v<Text, std::u16string>,
                                    int>;

    template <class Unit>
    static std::basic_string_view<Unit> viewOf(const Unit* units) {
        return units != nullptr ? units : std::basic_string_view<Unit>();
    }
    template <class Unit>
    static std::basic_string_view<Unit> viewOf(const std::basic_string<Unit>& string) {
        return string;
    }

public:
    PelString() noexcept = default; ///< The empty string.
    PelString(std::nullptr_t) noexcept {
    }                                      ///< The empty string.
    PelString(const char16_t* text);       ///< From NUL-terminated UTF-16.
    PelString(const unsigned short* text); ///< The same from the other 16-bit type.

    /// From NUL-terminated UTF-8; each ill-formed sequence becomes U+FFFD.
    PelString(const char* text);

    /// From UTF-8 of a given length in the same way, so that a std::string can be passed wherever
    /// the library takes a PelString.
    template <class Allocator>
    PelString(const std::basic_string<char, std::char_traits<char>, Allocator>& utf8)
        : PelString(decoded(utf8)) {
    }

    /// The same from a view; explicit.
    template <class Traits>
    explicit PelString(std::basic_string_view<char, Traits> utf8)
        : PelString(decoded({utf8.data(), utf8.size()})) {
    }

    /// From UTF-16 of a given length, which may hold U+0000. As a file name or in the tree, such a
    /// string ends at its first U+0000, or is refused by operations that check the characters.
    explicit PelString(std::u16string_view text);

    /// The same from a string.
    template <class Allocator>
    PelString(const std::basic_string<char16_t, std::char_traits<char16_t>, Allocator>& utf16)
        : PelString(std::u16string_view(utf16)) {
    }

    explicit PelString(std::u16string&& text) noexcept; ///< The same without copying.

#ifdef __cpp_char8_t
    /// From NUL-terminated UTF-8 of the type that says so: u8"...", in C++20 and later.
    PelString(const char8_t* utf8) : PelString(reinterpret_cast<const char*>(utf8)) {
    }

    /// The same of a given length.
    template <class Allocator>
    PelString(const std::basic_string<char8_t, std::char_traits<char8_t>, Allocator>& utf8)
        : PelString(std::u8string_view(utf8)) {
    }

    /// The same from a view; explicit.
    template <class Traits>
    explicit PelString(std::basic_string_view<char8_t, Traits> utf8)
        : PelString(decoded(bytesOf({utf8.data(), utf8.size()}))) {
    }
#endif

    PelString(const PelString& other);     ///< Copies the text.
    PelString(PelString&& other) noexcept; ///< Leaves `other` empty.
    ~PelString();                          ///< Ends the life of the borrowed buffers too.

    /// Each assignment takes what the constructor from the same type takes, the string's own
    /// buffers included.
    PelString& operator=(const PelString& other);
    PelString& operator=(PelString&& other) noexcept; ///< Leaves `other` empty.
    PelString& operator=(std::nullptr_t) noexcept;    ///< Empties the string.
    PelString& operator=(const char16_t* text);       ///< From UTF-16.
    PelString& operator=(const unsigned short* text); ///< From UTF-16.
    PelString& operator=(const char* text);           ///< From UTF-8.
#ifdef __cpp_char8_t
    /// From UTF-8.
    PelString& operator=(const char8_t* utf8) {
        return *this = reinterpret_cast<const char*>(utf8);
    }
#endif

    /// Text in ISO-8859-1: each byte is the character of that number.
    static PelString fromLatin1(const char* bytes, std::size_t size);

    int isEmpty() const noexcept {
        return text.empty() ? 1 : 0;
    } ///< 1 or 0.

    /// The number of UTF-16 code units.
    long length() const noexcept {
        return static_cast<long>(text.size());
    }

    /// The text, followed by a NUL that the view does not count. Borrowed, as the two below.
    std::u16string_view view() const noexcept {
        return text;
    }

    const unsigned short* getStringWAsUnsignedShort() const; ///< NUL-terminated code units.

    /// The text in ISO-8859-1, NUL-terminated, one byte for each code unit. U+001A, which XML
    /// forbids, stands for each unit that ISO-8859-1 does not hold.
    const char* getStringA() const;

    /// The text in UTF-8; U+FFFD stands for each lone surrogate.
    std::string toUtf8() const;

    /// The position of the first `part` that begins at `from` or later, counted in code units; -1
    /// when there is none, or `from` lies outside the text.
    long find(const PelString& part, long from = 0) const noexcept;

    /// The `length` code units from `position` on, fewer where the text ends; empty for a position
    /// outside the text.
    PelString substr(long position, long length) const;
    bool startsWith(const PelString& part) const noexcept; ///< Whether it begins with `part`.

    /// Reads the whole text, apart from white space around it, as a decimal number. False, with
    /// `value` unchanged, when it is none or one that no `long` holds.
    bool toLong(long& value) const;

    /// Reads the whole text as a real number in the same way, with a full stop as its decimal
    /// point, whatever the locale: "2.5", "1e3", "0x1p3", "INF" and "NaN" are numbers. False, with
    /// `value` unchanged, when it is none or one outside the range of `double`.
    bool toDouble(double& value) const;

    /// Replaces the text by what printf would print for `pattern`, whatever the process's locale,
    /// and gives this string.
    ///
    /// Takes flags, width and precision (`*` included), length modifiers, `%%` and the conversions
    /// `%d %i %u %o %x %X %c %s %f %F %e %E %g %G %a %A`. `%s` takes NUL-terminated UTF-16 text,
    /// its width and precision counted in code units, and prints "(null)" for null; `%c` prints one
    /// code unit. Any other conversion, `%n` included, is copied as it stands and takes no
    /// argument. The arguments must fit the pattern, as for printf: never use text from outside as
    /// a pattern.
    PelString& format(const char16_t* pattern, ...);
    PelString& format(const unsigned short* pattern, ...); ///< From the other 16-bit type.

    PelString& operator+=(const PelString& other); ///< Appends `other`.

    /// The two texts one after the other.
    friend QRNDOM_API PelString operator+(const PelString& left, const PelString& right);
    /// Whether both hold the same code units.
    friend QRNDOM_API bool operator==(const PelString& left, const PelString& right) noexcept;
    /// Whether they do not.
    friend QRNDOM_API bool operator!=(const PelString& left, const PelString& right) noexcept;

    /// Compares with a literal, which is UTF-8 or UTF-16, or with a standard string, without making
    /// a PelString of it.
    template <class Text, IfText<Text> = 0>
    friend bool operator==(const PelString& left, const Text& right) noexcept {
        return left.holds(viewOf(right));
    }
    /// The same the other way round.
    template <class Text, IfText<Text> = 0>
    friend bool operator==(const Text& left, const PelString& right) noexcept {
        return right.holds(viewOf(left));
    }
    /// Whether they differ.
    template <class Text, IfText<Text> = 0>
    friend bool operator!=(const PelString& left, const Text& right) noexcept {
        return !left.holds(viewOf(right));
    }
    /// The same the other way round.
    template <class Text, IfText<Text> = 0>
    friend bool operator!=(const Text& left, const PelString& right) noexcept {
        return !right.holds(viewOf(left));
    }

    /// Compares code unit by code unit.
    friend QRNDOM_API bool operator<(const PelString& left, const PelString& right) noexcept;
    /// Writes the text in UTF-8.
    friend QRNDOM_API std::ostream& operator<<(std::ostream& stream, const PelString& string);

private:
    static std::u16string decoded(std::string_view utf8);

    bool holds(std::string_view utf8) const noexcept;
#ifdef __cpp_char8_t
    static std::string_view bytesOf(std::u8string_view utf8) noexcept {
        return {reinterpret_cast<const char*>(utf8.data()), utf8.size()};
    }
    bool holds(std::u8string_view utf8) const noexcept {
        return holds(bytesOf(utf8));
    }
#endif
    bool holds(std::u16string_view other) const noexcept {
        return text == other;
    }

    void replace(std::u16string&& changed) noexcept;
    void dropForms() noexcept;

    std::u16string text;
    mutable std::atomic<unsigned short*> wideForm{nullptr};
    mutable std::atomic<char*> narrowForm{nullptr};
};

/// Lets a PelString be the key of an unordered container.
template <>
struct std::hash<PelString> {
    /// The hash of the code units.
    std::size_t operator()(const PelString& string) const noexcept {
        return std::hash<std::u16string_view>()(string.view());
    }
};
