// SPDX-License-Identifier: MIT
// What users may write and what the compiler must refuse, for overloads are easily made ambiguous.
#include "support.h"

#include <string_view>

using namespace std::literals;

/// Whether a call compiles that a generic lambda makes of arguments of these types.
template <class... Arguments, class Call>
constexpr bool compiles(Call) {
    return std::is_invocable_v<Call, Arguments...>;
}
#define CALL(...) [](auto&&... a) -> decltype(void((__VA_ARGS__))) {}

/// Converts to two kinds of text, so that a second constructor could make it ambiguous.
struct TwoTexts {
    operator const char*() const { return "two"; }
    operator std::string() const { return "two"; }
    operator std::string_view() const { return "two"; }
};

template <class... Types>
constexpr bool convert = (std::is_convertible_v<Types, PelString> && ...);
template <class... Types>
constexpr bool construct = (std::is_constructible_v<PelString, Types> && ...);

static_assert(convert<const char*, char[3], const char16_t*, const unsigned short*, std::nullptr_t,
    std::string, const std::string&, std::string&, std::u16string, const std::u16string&>);
static_assert(construct<std::string_view, std::u16string_view, std::u16string&&, TwoTexts>);
static_assert(!convert<std::string_view, std::u16string_view, TwoTexts>);
static_assert(
    !construct<int, char, bool, double, std::wstring, const wchar_t*, const void*, std::vector<char>>);
static_assert(
    std::is_nothrow_move_constructible_v<PelString> && std::is_nothrow_move_assignable_v<PelString>);

constexpr auto compared = CALL(((a == PelString()), ...), ((PelString() != a), ...));
static_assert(compiles<const char (&)[3], const char*, char*, const char16_t*, const unsigned short*,
    std::nullptr_t, std::string, std::u16string, PelString>(compared));
static_assert(!compiles<int>(compared) && !compiles<char>(compared) && !compiles<void*>(compared));

TEST(Calls, TakeStandardStringsWhereTheyTakeStrings) {
    const std::string name = "a", value = "\xC3\xA9", empty;
    const std::u16string wide = u"w";
    PelDOMDocument document = services().createDocument(name);
    PelDOMElement root = document.getDocumentElement();
    PelDOMElement child = document.createElement(name + "b");
    PelDOMText text = document.createTextNode(wide);
    PelDOMNodeList list;
    PelDOMFiler filer(document);
    PelString joined = name + PelString("+") + value + u"+" + wide;
    joined = value;
    joined += name;
    EXPECT_EQ("ok ok ok ok ok ok invalid '\xC3\xA9' 1 '\xC3\xA9"
              "a' #9(#13 a a=\xC3\xA9(|w| ab b(|w|)))",
        answers({text.setValue(value), text.setValue(wide), root.setAttribute(name, value),
            root.appendChild(text), root.appendChild(child), filer.appendElement("b"s, wide),
            root.setAttribute(name, empty), root.getAttribute(name),
            root.getElementsByTagName(name + "b", list), joined, document}));
    EXPECT_EQ(joined == name || name == root.getTagName(), true);
    EXPECT_EQ(PelString(TwoTexts()), "two");
}
