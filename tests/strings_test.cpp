// SPDX-License-Identifier: MIT
#include "core/PelNumberText.h"
#include "core/PelTextConversion.h"
#include "support.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <limits>
#include <unordered_set>

TEST(Strings, ComeFromEveryKindOfText) {
    const unsigned short units[] = {u'a', 0xD83D, 0xDE00, 0};
    PelString assigned("old");
    const std::string utf8 = "a\xF0\x9F\x98\x80";
    const std::u16string utf16 = u"a\U0001F600";
    for (const PelString& made : {PelString(units), PelString("a\xF0\x9F\x98\x80"), PelString(utf8),
                                  PelString(std::string_view(utf8)), PelString(utf16),
                                  assigned = utf8, assigned = utf16, assigned = units,
                                  assigned = "a\xF0\x9F\x98\x80", assigned = u"a\U0001F600"})
        EXPECT_EQ(made.view(), u"a\U0001F600");
    EXPECT_EQ(answers({assigned.length(), assigned.isEmpty()}), "3 0");
    expectEach("''", {PelString(static_cast<const char*>(nullptr)),
                      PelString(static_cast<const char16_t*>(nullptr)),
                      assigned = static_cast<const unsigned short*>(nullptr)});
    EXPECT_EQ(PelString(std::string("a\0b", 3)).view(), std::u16string_view(u"a\0b", 3));
    EXPECT_EQ(PelString::fromLatin1("a\0\xE9\xFF", 4).view(),
              std::u16string_view(u"a\0\u00e9\u00ff", 4));
    EXPECT_EQ(PelString::fromLatin1(nullptr, 0), "");
}

TEST(Strings, ComeFromTextThatSaysItIsUtf8) {
    const char8_t* const literal = u8"\u00e9\U0001F600";
    const std::u8string text = literal, longer(u8"\u00e9\0", 3);
    PelString assigned("old"), copied;
    for (const PelString& made :
         {PelString(literal), PelString(text), PelString(std::u8string_view(text)),
          assigned = literal, copied = text})
        EXPECT_EQ(made.view(), u"\u00e9\U0001F600");
    EXPECT_EQ(PelString(longer).view(), std::u16string_view(u"\u00e9\0", 2));
    EXPECT_EQ(PelString(std::u8string_view(text).substr(0, 2)), u8"\u00e9");
    EXPECT_TRUE(assigned == text && u8"\u00e9" != assigned);
    EXPECT_FALSE(literal != assigned || assigned == longer);
    expectEach("''", {PelString(static_cast<const char8_t*>(nullptr)),
                      assigned = static_cast<const char8_t*>(nullptr)});
}

TEST(Strings, AreComparedWithTextAsItIs) {
    std::vector<std::string> parts{std::string(1, '\0'), std::string(126, 'x')};
    for (const char* const part : {"a", "z", "\xC3\xA9", "\xF0\x9F\x98\x80", "\xC3", "\x80\x80",
                                   "\xED\xA0\x80", "\xEF\xBF\xBD"})
        parts.emplace_back(part);
    std::vector<std::string> texts{""};
    for (std::size_t i = 0; i < 1000; ++i)
        texts.push_back(parts[i % 10] + parts[i / 10 % 10] + parts[i / 100]);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const PelString string(texts[i]);
        for (const std::string& other :
             {texts[i], texts[i] + "a", texts[(i * 7 + 1) % texts.size()]}) {
            const bool isSame = PelTextConversion::fromUtf8(other) == string.view();
            EXPECT_EQ(answers({string == other, other == string, string != other, other != string}),
                      answers({isSame, isSame, !isSame, !isSame}))
                << texts[i] << " " << other;
        }
    }
    const char* const null = nullptr;
    const PelString empty, e(u"\u00e9");
    EXPECT_TRUE(empty == null && e == u"\u00e9" && std::u16string(u"\u00e9") == e);
    EXPECT_FALSE(null != empty || e == null || e == u"e" || PelString(u"\u0161") == "a");
}

TEST(Strings, AreSearchedAndCut) {
    const std::u16string units = u"abcabc";
    const PelString text(units);
    for (const long from : {LONG_MIN, -1L, 0L, 1L, 3L, 4L, 6L, 7L, LONG_MAX}) {
        const bool isWithin = from >= 0 && from <= 6;
        const auto place = static_cast<std::size_t>(isWithin ? from : 0);
        for (const char16_t* const part : {u"", u"a", u"ca", u"abc", u"abd", u"abcabca"}) {
            const std::size_t found = isWithin ? units.find(part, place) : units.npos;
            EXPECT_EQ(text.find(part, from), static_cast<long>(found)) << from << PelString(part);
            EXPECT_EQ(text.startsWith(part), units.find(part) == 0) << PelString(part);
        }
        for (const long count : {LONG_MIN, -1L, 0L, 1L, 6L, LONG_MAX})
            EXPECT_EQ(text.substr(from, count).view(),
                      isWithin && count > 0 ? units.substr(place, static_cast<std::size_t>(count))
                                            : u"")
                << from << " " << count;
    }
    EXPECT_TRUE(PelString().startsWith("") && text.find(std::string("ca")) == 2);
}

