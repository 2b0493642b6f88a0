// SPDX-License-Identifier: MIT
#include "../fuzz/same_tree.h"
#include "read/PelXercesReader.h"
#include "read/scan/PelPlainScanner.h"
#include "read/scan/PelPlainUtf8.h"
#include "support.h"
#include "xerces/engine/PelXercesFields.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <cstring>
#include <random>
#include <sys/mman.h>

namespace {

using Method = PelXercesReadSettings::Method;

PelXercesNodeRef readBy(Method method, const std::string& bytes, const std::string& file,
                        const XMLCh* encoding, std::string& message) {
    PelXercesReadSettings settings;
    settings.method = method;
    PelXercesReader reader(settings);
    const PelXercesNodeRef node =
        file.empty() ? reader.readText("text", bytes.data(), bytes.size(), encoding)
                     : reader.readFile(file.c_str());
    message = node ? "" : reader.getMessages().at(0).toLine().toUtf8();
    return node;
}

// All verdicts, messages and trees must be the same; gives the number of nodes, 0 for a refusal.
long sameTree(const std::string& bytes, const std::string& file, const XMLCh* encoding = nullptr) {
    std::string message, other;
    const PelXercesNodeRef one = readBy(Method::engine, bytes, file, encoding, message);
    long count = 0;
    for (const Method method : {Method::fastNodes, Method::plainScanner}) {
        const PelXercesNodeRef two = readBy(method, bytes, file, encoding, other);
        EXPECT_EQ(other, message) << bytes << file;
        if (!one || !two) {
            EXPECT_EQ(!one, !two) << bytes << file;
            continue;
        }
        count = compareDocuments(*one.getNode(), *two.getNode());
        EXPECT_GT(count, 0) << bytes << file;
    }
    return count;
}

std::u16string unitsOf(const std::string& utf8) {
    return std::u16string(PelString(utf8.c_str()).view());
}

// The same for a text as UTF-16 in memory.
long sameTreeOfUtf16(const std::string& text) {
    const std::u16string units = unitsOf(text);
    return sameTree(std::string(reinterpret_cast<const char*>(units.data()), units.size() * 2), "",
                    PelPlainScanner::nativeUtf16());
}

long bothForms(const std::string& text) {
    const long count = sameTree(text, "");
    EXPECT_EQ(sameTreeOfUtf16(text), count) << text;
    return count;
}

// Memory that ends where a page begins that cannot be read.
class GuardedMemory {
public:
    GuardedMemory() { mprotect(begin + size, page, PROT_NONE); }
    ~GuardedMemory() { munmap(begin, size + page); }

