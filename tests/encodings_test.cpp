// SPDX-License-Identifier: MIT
#include "read/input/PelEncodingCheck.h"
#include "support.h"

using namespace std::string_literals;

// Text of ASCII in an encoding of larger units.
static std::string spread(const std::string& ascii, std::size_t before, std::size_t after) {
    std::string all;
    for (const char c : ascii)
        all += std::string(before, '\0') + c + std::string(after, '\0');
    return all;
}

// The declared name, the mark, and the NULs around an ASCII character.
namespace {
struct Form {
    const char* name;
    std::string mark = "";
    std::size_t before = 0, after = 0;
};
struct Coded {
    Form form;
    std::string good;
    std::vector<std::string> bad;
};
} // namespace

static const Coded encodings[] = {
    {{"UTF-8"},
     "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",
     {"\0"s, "\x80", "\xC0\x80", "\xC3", "\xE0\x80\x80", "\xE2\x82", "\xED\xA0\x80",
      "\xF4\x90\x80\x80", "\xF0\x9F\x98", "\xF5\x80\x80\x80", "\xF7\xBF\xBF\xBF", "\xFF",
      std::string(40, 'x') + "\xF5\x80\x80\x80"}},
    {{"UTF-8", "\xEF\xBB\xBF"}, "\xC3\xA9", {"\0"s, "\xC3", "\xF5\x80\x80\x80"}},
    {{"UTF-16", "\xFF\xFE", 0, 1},
     "\xE9\0\x3D\xD8\0\xDE"s,
     {"\0\0"s, "\xE9", "\0\xD8"s, "\0\xDC"s, "\0\xD8x\0"s}},
    {{"UTF-16", "\xFE\xFF", 1},
     "\0\xE9\xD8\x3D\xDE\0"s,
     {"\0\0"s, "\xE9", "\xD8\0"s, "\xDC\0"s, "\xD8\0\0x"s}},
    {{"UTF-16LE", "", 0, 1}, "\xE9\0"s, {"\0\0"s, "\xE9"}},
    {{"UCS-4", "\xFF\xFE\0\0"s, 0, 3},
     "\0\xF6\1\0"s,
     {"\0\0\0\0"s, "\0\0\x11\0"s, "\0\xD8\0\0"s, "x\0\0"s}},
    {{"UTF-32", "", 3}, "\0\1\xF6\0"s, {"\0\0\0\0"s, "\0\x11\0\0"s, "\0\0\xD8\0"s, "\0\0\0"s}},
    {{"US-ASCII"}, "e", {"\0"s, "\xE9"}},
    {{"ISO-8859-1"}, "\xE9\xFF", {"\0"s}},
    {{"windows-1252"}, "\x80\xE9", {"\0"s}},
    {{"ISO-8859-7"}, "\xE1", {"\0"s, "\xD2"}},
    {{"EUC-JP"}, "\xA4\xA2", {"\0"s, "\xA4", "\xA4\0"s, "\xA4\xFF"}},
    {{"GB18030"}, "\x94\x39\xDA\x33", {"\0"s, "\x94\x39\xDA", "\xFF"}},
    {{"UTF-7"}, "+AOk-", {"\0"s, "+AAA-", "\xE9"}}};

