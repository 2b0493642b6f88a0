// SPDX-License-Identifier: MIT
// What users may write and what the compiler must refuse, for overloads are easily made ambiguous.
#include "support.h"

#include <string_view>

using namespace std::literals;

// Only named, in calls that are not made.
extern PelDOMElement element;
extern const PelDOMElement constElement;
extern PelDOMNode node;
extern const PelDOMNode constNode;
extern const PelString string;

#define CALL(...) [](auto&& a) -> decltype(void((__VA_ARGS__))) {}

template <class... Types, class Call>
constexpr bool takesAll(Call) {
    return (std::is_invocable_v<Call, Types> && ...);
}

template <class... Types, class Call>
constexpr bool takesNone(Call) {
    return (!std::is_invocable_v<Call, Types> && ...);
}

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

static_assert(
    convert<const char*, char[3], const char16_t*, const unsigned short*, std::nullptr_t,
            std::string, const std::string&, std::string&, std::u16string, const std::u16string&>);
static_assert(construct<std::string_view, std::u16string_view, std::u16string&&, TwoTexts>);
static_assert(!convert<std::string_view> && !convert<std::u16string_view> && !convert<TwoTexts>);
static_assert(takesNone<int, char, bool, double, std::wstring, const wchar_t*, const void*,
                        std::vector<char>>(CALL(PelString(a))));
static_assert(std::is_nothrow_move_constructible_v<PelString> &&
              std::is_nothrow_move_assignable_v<PelString>);

constexpr auto compareString = CALL(a == string, string == a, a != string, string != a);
static_assert(
    takesAll<const char (&)[3], const char*, char*, const char16_t*, const unsigned short*,
             std::nullptr_t, std::string, std::u16string, PelString>(compareString));
static_assert(takesNone<int, char, void*, std::wstring>(compareString));

// A value is written as what it is: no pointer is a truth value, and no character a number.
constexpr auto setValue = CALL(element.setAttribute("a", a));
static_assert(takesAll<bool, signed char, unsigned char, short, unsigned short, int, unsigned, long,
                       unsigned long, long long, unsigned long long, float, double, long double,
                       std::size_t, std::ptrdiff_t>(setValue));
static_assert(takesAll<const char (&)[3], const char*, const char16_t*, const unsigned short*,
                       std::nullptr_t, std::string, std::u16string, PelString>(setValue));
static_assert(takesNone<char, wchar_t, char16_t, char32_t, void*, const int*, PelDOMNode,
                        std::string_view, std::vector<bool>::reference>(setValue));

template <class Result, class... Fallbacks>
constexpr bool
    give = (std::is_same_v<decltype(constElement.getAttributeOr("a", std::declval<Fallbacks>())),
                           Result> &&
            ...);
static_assert(give<PelString, const char*, const char (&)[3], const char16_t*, std::string,
                   std::u16string, PelString>);
static_assert(give<bool, bool, const bool&> && give<int, int, int&> && give<float, float> &&
              give<double, double> && give<std::size_t, std::size_t> && give<long, const long&>);

constexpr auto readValue =
    CALL(constElement.getAttribute("a", a), constElement.getChildTextValue(a));
static_assert(takesAll<PelString&, long&, double&>(readValue));
static_assert(takesNone<int&, bool&, const long&, std::string&>(readValue));

// Handles can be tested and compared, and become no number by that.
static_assert(takesAll<PelDOMNode, PelDOMDocument, PelDOMElement, PelDOMText, PelDOMNodeList,
                       const PelDOMNode&>(CALL(!a, a ? 1 : 0, a && true)));
static_assert(takesNone<PelDOMNode, PelDOMDocument, PelDOMElement>(
    CALL(a + 1, element.getAttributeValueAt(a))));
constexpr auto compareNode = CALL(constNode == a, a == constNode, constNode != a, a != element);
static_assert(takesAll<PelDOMNode, const PelDOMNode&, PelDOMElement, PelDOMDocument, PelDOMText>(
    compareNode));
static_assert(takesNone<int, bool, std::nullptr_t, PelString, const char*>(compareNode));
static_assert(takesAll<PelDOMNode&, PelDOMElement&, PelDOMText&, PelDOMDocument&>(
    CALL(a = node, a = constNode, a = PelDOMNode())));
static_assert(!std::is_convertible_v<PelDOMNode, PelDOMElement> &&
              std::is_constructible_v<PelDOMElement, PelDOMNode>);

// Nodes come and go as temporaries; only what an older call changes has to have a name.
extern PelDOMDocument tree;
constexpr auto placeNode =
    CALL(node.appendChild(a), node.insertBefore(a, a), node.insertBefore(a, PelDOMNode()),
         node.replaceChild(a, a), node.removeChild(a), tree.importNode(a, true));
static_assert(takesAll<PelDOMNode, PelDOMNode&, const PelDOMNode&, PelDOMElement, PelDOMElement&,
                       const PelDOMText&, PelDOMDocument>(placeNode));
static_assert(takesNone<int, std::nullptr_t, PelString, const char*, PelDOMNodeList>(placeNode));
constexpr auto nameNode =
    CALL(tree.createElement(a), tree.createTextNode(a), tree.createComment(a),
         tree.createCDATASection(a), tree.createProcessingInstruction(a, a), element.setTagName(a),
         node.setNodeValue(a), node.setTextContent(a), constElement.getChildElement(a),
         constElement.getChildElements(a), constElement.getElementsByTagName(a),
         constElement.lookupNamespaceURI(a));
static_assert(takesAll<const char (&)[3], const char16_t*, std::string, const std::string&,
                       std::u16string, PelString>(nameNode));
static_assert(takesNone<int, bool, char, PelDOMNode, std::string_view>(nameNode));
constexpr auto fillHandle =
    CALL(constNode.getParentNode(a), constNode.getOwnerDocument(tree), constNode.getChildNodes());
static_assert(takesAll<PelDOMNode&, PelDOMElement&>(fillHandle) &&
              takesNone<const PelDOMNode&>(fillHandle));

template <class Handle, class Range>
constexpr bool gives = std::is_same_v<decltype(*std::declval<const Range&>().begin()), Handle>;
static_assert(gives<PelDOMNode, PelDOMNodeList> && gives<PelDOMElement, PelDOMElementRange>);
static_assert(gives<const PelDOMAttribute&, decltype(constElement.getAttributes())>);

TEST(Calls, TakeWhatConvertsToText) {
    EXPECT_EQ(PelString(TwoTexts()), "two");
}