    /// Puts a copy at the very end.
    const void* copy(const void* bytes, std::size_t count) {
        return std::memcpy(begin + size - count, bytes, count);
    }

private:
    static constexpr std::size_t page = 4096;
    static constexpr std::size_t size = 4 * page;
    char* const begin = static_cast<char*>(
        mmap(nullptr, size + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
};

bool isPlain(const std::string& text, bool isWide = false) {
    using Encoding = PelPlainScanner::Encoding;
    static GuardedMemory memory;
    const auto isRead = [](const auto& in, Encoding encoding) {
        const std::size_t size = in.size() * sizeof in[0];
        return PelPlainScanner::read(memory.copy(in.data(), size), size, encoding, u"Dummy")
                   .document != nullptr;
    };
    return isWide ? isRead(unitsOf(text), Encoding::nativeUtf16) : isRead(text, Encoding::utf8);
}

struct WaysOfReading : testing::Test {
    static void SetUpTestSuite() { services().init(); }
    static void TearDownTestSuite() { services().terminate(); }
};

TEST_F(WaysOfReading, GiveTheSameTree) {
    const std::string dtd =
        "<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY><!ELEMENT b (c*)><!ELEMENT c ANY>"
        "<!ATTLIST a d CDATA 'def' f CDATA #FIXED 'fix' i ID #IMPLIED n NMTOKENS ' x  y '>"
        "<!ATTLIST c i ID #IMPLIED><!ENTITY e 'v'><!ENTITY t 'x<a/>y<c>z</c>'>]>";
    for (const std::string& text : {
             std::string("<r><a/><a></a>t<a>u</a>v<!--c-->w<?p i?>x<![CDATA[y]]>z&lt;&#65;</r>"),
             std::string("<r><!--first--><a z='1' y='2' x=''/><![CDATA[c]]><a/><!--c--><a/></r>"),
             std::string("<!--before--><?p?><r a='1'><b><c d='x&#10;y'/>\r\n</b></r><!--after-->"),
             dtd + "<r><a/><a i='i1' d='own'>&t;</a><b> <c i='i2'/> <c/> </b>1&e;2</r>",
             dtd + "<r><b> text </b></r>",
             std::string(
                 "<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY>]><r>&#x1F600;<a>a</a><a/></r>"),
         })
        sameTree(text, "");
    EXPECT_EQ(sameTree("<r><a b='1'>t</a><!--c-->u</r>", ""), 6);
    EXPECT_EQ(sameTree("<?xm\U0001F600l a?><r><\U00010000 \U00010000=''/><?\U00010000?></r>", ""),
              5);
    std::string wide = "<r>";
    for (int i = 0; i < 3000; ++i)
        wide += "<e a='" + std::to_string(i) + "' b='x'>" +
                std::string(static_cast<std::size_t>(i % 50), 'x') + "&amp;</e>\n<f/>";
    wide += "<l>" + std::string(40000, 'y') + "&amp;z<!--c-->w&lt;" + std::string(99, 'v') + "</l>";
    EXPECT_EQ(sameTree(wide + "</r>", ""), 2 + 4 * 3000 + 4);
}

// What the scanner leaves to the engine is read or refused there, as it is where the text is cut
// off.
TEST_F(WaysOfReading, ScanPlainDocumentsAndLeaveTheRest) {
    const auto expect = [](bool isScanned, bool isWideScanned,
                           std::initializer_list<std::string> texts) {
        const bool isAny = PelXercesFields::areKnown();
        for (const std::string& text : texts) {
            EXPECT_EQ(isPlain(text), isAny && isScanned) << text;
            EXPECT_EQ(isPlain(text, true), isAny && isWideScanned) << text;
            for (std::size_t size = 0; size <= text.size(); ++size) {
                sameTree(text.substr(0, size), "");
                isPlain(text.substr(0, size));
                isPlain(text.substr(0, size), true);
            }
            sameTreeOfUtf16(text);
        }
    };
    expect(true, true,
           {"\r\n <?p a?b? ?><?q?><!--a-b--><r/><!----><?p  ?>\n", "<?xml version='1.0'?><r/>",
            "<?xml\tversion = \"1.0\" encoding='utf-8'\nstandalone='yes' ?><r/>",
            "<?xml version='1.0' standalone='no'?><r/>",
            "<r>]] ]> &gt; ]]&gt; &#65;&#x1F600;&#x00000e9; \"'</r>",
            "<r a='\"&lt;&#10;>]]>\t\r\n\n' b=\"'\"/>",
            "<r>\x7F\u0080\u0085\u2028\uD7FF\uE000\uFFFD\U00010000\U0010FFFF</r>",
            "<é:_-.·9 名='θ'/>", "<r><![CDATA[]]]]><![CDATA[]]]><![CDATA[<&\r]]></r>",
            "<r><?xml-a?></r>", "<r><?p.?></r>", "<r><a></a ></r\n>"});
    expect(true, false, {"\xEF\xBB\xBF<r/>"});
    // Each wrong byte becomes U+FFFD where UTF-16 is made of the text.
    expect(false, true,
           {"<?xml version='1.0' encoding='UTF-16'?><r/>",
            "<?xml version='1.0' encoding='ISO-8859-1'?><r/>", "<r>\xC1\xBF</r>",
            "<r>\xE0\x9F\xBF</r>", "<r>\xED\xA0\x80</r>", "<r>\xF0\x8F\xBF\xBF</r>",
            "<r>\xF4\x90\x80\x80</r>", "<r>\xF5\x80\x80\x80</r>", "<r>\xC3</r>",
            "<r>λόγος \xC3\xC3 ποταμός 0123456789abcdef</r>"});
    expect(false, false,
           {"<?xml version='1.0' encoding='-'?><r/>",
            "<?xml version='1.0' standalone='maybe'?><r/>",
            "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><r/>",
            "<?xml version='1.1'?><r/>",
            " <?xml version='1.0'?><r/>",
            "<r>]]]></r>",
            "<r a='1'b='2'/>",
            "<r a='1' b='2' a='3'/>",
            "<r a/>",
            "<r>&#4294967361;</r>",
            "<r>0123456789abcdef\xC3</r>0123456789abcdef",
            "<r><·/></r>",
            "<r \u00D7=''/>",
            "<\U00010400/>",
            "<r><![CDATA[]]</r>",
            "<r><!--a--b--></r>",
            "<r><?xMl a?></r>",
            "<r><?p/?></r>",
            "<r><a></aa></r>",
            "<r><aa></a></r>"});
}

// Where characters of all lengths take turns, and where the first that is none stands among them.
TEST_F(WaysOfReading, CopyCharactersUpToWhatIsNone) {
    const std::vector<std::string> good({"a", " ", "\x7F", "\u0080", "\u07FF", "\u0800", "\u0FFF",
                                         "\uD7FF", "\uE000", "\uFF3F", "\uFFFD", "\U00010000",
                                         "\U0010FFFF"});
    const std::vector<std::string> none({"", "<", "&", "]", "\r", "\x80", "\xC1\xBF", "\xC3",
                                         "\xE0\x9F\xBF", "\xE6\xBC", "\xED\xA0\x80", "\xEF\xBF\xBE",
                                         "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF4\x90\x80\x80",
                                         "\xF5\x80\x80\x80", "\xF8\x80\x80\x80", "\xFF"});
    std::mt19937 random(1);
    GuardedMemory memory;
    for (std::size_t round = 0; round < 50'000; ++round) {
        std::string before, text;
        const std::size_t first = random() % good.size(), size = random() % 150;
        while (before.size() < size)
            before += good[first + random() % (good.size() - first)];
        text = before + none[round % none.size()];
        for (std::size_t i = none[round % none.size()].empty() ? 0 : random() % 80; i > 0; --i)
            text += good[random() % good.size()];
        const auto* const begin =
            static_cast<const unsigned char*>(memory.copy(text.data(), text.size()));
        char16_t units[1000];
        char16_t* end = units;
        const auto* const stop =
            PelPlainUtf8::copy<PelPlainContent>(begin, begin + text.size(), end);
        ASSERT_EQ(static_cast<std::size_t>(stop - begin), before.size())
            << testing::PrintToString(text);
        ASSERT_EQ(std::u16string(units, end), unitsOf(before)) << testing::PrintToString(text);
    }
}

// Around the sizes of the scanner's own buffers.
TEST_F(WaysOfReading, PutLongTextsTogether) {
    for (const char* const piece :
         {"x", "é", "語", "😀", "&amp;", "\r\n", "\r", "a ", "λό", "&#x1F600;"}) {
        for (std::size_t before = 0; before < 20; ++before) {
            const std::string start(before, '.');
            const std::string pieces =
                start + repeated(piece, before % 2 == 0 ? 4090 : 2040) + start;
            const bool hasReferences = *piece == '&';
            EXPECT_EQ(bothForms("<r a='" + pieces + "'>" + pieces +
                                (hasReferences ? "" : "<!--" + pieces + "-->") + "<?p " + pieces +
                                "?><![CDATA[" + pieces + "]]>" + pieces + "</r>"),
                      hasReferences ? 6 : 7);
        }
    }
    EXPECT_EQ(bothForms("<r>" + std::string(200000, 'y') + "<a/>" + std::string(300, 'z') + "</r>"),
              5);
}

TEST_F(WaysOfReading, TellNamesApart) {
    std::string names, attributes, repeated = "<r>";
    for (int i = 20000; i > 0; --i)
        attributes += " k" + std::to_string(i) + "='" + std::to_string(i) + "'";
    for (int i = 0; i < 3000; ++i) {
        const std::string name =
            "n" + std::string(static_cast<std::size_t>(i % 23), 'a') + std::to_string(i);
        names += "<" + name + " " + name + "='' b='' a='' " + name + "a=''/>";
        repeated += "<" + name + "/><" + name.substr(0, name.size() - 1) + "/>";
    }
    EXPECT_EQ(bothForms("<r" + attributes + ">" + names + "</r>"), 3002);
    EXPECT_EQ(bothForms(repeated + "</r>"), 6002);
    const std::string many = "<r a1='' a2='' a3='' a4='' a5='' a6='' a7='' a8='' a9='' b1='' b2=''";
    EXPECT_EQ(isPlain(many + " b3='' b4=''/>"), PelXercesFields::areKnown());
    EXPECT_FALSE(isPlain(many + " b3='' a1=''/>"));
}

// What the scanner leaves is read from memory then, as from the file.
TEST_F(WaysOfReading, ReadFilesOnceAndWhole) {
    const ScratchFolder folder;
    folder.write("part.txt", "part");
    const std::string comment = "<!--" + std::string(5000, 'c') + "-->";
    EXPECT_EQ(sameTree("", folder.write("f.xml", comment + "<r>t</r>")), 4);
    EXPECT_EQ(
        sameTree("", folder.write("f.xml", comment + "<!DOCTYPE r [<!ELEMENT r ANY>"
                                                     "<!ENTITY p SYSTEM 'part.txt'>]><r>&p;</r>")),
        5);
    EXPECT_EQ(sameTree("", folder.write("f.xml",
                                        "<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE9</r>")),
              3);
    for (const std::string& text : {std::string("<r>\xE9</r>"), std::string("<r>\0</r>", 8),
                                    std::string("\0<r/>", 5), std::string()})
        EXPECT_EQ(sameTree("", folder.write("f.xml", text)), 0) << text;
}

// For good: the engine takes it back for no one.
TEST_F(WaysOfReading, LeaveOtherLineEndsToTheEngine) {
    EXPECT_EQ(isPlain("<r>\u0085</r>"), PelXercesFields::areKnown());
    xercesc::XMLPlatformUtils::recognizeNEL(true);
    EXPECT_FALSE(isPlain("<r>\u0085</r>"));
}

} // namespace