// A fault is met in whatever the engine reads, at the end or with more behind it.
TEST(IllFormedBytes, AreRefusedInDocumentsAndInWhatTheyName) {
    const ScratchFolder folder;
    const auto verdicts = [&](const Coded& in, const std::string& bytes, const std::string& rest) {
        const auto in1 = [&](const std::string& ascii) {
            return spread(ascii, in.form.before, in.form.after);
        };
        const std::string start =
            in.form.mark + in1("<?xml version='1.0' encoding='"s + in.form.name + "'?>");
        folder.write("part.xml", start + bytes + in1(rest));
        folder.write("part.dtd", start + in1("<!ELEMENT a ANY><!-- ") + bytes + in1(rest + " -->"));
        const auto naming = [](const std::string& subset) {
            return parse(("<!DOCTYPE a [<!ELEMENT a ANY>" + subset + "]><a>&e;</a>").c_str())
                .isNull();
        };
        const std::string document = start + in1("<a>") + bytes + in1(rest + "</a>");
        const std::string path = "SYSTEM '" + folder.file("part.");
        return answers(
            {parseBytes(document).isNull(), readFile(folder.write("f.xml", document)).isNull(),
             parseBytes(start + in1("<a/>") + bytes.substr(in.good.size())).isNull(),
             naming("<!ENTITY e " + path + "xml'>"),
             naming("<!ENTITY e ''><!ENTITY % p " + path + "dtd'>%p;"),
             readFile(folder.write("g.xml", "<!DOCTYPE a SYSTEM 'part.dtd'><a/>")).isNull()});
    };
    for (const Coded& in : encodings) {
        EXPECT_EQ(verdicts(in, in.good, "more"), "0 0 0 0 0 0") << in.form.name;
        for (const std::string& bad : in.bad)
            for (const char* rest : {"", "more"})
                EXPECT_EQ(verdicts(in, in.good + bad, rest), "1 1 1 1 1 1")
                    << in.form.name << testing::PrintToString(bad) << rest;
    }
    for (const std::string& part : {"\xC3"s, "\xE2\x82"s, "\xF0\x9F\x98"s, "\0"s, ""s}) {
        const std::string names = " SYSTEM '" + folder.write("part", part) + "'";
        for (const std::string& text :
             {"<!DOCTYPE a" + names + "[<!ELEMENT a ANY>]><a/>",
              "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e" + names + ">]><a>&e;</a>",
              "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY % e" + names + ">%e;]><a/>"})
            EXPECT_EQ(parse(text).isNull(), part.empty() ? 0 : 1) << text;
    }
    for (const char16_t* wide : {u"<a/>\0garbage", u"<a/>\xD800"})
        EXPECT_EQ(parse(PelString(std::u16string_view(wide, 6))).isNull(), 1);
}

TEST(EncodingNames, MustBeThoseOfTheBytes) {
    const auto isRead = [](const std::string& mark, const std::string& name, std::size_t before,
                           std::size_t after) {
        return parseBytes(mark + spread("<?xml version='1.0' encoding='" + name + "'?><a/>", before,
                                        after))
                   .isNull() == 0;
    };
    for (const char* name :
         {"UTF-16", "UTF-16LE", "utf-16be", "UCS-4", "UTF-32BE", "XERCES-XMLCH", "IBM037"}) {
        EXPECT_FALSE(isRead("", name, 0, 0)) << name;
        const std::string declaration = "<?xml version='1.0' encoding='"s + name + "'?>";
        EXPECT_EQ(parseBytes(declaration + spread("<a/>", 0, 1)).isNull(), 1) << name;
        EXPECT_EQ(parseBytes(declaration + spread("<a/>", 1, 0)).isNull(), 1) << name;
    }
    for (const char* name : {"utf-16", "UCS-2", "ISO-10646-UCS-2", "UTF-16LE", "UTF-16BE"}) {
        EXPECT_EQ(isRead("\xFF\xFE", name, 0, 1), name != "UTF-16BE"s) << name;
        EXPECT_EQ(isRead("", name, 1, 0), name != "UTF-16LE"s) << name;
    }
    for (const char* name : {"UTF-8", "ISO-8859-1", "UTF-32", "Shift_JIS"})
        EXPECT_FALSE(isRead("\xFF\xFE", name, 0, 1)) << name;
    for (const char* declaration : {"<?xml\tversion='1.0' encoding='ISO-8859-1'?>",
                                    "<?xml\nversion = '1.0'\nencoding\t=\t\"latin1\"\n?>",
                                    "<?xml version='1.0' encoding='IBM-819' standalone='yes'?>"})
        EXPECT_EQ(show(parseBytes(declaration + "<a>\xC3\xA9</a>"s)), "#9(a(|\xC3\x83\xC2\xA9|))")
            << declaration;
    EXPECT_EQ(show(parseBytes("<a k=\"encoding='x'>\"/>")), "#9(a k=encoding='x'>)");
    EXPECT_EQ(
        parseBytes("<?xml version='1.0'" + std::string(12000, ' ') + "encoding='UTF-16'?><a/>")
            .isNull(),
        1);
}