TEST(Strings, AreReadAsNumbersWhole) {
    // "-" when the text is refused and the variable left alone
    const auto read = [](const PelString& text) {
        long whole = -99;
        double real = -99;
        const bool isWhole = text.toLong(whole), isReal = text.toDouble(real);
        EXPECT_TRUE((isWhole || whole == -99) && (isReal || real == -99)) << text;
        char digits[40] = {};
        std::to_chars(digits, digits + sizeof digits, real);
        return (isWhole ? std::to_string(whole) : "-") + " " + (isReal ? digits : "-");
    };
    std::istringstream table(
        R"(42 42 42  -3 -3 -3  +8 8 8  -0 0 -0  007 7 7  4.9 - 4.9  12abc - -  abc - -
        --1 - -  +-1 - -  -+1 - -  ++1 - -  + - -  . - -  .5 - 0.5  5. - 5  1e3 - 1000  1e - -  1e+ - -  1,5 - -
        0x1p3 - 8  -0XA.8 - -10.5  0x - -  0x-1 - -  0x+1 - -  0xinf - -  0xnan - -  0x1p - -  0x.8 - 0.5  x1 - -
        inf - inf  -INF - -inf  Infinity - inf  infin - -  NaN - nan  1e999 - -  -1e999 - -
        9223372036854775808 - 9223372036854775808  -9223372036854775809 - -9223372036854775808)");
    for (std::string text, whole, real; table >> text >> whole >> real;)
        EXPECT_EQ(read(text), whole + " " + real) << text;
    for (const char16_t* text : {u"", u"  ", u"1 2", u"- 1", u"\u00a05", u"\u0665", u"1\u0130"})
        EXPECT_EQ(read(text), "- -") << PelString(text);
    for (std::string edge : {std::to_string(LONG_MIN), std::to_string(LONG_MAX)}) {
        EXPECT_EQ(read(edge).substr(0, edge.size() + 1), edge + " ");
        ++edge.back(); // one beyond
        EXPECT_EQ(read(edge).substr(0, 2), "- ");
    }
    EXPECT_EQ(read(" \t\r\n-7 \t\r\n"), "-7 -7");
    EXPECT_EQ(read(std::string("7\0", 2)), "- -");
}

#ifdef __cpp_lib_to_chars
// What stands in for the standard library's reals where it has none.
TEST(RealText, IsAsTheStandardLibrarys) {
    const auto agree = [](const std::string& text, std::chars_format format, auto number) {
        auto other = number;
        const char* const end = text.data() + text.size();
        const auto wanted = std::from_chars(text.data(), end, number, format);
        const bool isRead = PelNumberText::readReal(text, other, format);
        EXPECT_EQ(isRead, wanted.ec == std::errc() && wanted.ptr == end) << text;
        EXPECT_TRUE(!isRead || other == number || (other != other && number != number)) << text;
    };
    for (const char* const text :
         {"0", "1.5", ".5", "5.", "1e5", "1e400", "1e-400", "4e-324", "1e39", "1e-46",   "1e",
          "x", "",    ".",  "+1", "\v1", "1 ",    "1,5",    "inf",    "nan",  "16777217"}) {
        agree(text, std::chars_format::general, 9.0F);
        agree(text, std::chars_format::general, 9.0);
    }
    for (const char* const text : {"1.p", "A.8p1", ".8", "1p", "p", "1p5000", "1p-5000"})
        agree(text, std::chars_format::hex, 9.0);
    agree("1e4932", std::chars_format::general, 9.0L);
    for (const long double number : {0.0L, 1.0L / 3, 0.1L, -1e30L, 1e-5L, 1234567.5L, 0x1p64L,
                                     0x1p-16445L, std::numeric_limits<long double>::max()})
        for (const bool isWhole :
             {false, std::trunc(number) == number && std::abs(number) < 0x1p63L}) {
            char text[64] = {};
            isWhole ? std::to_chars(text, std::end(text), number, std::chars_format::fixed)
                    : std::to_chars(text, std::end(text), number);
            EXPECT_EQ(PelNumberText::writeReal(number, isWhole), text);
        }
}
#endif

TEST(Strings, ReplaceIllFormedTextAndKeepTheRest) {
    EXPECT_EQ(PelString("a\xC3(b\xE2\x82z\xFF").view(), u"a\uFFFD(b\uFFFDz\uFFFD");
    EXPECT_EQ(PelString("\xED\xA0\x80").length(), 3); // a surrogate in UTF-8 is three bad bytes
    EXPECT_EQ(testing::PrintToString(PelString(u"\u00e9\u4e2d\xD800z")),
              "\xC3\xA9\xE4\xB8\xAD\xEF\xBF\xBDz");
}

