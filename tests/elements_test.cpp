// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/tree/PelXercesRules.h"

#include <xercesc/dom/impl/DOMCasts.hpp>
#include <xercesc/dom/impl/DOMNodeImpl.hpp>

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>

using namespace std::literals;

using xercesc::DOMException;

TEST(Attributes, AreReadByNameAndByPosition) {
    const PelDOMElement root =
        rootOf("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r d CDATA 'default' z CDATA "
               "#IMPLIED p:a CDATA #IMPLIED>]><r z='1' p:a='x &lt;'/>");
    EXPECT_EQ(show(root), "r d=default p:a=x < z=1");
    for (const long outside : {-1L, 3L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(root.getAttributeNameAt(outside) + root.getAttributeValueAt(outside), "")
            << outside;
    PelString value("old");
    EXPECT_EQ(answers({root.getAttribute("p:a"), root.getAttribute("absent", value), value}),
              "'x <' ok ''");
}

TEST(Attributes, AreReplacedCheckedAndEmptyIfAskedFor) {
    PelDOMElement root = rootOf("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r a CDATA #IMPLIED d CDATA "
                                "'' e CDATA 'x'>]><r a='1'/>");
    expectEach("ok", {root.putAttribute("a", ""), root.putAttribute("d", "v"),
                      root.putAttribute("e", ""), PelDOM::checkString(" ", 1)});
    for (const std::u16string& value : {u"\u0001"s, u"a\uFFFE"s, u"\xDC00"s, u"a\0"s})
        expectEach("invalid", {root.putAttribute("a", value), root.putAttribute("new", value)});
    expectEach("invalid", {root.setAttribute("1", true), PelDOM::checkString("", 1)});
    expectEach("'f'", {root.getAttributeOr("c", "f"), PelDOMElement().getAttributeOr("a", "f")});
    EXPECT_EQ(answers({root, root.hasAttribute("A"), root.getAttributeOr("a", "f")}),
              "r a= d=v e= 0 ''");
}

/// Sets a value, reads it back in every way, and gives the text.
template <class Value>
std::string written(Value value) {
    static PelDOMElement root = rootOf("<r/>");
    EXPECT_EQ(root.setAttribute("n", value), PelDOM::SUCCESS);
    const std::string text = root.getAttribute("n").toUtf8();
    const Value read = root.getAttributeOr("n", Value(77));
    // What x87 has of a long double is less than its size.
    constexpr std::size_t significant =
        std::numeric_limits<Value>::digits == 64 && sizeof value > 8 ? 10 : sizeof value;
    EXPECT_EQ(std::memcmp(&read, &value, significant), 0) << text;
    double real = 0;
    if (std::is_floating_point_v<Value> && sizeof value <= sizeof real) {
        EXPECT_EQ(root.getAttribute("n", real), PelDOM::SUCCESS);
        EXPECT_TRUE(real != real || static_cast<Value>(real) == value) << text;
    }
    return text;
}

template <class... Whole>
void expectLimits() {
    using std::to_string;
    const bool are[] = {(written(std::numeric_limits<Whole>::min()) ==
                             to_string(std::numeric_limits<Whole>::min()) &&
                         written(std::numeric_limits<Whole>::max()) ==
                             to_string(std::numeric_limits<Whole>::max()))...};
    EXPECT_EQ(std::count(std::begin(are), std::end(are), true), sizeof...(Whole));
}

TEST(Values, ReadBackAsTheyWereWritten) {
    expectLimits<signed char, unsigned char, short, unsigned short, int, unsigned, long,
                 unsigned long, long long>();
    EXPECT_EQ(
        answers({written(true), written(false), written(0), written(ULLONG_MAX), written(0.1L)}),
        "'true' 'false' '0' '18446744073709551615' '0.1'");
    for (const char* const text :
         {"0.1", "16777216", "1e-45", "-9223372036854775808", "9.223372e+18", "3.4028235e+38"})
        EXPECT_EQ(written(std::strtof(text, nullptr)), text);
    for (const char* const text :
         {"0.1", "0.3333333333333333", "-2.5", "0", "-0", "100000", "1000000000000000000",
          "-9.3e+18", "-9223372036854774784", "9223372036854775808", "1e+22", "1e-07", "5e-324",
          "1.7976931348623157e+308", "INF", "-INF", "NaN"})
        EXPECT_EQ(written(std::strtod(text, nullptr)), text);
    std::mt19937_64 random(1);
    for (int i = 0; i < 20'000; ++i) {
        const std::uint64_t bits = random();
        double real = 0;
        float narrow = 0;
        std::memcpy(&real, &bits, sizeof real);
        std::memcpy(&narrow, &bits, sizeof narrow);
        if (real == real)
            written(real);
        if (narrow == narrow)
            written(narrow);
    }
}

TEST(Values, AreTheFallbackUnlessWholeAndInRange) {
    PelDOMElement root = rootOf("<r/>"), null;
    const auto read = [&root](const PelString& text) {
        root.putAttribute("n", text);
        return answers({root.getAttributeOr("n", -9L), root.getAttributeOr("n", std::int8_t{-9}),
                        static_cast<long>(root.getAttributeOr("n", 9U)),
                        root.getAttributeOr("n", true), root.getAttributeOr("n", false),
                        root.getAttributeOr("n", -9.5) == -9.5 ? "-"s : "real"s});
    };
    const std::pair<const char*, std::string> cases[] = {
        {"", "-9 -9 9 1 0 '-'"},
        {" 1\n", "1 1 1 1 1 'real'"},
        {"0", "0 0 0 0 0 'real'"},
        {"128", "128 -9 128 1 0 'real'"},
        {"-128", "-128 -128 9 1 0 'real'"},
        {"-129", "-129 -9 9 1 0 'real'"},
        {"4294967296", (LONG_MAX > INT_MAX ? "4294967296"s : "-9"s) + " -9 9 1 0 'real'"},
        {"7x", "-9 -9 9 1 0 '-'"},
        {"7.0", "-9 -9 9 1 0 'real'"},
        {"true", "-9 -9 9 1 1 '-'"},
        {"false", "-9 -9 9 0 0 '-'"},
        {"True", "-9 -9 9 1 0 '-'"},
        {"9223372036854775808", "-9 -9 9 1 0 'real'"},
        {"1e999", "-9 -9 9 1 0 '-'"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(read(text), expected) << text;
    expectEach("5", {root.getAttributeOr("absent", 5), null.getAttributeOr("n", 5)});
    EXPECT_EQ(answers({null.getAttributeOr("n", true), null.setAttribute("n", 5)}), "1 null-node");
}

TEST(Attributes, OfTypeIdChangeAnyNumberOfTimes) {
    PelDOMElement root =
        rootOf("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r i ID #IMPLIED>]><r i='first'/>");
    const PelString ids[] = {"a", "b"};
    for (int i = 0; i < 800'000; ++i)
        root.setAttribute("i", ids[i % 2]);
    EXPECT_EQ(answers({root, root.removeAttribute("i"), root.setAttribute("i", "c"), root}),
              "r i=b ok ok r i=c");
}

TEST(TypedReads, FollowTheRulesOfFormattedInput) {
    PelDOMElement root = rootOf("<r/>");
    // "-" when a read is refused and the variable left alone
    const auto typed = [&root](const PelString& text, auto value) -> std::string {
        root.setAttribute("n", text);
        const PelDOM::Error code = root.getAttribute("n", value);
        if (code == PelDOM::INVALID_VALUE && value == -99)
            return "-";
        char digits[40] = {};
        std::to_chars(digits, digits + sizeof digits, value);
        std::replace(digits, digits + sizeof digits, '(', '\0'); // "-nan(ind)"
        return code == PelDOM::SUCCESS ? digits : "wrong code";
    };
    std::istringstream table(R"(
        42 42 42          -3 -3 -3         +8 8 8          4.9 4 4.9        12abc 12 12      abc - -
        --1 - -           + - -            . - -           .5 - 0.5         5. 5 5           1e3 1 1000
        1E-2x 1 0.01      1e 1 1           1e+ 1 1         1,5 1 1          0x1p3 0 8        0XA.8 0 10.5
        0x 0 0            0x.p1 0 0        0x1p 0 1        inf - inf        infx - inf       -INFINITY! - -inf
        infin - inf       na - -           nan(1 - nan     nan - nan        nanx - nan       -NAN(ab_1) - -nan
        1.5em 1 1.5       12EUR 12 12      3eV 3 3         100ergs 100 100  1_0 1 1          -0xg 0 -0
        1e999 1 inf       -1e-999 -1 -0      000000000000000000000000000012 12 12
        9223372036854775807 MAX 9223372036854775808   9223372036854775808 MAX 9223372036854775808
        -9223372036854775808 MIN -9223372036854775808 -99999999999999999999 MIN -1e+20)");
    for (std::string text, whole, real; table >> text >> whole >> real;) {
        if (whole == "MAX")
            whole = std::to_string(LONG_MAX);
        if (whole == "MIN")
            whole = std::to_string(LONG_MIN);
        EXPECT_EQ(typed(text.c_str(), -99L), whole) << text;
        EXPECT_EQ(typed(text.c_str(), -99.0), real) << text;
    }
    for (const long edge : {LONG_MIN, LONG_MIN + 1, LONG_MAX - 1, LONG_MAX})
        EXPECT_EQ(typed(std::to_string(edge), -99L), std::to_string(edge));
    for (const char16_t* text : {u"   ", u"- 1", u"\u00a05", u"\u0665"})
        EXPECT_EQ(typed(text, -99L) + typed(text, -99.0), "--") << PelString(text);
    EXPECT_EQ(typed(" \t\r\n\v\f7", -99L) + typed(" \t\r\n\v\f7", -99.0), "77");
}

TEST(ChildText, IsThatOfAnElementWithOneTextOnly) {
    const PelDOMElement root = rootOf(
        "<r><a> x &amp; y </a><b/><c>1<d/></c><e><![CDATA[1]]></e><f><!--1--></f><g><h/></g></r>");
    for (long i = 0; i < 6; ++i) {
        PelString value("kept");
        const PelDOM::Error code = PelDOMElement(childAt(root, i)).getChildTextValue(value);
        EXPECT_EQ(answers({code, value}), i == 0 ? "ok ' x & y '" : "invalid 'kept'") << i;
    }
    long whole = 7;
    double real = 7.5;
    const PelDOMElement number = rootOf("<a> 2.5x</a>"), word = rootOf("<a>x</a>"),
                        mixed = rootOf("<a>1<b/></a>");
    for (const PelDOMElement& refused : {word, mixed, PelDOMElement()})
        expectEach("invalid", {refused.getChildTextValue(whole), refused.getChildTextValue(real)});
    EXPECT_TRUE(whole == 7 && real == 7.5);
    expectEach("ok", {number.getChildTextValue(whole), number.getChildTextValue(real)});
    EXPECT_TRUE(whole == 2 && real == 2.5);
}

TEST(Texts, KeepWhatIsSet) {
    PelDOMDocument document = parse("<r>old</r>");
    PelDOMText text(childAt(rootOf(document), 0));
    const PelDOMText other = text;
    EXPECT_EQ(answers({text.setValue(""), other, text.setValue(u" \r\n<\U0001F600 "), other}),
              "invalid |old| ok | \r\n<\xF0\x9F\x98\x80 |");
    EXPECT_EQ(show(document.createTextNode("")), "||");
    castToNodeImpl(PelXercesDOMNode::of(*text.getNodeImp()).getNode())->isReadOnly(true);
    EXPECT_THROW(text.setValue("v"), DOMException);
    EXPECT_EQ(text.getValue(), u" \r\n<\U0001F600 ");
}

TEST(Rules, TellWhatXmlAllows) {
    // 1 or 0: as XML 1.0 and XML 1.1 name, text, CDATA section, comment, target and data of an
    // instruction
    const std::pair<std::string, std::vector<std::u16string_view>> cases[] = {
        {"1111111", {u"a", u"a:b.c-1", u"\u00e9\u4e2d", u"xmlx", u"a\u0370"}},
        {"0111101", {u"a\U00010000"}},
        {"0011101",
         {u"", u"1a", u"a b", u"]] >", u"-a", u"? >", u"\t\n\r <&\u007f\uE000\uFFFD", u"\u2190",
          u"\U0010FFFF"}},
        {"1111101", {u"xml", u"xMl"}},
        {"0010101", {u"]]>"}},
        {"1111011", {u"a--b", u"a-"}},
        {"0011100", {u"?>"}}};
    const PelDOMDocument older = parse("<r/>"), newer = parse("<?xml version='1.1'?><r/>");
    namespace Rules = PelXercesRules;
    const auto allowed = [in10 = &engineOf(older),
                          in11 = &engineOf(newer)](std::u16string_view text) {
        std::string answers;
        for (const bool is :
             {Rules::isName(text, *in10), Rules::isName(text, *in11), Rules::isText(text, *in10),
              Rules::isCDATA(text), Rules::isComment(text), Rules::isInstructionTarget(text, *in10),
              Rules::isInstruction(text)})
            answers += is ? '1' : '0';
        return answers;
    };
    for (const auto& [expected, texts] : cases)
        for (const std::u16string_view text : texts)
            EXPECT_EQ(allowed(text), expected) << PelString(text);
    for (const std::u16string& text :
         {u"a\0"s, u"\u0001"s, u"\u001f"s, u"a\uFFFE"s, u"\uFFFF"s, u"a\xD800"s,
          u"a\xDBFF"
          u"b"s,
          u"a\xDC00"s, u"a\xDFFF\xD800"s})
        EXPECT_EQ(allowed(text), "0000000") << PelString(text);
    EXPECT_EQ(allowed(std::u16string_view(u"a\U00010000", 2)), "0000000"); // ends in half a pair
}
