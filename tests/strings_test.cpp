// SPDX-License-Identifier: MIT
#include "core/PelFormatPattern.h"
#include "core/PelTextConversion.h"
#include "support.h"

#include <climits>
#include <clocale>
#include <cstdint>
#include <sstream>
#include <unordered_set>

namespace {

std::u16string unitsOf(const unsigned short* text) {
    std::u16string units;
    for (; *text != 0; ++text)
        units.push_back(static_cast<char16_t>(*text));
    return units;
}

TEST(Strings, ComeFromEveryKindOfText) {
    const unsigned short units[] = {u'a', 0xD83D, 0xDE00, 0};
    const PelString expected(u"a\U0001F600");
    EXPECT_EQ(PelString(units), expected);
    EXPECT_EQ(PelString("a\xF0\x9F\x98\x80"), expected);
    PelString assigned("old");
    EXPECT_EQ(assigned = units, expected);
    EXPECT_EQ(assigned = "a\xF0\x9F\x98\x80", expected);
    EXPECT_EQ(expected.length(), 3);
    EXPECT_EQ(expected.isEmpty(), 0);

    EXPECT_EQ(PelString(static_cast<const char*>(nullptr)).isEmpty(), 1);
    EXPECT_EQ(PelString(static_cast<const char16_t*>(nullptr)).length(), 0);
    EXPECT_EQ((assigned = static_cast<const unsigned short*>(nullptr)).isEmpty(), 1);
}

TEST(Strings, ReplaceIllFormedTextAndKeepTheRest) {
    EXPECT_EQ(PelString("a\xC3(b\xE2\x82z\xFF").view(), u"a\uFFFD(b\uFFFDz\uFFFD");
    EXPECT_EQ(PelString("\xED\xA0\x80").length(), 3); // a surrogate in UTF-8 is three bad bytes
    EXPECT_EQ(PelString(u"a\xD800z").toUtf8(), "a\xEF\xBF\xBDz");
    std::stringstream stream;
    stream << PelString(u"\u00e9\u4e2d");
    EXPECT_EQ(stream.str(), "\xC3\xA9\xE4\xB8\xAD");
}

TEST(Strings, LendBuffersInBothOldForms) {
    PelString text(u"\u00e9\u0416z\xD83D\xDE00");
    EXPECT_EQ(unitsOf(text.getStringWAsUnsignedShort()), text.view());
    EXPECT_EQ(std::string(text.getStringA()), "\xE9\x1Az\x1A\x1A");
    EXPECT_EQ(text.getStringA(), text.getStringA());
    text += u"!";
    EXPECT_EQ(std::string(text.getStringA()), "\xE9\x1Az\x1A\x1A!");
    text = text.getStringWAsUnsignedShort(); // its own buffer
    EXPECT_EQ(text.length(), 6);
    text = u"ab";
    EXPECT_EQ(unitsOf(text.getStringWAsUnsignedShort()), u"ab");
}

TEST(Strings, HaveValueSemantics) {
    const PelString original("one");
    PelString copy(original);
    copy += " two";
    EXPECT_EQ(original, PelString("one"));
    EXPECT_EQ(copy, original + u" two");
    PelString moved(std::move(copy));
    copy = "again";
    std::swap(moved, copy);
    EXPECT_EQ(copy, "one two");
    EXPECT_NE(copy, moved);
    EXPECT_LT(PelString("a"), PelString("b"));
    copy = *&copy;
    EXPECT_EQ(std::unordered_set<PelString>({copy, copy, moved}).size(), 2U);
}

TEST(Formatting, RendersAsPrintfDoes) {
    const unsigned short units[] = {u'u', u's', 0};
    const char16_t open[] = {u'o', u'p', u'e', u'n'}; // no NUL: the precision bounds the read
    const struct {
        PelString rendered;
        const char16_t* expected;
    } cases[] = {
        {PelString().format(u"%d|%5d|%-5d|%05d|%+d|% d", 7, 7, 7, 7, 7, 7),
         u"7|    7|7    |00007|+7| 7"},
        {PelString().format(u"%i %u %o %x %X %#x %#o", -3, 4000000000U, 8, 255, 255, 255, 8),
         u"-3 4000000000 10 ff FF 0xff 010"},
        {PelString().format(u"%ld %lld %hd %hhd %zu %jd %td", LONG_MIN, LLONG_MAX, 65537, 258,
                            std::size_t{9}, std::intmax_t{-1}, std::ptrdiff_t{5}),
         u"-9223372036854775808 9223372036854775807 1 2 9 -1 5"},
        {PelString().format(u"%hhx %hu %lx %llo", 0x1FF, 65537, 0xFFUL, 8ULL), u"ff 1 ff 10"},
        {PelString().format(u"%f %.2f %e %G %.0f %08.3f", 2.5, 0.125, 12345.678, 1e-10, 2.5,
                            -3.14159),
         u"2.500000 0.12 1.234568e+04 1E-10 2 -003.142"},
        {PelString().format(u"%a %A %Lf %lf", 1.0, 2.0, 1.5L, 0.25),
         u"0x1p+0 0X1P+1 1.500000 0.250000"},
        {PelString().format(u"%s|%5s|%-5s|%.1s|%s", u"ab", units, u"x", u"\u00e9z", nullptr),
         u"ab|   us|x    |\u00e9|(null)"},
        {PelString().format(u"%.4s|%.*s|%*s|%-*d|%*d", open, 2, u"abc", 4, u"r", 3, 1, -3, 2),
         u"open|ab|   r|1  |2  "},
        {PelString().format(u"%c%c|%3c|%%|100%", u'a', 0x416, u'z'), u"a\u0416|  z|%|100%"},
        {PelString().format(u"%n %q %y%d %5k %S", 1), u"%n %q %y1 %5k %S"},
        {PelString().format(u"%99999999999d|%d|%l", 3), u"%99999999999d|3|%l"},
        {PelString().format(units), u"us"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.rendered, c.expected);
    EXPECT_EQ(PelString().format(u"%100000d%.70000f", 1, 0.5).length(), 170002);
    PelString self("%s");
    EXPECT_EQ(self.format(self.view().data(), self.view().data()), "%s");
}

TEST(Formatting, DoesNotDependOnTheLocale) {
    std::string locale;
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE.utf8"})
        if (std::setlocale(LC_ALL, name) != nullptr)
            locale = name;
    if (locale.empty())
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    EXPECT_EQ(PelString().format(u"%.1f", 2.5), "2.5");
    const PelDOMDocument document = parse("<a r='2.5'/>");
    double value = 0;
    EXPECT_EQ(document.getDocumentElement().getAttribute("r", value), PelDOM::SUCCESS);
    EXPECT_EQ(value, 2.5);
    std::setlocale(LC_ALL, "C");
}

// Text is converted in chunks of 2^26 units; a sequence across the cut must not be torn.
TEST(Conversion, JoinsItsChunksWithoutASeam) {
    constexpr std::size_t chunk = std::size_t{1} << 26;
    for (std::size_t before = chunk - 3; before <= chunk; ++before) {
        std::string text(before, 'a');
        text += "\xF0\x9F\x98\x80";
        text += "\x80z";
        const std::u16string wide = PelTextConversion::fromUtf8(text);
        ASSERT_EQ(wide.substr(before), u"\U0001F600\uFFFDz");
        ASSERT_EQ(PelTextConversion::toUtf8(wide).substr(before), "\xF0\x9F\x98\x80\xEF\xBF\xBDz");
    }
}

} // namespace
