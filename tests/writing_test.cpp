// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/tree/PelXercesDeclaration.h"

#include <unicode/unistr.h>
#include <xercesc/dom/DOM.hpp>

// The first write settles the output encoding of its process, so each test writes in a child.
static void inNewProcess(const std::function<void()>& test) {
    EXPECT_EQ(statusOfProcess(test), 0);
}

// A created document whose declaration has other values.
static PelDOMDocument createWith(const PelXercesDeclaration& values) {
    PelDOMDocument document = services().createDocument("r");
    xercesc::DOMDocument& engine = engineOf(document);
    engine.replaceChild(PelXercesDeclaration::create(engine, values), engine.getFirstChild());
    return document;
}

enum Target { toString, toFile };

// What a document is written as, after the code and in quotes if it is not SUCCESS.
static std::string written(Target to, const PelDOMDocument& document, int newlines = 0,
                           int terminator = 0) {
    const ScratchFolder folder;
    PelString target(to == toFile ? folder.write("\xD1\x84.xml", "old").c_str() : "kept");
    const PelDOM::Error code = services().writeDocument(document, target, to, newlines, terminator);
    const std::string result = to == toFile ? bytesOf(target.toUtf8()) : target.toUtf8();
    return code == PelDOM::SUCCESS ? result : answers({code, result});
}

static const bool hasXmllint = std::system("type xmllint >/dev/null 2>&1") == 0;

static void expectAccepted(const std::string& file) {
    EXPECT_EQ(hasXmllint ? std::system(("xmllint --noout --nonet --huge " + file).c_str()) : 0, 0);
}

TEST(Writing, IsCheckedByAnotherReader) {
    if (!hasXmllint)
        GTEST_SKIP() << "xmllint is missing, which would check what the others write";
}

TEST(Writing, FramesACreatedDocument) {
    inNewProcess([] {
        const ScratchFolder folder;
        const PelDOMDocument document = services().createDocument("root");
        const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
        const std::string framed = declaration + "\r\n\r\n\r\n\r\n<root/>\r\n\r\n";
        EXPECT_EQ(written(toFile, document, 1, 1), framed + '\0');
        EXPECT_EQ(written(toFile, document, 0, 1), declaration + "\r\n<root/>" + '\0');
        EXPECT_EQ(services().writeDocument(document, folder.file("f").c_str()), PelDOM::SUCCESS);
        EXPECT_EQ(bytesOf(folder.file("f")), framed);
        EXPECT_EQ(written(toString, document, 1, 1), declaration + "\n\n\n\n<root/>\n\n");
        EXPECT_EQ(written(toString, document), declaration + "\n<root/>");
    });
}