// By the bytes at which what is right changes, in all orders, whole and in two pieces.
TEST(EncodingChecks, KnowUtf8AndUtf16InPieces) {
    const auto isPassed = [](const char* name, const std::string& bytes, std::size_t cut) {
        const auto check = PelEncodingCheck::forEncoding(name);
        const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
        return check->passBytes(data, cut) == cut &&
               check->passBytes(data + cut, bytes.size() - cut) == bytes.size() - cut &&
               check->mayEnd();
    };
    const std::string edges =
        "\x01\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEE\xF0\xF1\xF4\xF5";
    for (std::size_t i = 0; i < edges.size() * edges.size() * edges.size() * edges.size(); ++i) {
        std::string bytes;
        for (std::size_t rest = i; bytes.size() < 4; rest /= edges.size())
            bytes += edges[rest % edges.size()];
        const bool isGood = PelString(bytes.c_str()).toUtf8() == bytes;
        ASSERT_EQ(isPassed("UTF-8", bytes, i % 5), isGood) << testing::PrintToString(bytes);
        const std::string padded = std::string(i % 99, 'x') + bytes + std::string(60, 'x');
        ASSERT_EQ(i % 100 == 0 ? isPassed("UTF-8", padded, 64) : isGood, isGood) << i;
    }
    for (const char* name : {"UTF-16LE", "UTF-16BE"})
        for (std::size_t before = 60; before < 70; ++before)
            for (unsigned unit = 0; unit < 0x10000; unit += 0x80) {
                const bool isBig = name[7] == 'E' && name[6] == 'B';
                const auto high = static_cast<char>(unit >> 8), low = static_cast<char>(unit);
                const std::string bytes =
                    repeated("xx", before) +
                    (isBig ? std::string{high, low} : std::string{low, high}) + repeated("xx", 40);
                ASSERT_EQ(isPassed(name, bytes, 2 * before + unit / 0x80 % 3),
                          unit != 0 && (unit < 0xD800 || unit > 0xDFFF))
                    << unit;
            }
}

// The engine fills its buffer 48 KiB at a time.
TEST(LongTexts, AreReadWhole) {
    for (std::size_t before = 49120; before < 49170; ++before) {
        const std::string text =
            "<a>" + std::string(before, 'x') + "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
        ASSERT_EQ(show(parseBytes(text + "</a>")).size(), text.size() + 6) << before;
        for (const std::string& bad :
             {"\xC3</a>"s, "</a>\xF0\x9F\x98"s, "</a>\xF5\x80\x80\x80"s, "</a>\0"s})
            ASSERT_EQ(parseBytes(text + bad).isNull(), 1) << before;
    }
}

// The engine loses the files of readers that it cannot make.
TEST(RefusedReads, CloseTheirFiles) {
    const ScratchFolder folder;
    const std::string entity =
        "<!ENTITY e SYSTEM '" + folder.write("part.txt", std::string(40000, 'x')) + "'>";
    const auto before = openFiles();
    for (const std::string& content : {repeated("&e;", 1000), "&e;&e;</b>"s})
        EXPECT_EQ(
            parse(("<!DOCTYPE a [<!ELEMENT a ANY>" + entity + "]><a>" + content + "</a>").c_str())
                .isNull(),
            1);
    EXPECT_EQ(openFiles(), before);
}