TEST(Strings, LendBuffersInBothOldForms) {
    PelString text(u"\u00e9\u0416z\xD83D\xDE00");
    EXPECT_EQ(PelString(text.getStringWAsUnsignedShort()).view(), text.view());
    EXPECT_EQ(std::string(text.getStringA()), "\xE9\x1Az\x1A\x1A");
    EXPECT_EQ(text.getStringA(), text.getStringA());
    text += u"!";
    EXPECT_EQ(std::string(text.getStringA()), "\xE9\x1Az\x1A\x1A!");
    text = text.getStringWAsUnsignedShort(); // its own buffer
    EXPECT_EQ(text.length(), 6);
    text = u"ab";
    EXPECT_EQ(PelString(text.getStringWAsUnsignedShort()).view(), u"ab");
}

TEST(Strings, HaveValueSemantics) {
    PelString one("one");
    PelString two(one);
    two += " two";
    EXPECT_EQ(answers({one, two, one + u" two"}), "'one' 'one two' 'one two'");
    PelString moved(std::move(two));
    two = "again";
    std::swap(moved, two);
    two = *&two;
    EXPECT_EQ(answers({moved, two}), "'again' 'one two'");
    EXPECT_TRUE(one < two && !(two < one) && one != two);
    EXPECT_EQ(std::unordered_set<PelString>({two, two, moved}).size(), 2U);
}

// What `printf` has is compared with it on formats made by chance.
TEST(Formatting, TakesWideTextAndLeavesWhatItDoesNotKnow) {
    const unsigned short units[] = {u'u', u's', 0};
    const char16_t open[] = {u'o', u'p', u'e', u'n'}; // no NUL: the precision bounds the read
    const std::pair<PelString, PelString> cases[] = {
        {PelString().format(u"%s|%5s|%-5s|%.1s|%s", u"ab", units, u"x", u"\u00e9z", nullptr),
         u"ab|   us|x    |\u00e9|(null)"},
        {PelString().format(u"%.4s|%.*s|%*s|%*s|%-*d|%*d", open, 2, u"abc", 4, u"r", -3, u"l", 3, 1,
                            -3, 2),
         u"open|ab|   r|l  |1  |2  "},
        {PelString().format(u"%.0s|%.*s|%.s|%.3s", open + 4, -1, u"all", open, nullptr),
         u"|all||(nu"},
        {PelString().format(u"%c%c|%3c|%%|100%", u'a', 0x416, u'z'), u"a\u0416|  z|%|100%"},
        {PelString().format(u"%n %q %y%d %5k %S", 1), u"%n %q %y1 %5k %S"},
        {PelString().format(u"%99999999999d|%d|%l", 3), u"%99999999999d|3|%l"},
        {PelString().format(units), u"us"}};
    for (const auto& [rendered, expected] : cases)
        EXPECT_EQ(rendered, expected);
    EXPECT_EQ(PelString().format(u"%100000d%.70000f", 1, 0.5).length(), 170002);
    PelString self("%s");
    EXPECT_EQ(self.format(self.view().data(), self.view().data()), "%s");
}

TEST(Formatting, DoesNotDependOnTheLocale) {
    const ScratchFolder folder;
    const std::string make = "localedef -i de_DE -f UTF-8 " + folder.file("de_DE.UTF-8");
    if (std::system(make.c_str()) != 0)
        GTEST_SKIP() << "localedef or its data (package locales) is missing";
    setenv("LOCPATH", folder.path.c_str(), 1);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(PelString().format(u"%.1f", 2.5), "2.5");
    double value = 0;
    PelDOMElement root = rootOf("<a r='2.5'/>");
    root.getAttribute("r", value);
    root.setAttribute("w", -value);
    EXPECT_EQ(show(root), "a r=2.5 w=-2.5");
    EXPECT_TRUE(value == 2.5 && root.getAttributeOr("w", 0.0) == -2.5);
    EXPECT_FALSE(PelString("2,5").toDouble(value));
    std::setlocale(LC_ALL, "C");
}

// Text is converted in chunks of 2^26 units; a sequence across the cut must not be torn.
TEST(Conversion, GivesTheSameInPieces) {
    constexpr std::size_t chunk = std::size_t{1} << 26;
    for (std::size_t before = chunk - 3; before <= chunk; ++before) {
        const std::string text = std::string(before, 'a') + "\xF0\x9F\x98\x80\x80z";
        const std::u16string wide = PelTextConversion::fromUtf8(text);
        ASSERT_EQ(wide.substr(before), u"\U0001F600\uFFFDz");
        ASSERT_EQ(PelTextConversion::toUtf8(wide).substr(before), "\xF0\x9F\x98\x80\xEF\xBF\xBDz");
    }
}