TEST(Writing, GivesEachKindOfNodeItsMarkup) {
    inNewProcess([] {
        const ScratchFolder folder;
        folder.write("a\".dtd", "<!ELEMENT a ANY>");
        folder.write("a.dtd", "<!ELEMENT a ANY><!ATTLIST a k CDATA #IMPLIED z CDATA #IMPLIED>");
        // "~" stands where a line break comes with newlines, and nothing without
        const std::pair<const char*, const char*> cases[] = {
            {"<?xml version='1.0'?><a z='1' k='v'><b>x</b><!--c--></a>",
             R"(~<a k="v" z="1">~<b>x</b><!--c--></a>~~)"},
            {"<?p?><!--a-b?--><a> <?q d d?>\n<![CDATA[<&>]]>&lt;&gt;&amp;\"'&#13;&#10;&#9;</a>",
             "<?p?>~<!--a-b?-->~~<a> <?q d d?>\n<![CDATA[<&>]]>&lt;&gt;&amp;\"'&#xD;\n\t</a>~~"},
            {"<a k='&lt;&gt;&amp;&quot;&apos;&#13;&#10;&#9;'/>",
             R"(~<a k="&lt;>&amp;&quot;'&#xD;&#xA;&#x9;"/>~~)"},
            {"<!DOCTYPE a SYSTEM 'a.dtd'><a/>", R"(<!DOCTYPE a SYSTEM "a.dtd">~~<a/>~~)"},
            {"<!DOCTYPE a PUBLIC 'p' 'a.dtd' [<!ENTITY e 'x'>]><a>&e;</a>",
             R"(<!DOCTYPE a PUBLIC "p" "a.dtd"[<!ENTITY e "x">]>~~<a>x</a>~~)"},
            {"<!DOCTYPE a [ <!ELEMENT a ANY> ]><a/>", "<!DOCTYPE a[ <!ELEMENT a ANY> ]>~~<a/>~~"},
            {R"(<!DOCTYPE a [<!--c--><!ELEMENT a ANY><!ENTITY % p 'x'><!ENTITY q '&#38;#60;"&#37;&#13;'>)"
             R"(<!NOTATION n SYSTEM '"'><!ENTITY u PUBLIC 'p' 's' NDATA n>)"
             R"(<!ATTLIST a f CDATA #FIXED '&#9;&#10;&#13;&#38;&#60;"' n NOTATION (n) #IMPLIED i (x|y) 'x' r ID)"
             " #REQUIRED>]><a r='i'>&q;</a>",
             R"(<!DOCTYPE a[<!--c--><!ELEMENT a ANY><!ENTITY % p "x">)"
             R"(<!ENTITY q "&#x26;#60;&#x22;&#x25;&#xD;"><!NOTATION n SYSTEM '"'>)"
             R"(<!ENTITY u PUBLIC "p" "s" NDATA n>)"
             R"(<!ATTLIST a f CDATA #FIXED "&#x9;&#xA;&#xD;&#x26;&#x3C;&#x22;" n NOTATION (n) #IMPLIED i (x|y) "x" r ID)"
             R"( #REQUIRED>]>~~<a f="&#x9;&#xA;&#xD;&amp;&lt;&quot;" i="x" r="i">&lt;"%&#xD;</a>~~)"},
            {R"(<!DOCTYPE a SYSTEM 'a".dtd'><a/>)", R"(<!DOCTYPE a SYSTEM 'a".dtd'>~~<a/>~~)"},
            // of what is declared twice, the first counts
            {"<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a k (x|y) 'x'>"
             "<!ATTLIST a k (z) 'z' k CDATA #REQUIRED l ID #IMPLIED><!NOTATION n SYSTEM 'n'>"
             "<!NOTATION n PUBLIC 'p'><!ENTITY u 'v'><!ENTITY u SYSTEM 'x' NDATA n>"
             "<!ENTITY % u 'w'><!ENTITY % u SYSTEM 'y'><!ENTITY lt '&#38;#60;'>"
             "<!ENTITY lt '&#38;#x3C;'>]><a>&u;</a>",
             R"(<!DOCTYPE a[<!ELEMENT a ANY><!ATTLIST a k (x|y) "x"><!ATTLIST a   l ID #IMPLIED>)"
             R"(<!NOTATION n SYSTEM "n"><!ENTITY u "v"><!ENTITY % u "w">)"
             R"(<!ENTITY lt "&#x26;#60;">]>~~<a k="x">v</a>~~)"},
            {"<!DOCTYPE a [<!ELEMENT a ANY><!NOTATION n SYSTEM ''><!NOTATION m PUBLIC 'p' ''>"
             "<!NOTATION o PUBLIC ''><!ENTITY e SYSTEM ''><!ENTITY f PUBLIC 'p' ''>"
             "<!ENTITY % g SYSTEM ''>]><a/>",
             R"(<!DOCTYPE a[<!ELEMENT a ANY><!NOTATION n SYSTEM ""><!NOTATION m PUBLIC "p">)"
             R"(<!NOTATION o SYSTEM ""><!ENTITY e SYSTEM ""><!ENTITY f PUBLIC "p" "">)"
             R"(<!ENTITY % g SYSTEM "">]>~~<a/>~~)"},
            {"<!DOCTYPE a [<!ELEMENT a ((b?,c)*)*><!ELEMENT b (c*)*>"
             "<!ELEMENT c (((a)?)+|(b,(c,a))*)?><!ELEMENT d (b|(a|c)|(a,b)+)><!ELEMENT e (c)>"
             "<!ELEMENT f (#PCDATA)><!ELEMENT g (#PCDATA|:)*><!ELEMENT : EMPTY>"
             "<!ELEMENT h (:+,(:)?)><!ELEMENT i ((a?)+)*><!ELEMENT j (#PCDATA)*>]><a/>",
             "<!DOCTYPE a[<!ELEMENT a (((b?,c))*)*><!ELEMENT b (c*)*>"
             "<!ELEMENT c ((a?)+|((b,c,a))*)?><!ELEMENT d (b|a|c|((a,b))+)><!ELEMENT e (c)>"
             "<!ELEMENT f (#PCDATA)><!ELEMENT g (#PCDATA|:)*><!ELEMENT : EMPTY><!ELEMENT h (:+,:?)>"
             "<!ELEMENT i ((a?)+)*><!ELEMENT j (#PCDATA)*>]>~~<a/>~~"}};
        for (const auto& [text, expected] : cases) {
            const PelDOMDocument document = readFile(folder.write("in.xml", text));
            EXPECT_EQ(written(toString, document), replaced(expected, "~", ""));
            EXPECT_EQ(written(toString, document, 1), replaced(expected, "~", "\n"));
            const std::string out = folder.write("out.xml", written(toFile, document));
            EXPECT_EQ(show(readFile(out)), show(document)) << text;
            expectAccepted(out);
        }
    });
}

TEST(Writing, KeepsTheVersionThatADocumentNeeds) {
    inNewProcess([] {
        const ScratchFolder folder;
        const std::string type = "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a d CDATA '&#2;' k CDATA "
                                 "#IMPLIED><!ENTITY e '&#38;#3;&#133;'>]>";
        const std::string begin = "<?xml version='1.1' encoding='ISO-8859-1'?>" + type;
        const PelDOMDocument document = readFile(folder.write(
            "in.xml",
            begin +
                "<a "
                "k='&#1;&#31;&#x2028;'>&#127;&#x9F;&#x2028;&#x2027;&#xA0;&#9;&#10;&#13;&e;</a>"));
        const std::string written11 =
            "<?xml version=\"1.1\" encoding=\"UTF-8\"?>\n~~<!DOCTYPE a[<!ELEMENT a ANY><!ATTLIST a "
            "d CDATA "
            "\"&#x2;\" k CDATA #IMPLIED><!ENTITY e \"&#x26;#3;&#x85;\">]>~~<a d=\"&#x2;\" "
            "k=\"&#x1;&#x1F;&#x2028;\">"
            "&#x7F;&#x9F;&#x2028;\xE2\x80\xA7\xC2\xA0\t\n&#xD;&#x3;&#x85;</a>~~";
        EXPECT_EQ(written(toString, document), replaced(written11, "~", ""));
        EXPECT_EQ(written(toString, document, 1), replaced(written11, "~", "\n"));
        EXPECT_EQ(show(readFile(folder.write("out.xml", written(toFile, document)))),
                  show(document));
        EXPECT_EQ(show(parse(written(toString, document))), show(document));
    });
}

TEST(Writing, WritesWhatOnlyProgramsCanMake) {
    inNewProcess([] {
        PelDOMDocument document = createWith({"", "", PelString("yes")});
        xercesc::DOMDocument& engine = engineOf(document);
        engine.getDocumentElement()->appendChild(engine.createTextNode(u""));
        engine.getDocumentElement()
            ->appendChild(engine.createElement(u"e"))
            ->appendChild(engine.createTextNode(u""));
        engine.getDocumentElement()->appendChild(engine.createEntityReference(u"ref"));
        const std::string declaration =
            "<?xml version=\"\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
        EXPECT_EQ(written(toString, document), declaration + "<r><e></e>&ref;</r>");
        append(document, childAt(document, 0));
        EXPECT_EQ(written(toString, document, 1),
                  "\n<r>\n<e></e>&ref;</r>\n" + declaration + "\n\n\n");
        while (engine.hasChildNodes())
            engine.removeChild(engine.getFirstChild());
        EXPECT_EQ(written(toString, document, 1), "\n");
        testing::internal::CaptureStderr();
        PelXercesDOMNode::give(PelXercesDOMNode::of(*document.getNodeImp()),
                               engine.createAttribute(u"k"), document);
        EXPECT_EQ(written(toString, document), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unrecognized node type = 2\n");
    });
}

TEST(FirstWrite, SettlesTheEncodingOfTheProcess) {
    inNewProcess([] {
        const PelDOMDocument cyrillic = createWith({"1.0", "KOI8-R", std::nullopt});
        cyrillic.getDocumentElement().setAttribute("k", u"\u0416\U0001F600\u00e9");
        const std::string declaration = "<?xml version=\"1.0\" encoding=\"KOI8-R\"?>";
        EXPECT_EQ(written(toString, PelDOMDocument(), 1, 1), "null-node 'kept'"); // settles nothing
        EXPECT_EQ(written(toFile, cyrillic), declaration + "\r\n<r k=\"\xF6&#x1F600;&#xE9;\"/>");
        services().terminate();
        PelDOMUtilites::releaseUtilities();
        EXPECT_EQ(written(toString, services().createDocument("a")), declaration + "\n<a/>");
        // A name is no place for a reference, but nothing else can be written there.
        PelDOMDocument named = services().createDocument(u"\u00e9");
        EXPECT_EQ(written(toFile, named), declaration + "\r\n<&#xE9;/>");
    });
    inNewProcess([] { // not the first child
        PelDOMDocument document = createWith({"1.0", "ISO-8859-1", std::nullopt});
        append(document, childAt(document, 0));
        EXPECT_PRED2(contains, written(toString, document), "encoding=\"UTF-8\"");
    });
}

TEST(Failures, OfTheEncodingLast) {
    inNewProcess([] {
        EXPECT_EQ(written(toString, createWith({"1.0", "no-such", std::nullopt})),
                  "internal 'kept'");
        EXPECT_EQ(written(toFile, services().createDocument("a")), "internal ''");
    });
}

TEST(Failures, OfFilesAndTextAreContained) {
    inNewProcess([] {
        const ScratchFolder folder;
        const PelDOMDocument document = services().createDocument("r");
        PelDOMElement root = rootOf(document);
        const auto message = [] { return PelDOMUtilites::getLastWriteMessage().toUtf8(); };
        const auto outcome = [&](const auto& answered) { return answered + ": " + message(); };
        EXPECT_EQ(outcome(written(toString, PelDOMDocument())),
                  "null-node 'kept': there is no document to write");
        EXPECT_EQ(written(toFile, PelDOMDocument()), "null-node ''");
        EXPECT_PRED2(contains, message(), ".xml: there is no document to write");
        EXPECT_EQ(outcome(answers({services().writeDocument(document, "")})),
                  "invalid: the file has no name");
        const std::pair<std::string, std::string> losses[] = {
            {folder.file("no/such"), "No such file or directory"},
            {folder.path, "Is a directory"},
            {"/dev/full", "No space left on device"}};
        const PelDOMDocument large =
            services().createDocument("r"); // more than the stream holds back
        rootOf(large).setAttribute("k", PelString(std::u16string(100000, u'k')));
        for (const auto& [lost, reason] : losses) {
            for (const PelDOMDocument& one : {document, large}) {
                EXPECT_EQ(outcome(answers({services().writeDocument(one, lost.c_str())})),
                          "ok: " + lost + ": " + reason);
                EXPECT_EQ(written(toFile, one).substr(0, 5), "<?xml");
                EXPECT_EQ(message(), "");
            }
        }
        for (const auto* bad :
             {u"\xD800", u"\xDC00", u"a\xDBFF", u"\xD83D\xD83D\xDE00", u"\xDE00\xD83D"}) {
            root.setAttribute("k", bad);
            const std::string said = outcome(written(toString, document));
            EXPECT_EQ(said.substr(0, said.size() - 4),
                      "internal 'kept': the document holds half a surrogate pair, U+");
            EXPECT_EQ(written(toFile, document).substr(0, 9), "internal ");
        }
        root.setAttribute("k", u"\xD83D\xDE00");
        EXPECT_PRED2(contains, written(toString, document), "\xF0\x9F\x98\x80");
    });
}

TEST(Writing, EscapesNothingThatItNeedNot) {
    inNewProcess([] {
        std::u16string plain;
        for (char16_t unit = 1; unit != 0; ++unit)
            if ((unit & 0xF800) != 0xD800 &&
                std::u16string_view(u"<>&\"\t\n\r").find(unit) == plain.npos)
                plain.push_back(unit);
        const PelDOMDocument document = parse("<r>t</r>");
        rootOf(document).setAttribute("k", plain.c_str());
        PelDOMText(childAt(rootOf(document), 0)).setValue(plain.c_str());
        const std::string utf8 = PelString(plain.c_str()).toUtf8();
        EXPECT_TRUE(written(toString, document) == "<r k=\"" + utf8 + "\">" + utf8 + "</r>");
    });
}

// Encodings that have text mode in files; then others, by the engine's name and by ICU's.
static const char* const byteOriented[] = {"UTF-8",       "ISO-8859-1", "US-ASCII",  "windows-1252",
                                           "ISO-8859-15", "KOI8-R",     "Shift_JIS", "EUC-JP",
                                           "GB18030",     "ISO-2022-JP"};
static const std::pair<const char*, const char*> wide[] = {
    {"UTF-16", "UTF16_PlatformEndian"},
    {"UTF-16BE", "UTF-16BE"},
    {"ISO-10646-UCS-4", "UTF32_PlatformEndian"}};

// Pairs fall on both sides of every edge of the engine's buffers, in text and in an attribute; what
// an encoding cannot hold comes back as a reference; file and string say the same.
static void carryEveryCharacter(const char* encoding, const char* icuName, bool hasTextMode) {
    const ScratchFolder folder;
    for (std::size_t shift = 0; shift < 4; ++shift) {
        std::u16string all =
            std::u16string(shift, u'a') + u"\u00e9\u20ac\u0416\u3042\u6f22\u00a5~\\";
        for (int i = 0; i < 10000; ++i)
            all += u"\U0001F600\u3042z";
        all += u"\u3042\U00020000\U0010FFFFz\u0416";
        const PelDOMDocument document = createWith({"1.0", encoding, std::nullopt});
        PelDOMElement root = rootOf(document);
        root.setAttribute("k", PelString(all));
        root.appendTextElement("t", PelString(all + u"\n&"));
        const std::string file = folder.write("f.xml", written(toFile, document, 1));
        std::string expected = written(toString, document, 1);
        if (hasTextMode)
            expected = replaced(expected, "\n", "\r\n");
        const std::string bytes = bytesOf(file);
        const icu::UnicodeString decoded(bytes.data(), static_cast<int32_t>(bytes.size()), icuName);
        ASSERT_TRUE(decoded == icu::UnicodeString::fromUTF8(expected)) << encoding;
        const PelDOMElement back = readFile(file).getDocumentElement();
        ASSERT_TRUE(back.getAttribute("k").view() == all) << encoding;
        ASSERT_TRUE(PelDOMText(childAt(childAt(back, 1), 0)).getValue().view() == all + u"\n&")
            << encoding;
        if (hasTextMode)
            expectAccepted(file);
        PelDOMWriter writer;
        writer.setEncoding(encoding);
        writer.setLineEnds(PelDOMWriter::CRLF);
        ASSERT_EQ(writer.writeFile(document, file), PelDOM::SUCCESS);
        ASSERT_TRUE(show(readFile(file).getDocumentElement()) == show(root)) << encoding;
    }
}

TEST(Encodings, KeepEveryCharacterWhereverAPieceEnds) {
    for (const char* name : byteOriented)
        inNewProcess([&] { carryEveryCharacter(name, name, true); });
    for (const auto& two : wide)
        inNewProcess([&] { carryEveryCharacter(two.first, two.second, false); });
}

TEST(Depth, TakesNoStackInReadingWalkingGrowingAndWriting) {
    inNewProcess([] {
        constexpr std::size_t depth = 1000000;
        PelDOMDocument document = parse(repeated("<a>", depth) + repeated("</a>", depth));
        PelDOMNode node = document;
        for (std::size_t level = 0; level < 2 * depth; ++level) { // down to the end, and on
            if (level >= depth)
                append(node, document.createElement("a"));
            node = childAt(node, 0);
        }
        EXPECT_EQ(written(toString, document).size(), 2 * depth * 7 - 3);
        EXPECT_EQ(written(toFile, document, 1).size(), 2 * depth * 9 + 1);
        PelDOMWriter writer;
        std::string bytes;
        writer.setEncoding("ISO-8859-1");
        writer.setDeclaration(false);
        EXPECT_EQ(writer.writeBytes(document, bytes), PelDOM::SUCCESS);
        EXPECT_EQ(bytes.size(), 2 * depth * 7 - 2);
    });
}
