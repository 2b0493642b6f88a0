// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/PelXercesDOMNode.h"
#include "xerces/PelXercesDeclaration.h"

#include <unicode/ucnv.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/XMLFormatter.hpp>

#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The first write settles the output encoding of a process, so this one never writes: each test
// writes in a child.
void inNewProcess(const std::function<void()>& test) {
    const pid_t child = fork();
    if (child == 0) {
        test();
        std::cout.flush();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

xercesc::DOMDocument& engineDocument(const PelDOMDocument& document) {
    return *PelXercesDOMNode::of(*document.getNodeImp()).getDocument();
}

// A created document whose declaration has other values.
PelDOMDocument createWith(const PelXercesDeclaration& values) {
    PelDOMDocument document = services().createDocument("r");
    xercesc::DOMDocument& engine = engineDocument(document);
    engine.replaceChild(PelXercesDeclaration::create(engine, values), engine.getFirstChild());
    return document;
}

std::string written(const PelDOMDocument& document, int newlines = 0, int terminator = 0) {
    PelString text("unchanged");
    EXPECT_EQ(services().writeDocument(document, text, 0, newlines, terminator), PelDOM::SUCCESS);
    return text.toUtf8();
}

// What other XML tools say of a file.
void expectAccepted(const std::string& file) {
    if (std::system("command -v xmllint >/dev/null") != 0)
        return;
    EXPECT_EQ(std::system(("xmllint --noout --nonet --huge '" + file + "'").c_str()), 0) << file;
}

TEST(Writing, FramesACreatedDocument) {
    inNewProcess([] {
        const ScratchFolder folder;
        const PelDOMDocument document = services().createDocument("root");
        PelString name(folder.file("\xD1\x84.xml").c_str());
        EXPECT_EQ(services().writeDocument(document, name), PelDOM::SUCCESS);
        const std::string text =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n\r\n\r\n\r\n<root/>\r\n\r\n";
        EXPECT_EQ(bytesOf(name.toUtf8()), text);
        EXPECT_EQ(services().writeDocument(document, name, 1, 1, 1), PelDOM::SUCCESS);
        EXPECT_EQ(bytesOf(name.toUtf8()), text + '\0');
        EXPECT_EQ(services().writeDocument(document, name, 1, 0, 1), PelDOM::SUCCESS);
        EXPECT_EQ(bytesOf(name.toUtf8()),
                  std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<root/>") + '\0');
        EXPECT_EQ(written(document, 1, 1),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n\n\n\n<root/>\n\n");
        EXPECT_EQ(written(document), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root/>");
    });
}

TEST(Writing, GivesEachKindOfNodeItsMarkup) {
    inNewProcess([] {
        const ScratchFolder folder;
        folder.write("a.dtd", "<!ELEMENT a ANY><!ATTLIST a k CDATA #IMPLIED z CDATA #IMPLIED>");
        const struct {
            const char* text;
            const char* plain;
            const char* withNewlines;
        } cases[] = {
            {"<?xml version='1.0'?><a z='1' k='v'><b>x</b><!--c--></a>",
             "<a k=\"v\" z=\"1\"><b>x</b><!--c--></a>",
             "\n<a k=\"v\" z=\"1\">\n<b>x</b><!--c--></a>\n\n"},
            {"<?p?><!--a--b?--><a> <?q d d?>\n<![CDATA[<&>]]>&lt;&gt;&amp;\"'&#13;&#10;&#9;</a>",
             nullptr, nullptr},
            {"<?p?><!--a-b?--><a> <?q d d?>\n<![CDATA[<&>]]>&lt;&gt;&amp;\"'&#13;&#10;&#9;</a>",
             "<?p?><!--a-b?--><a> <?q d d?>\n<![CDATA[<&>]]>&lt;&gt;&amp;\"'&#xD;\n\t</a>",
             "<?p?>\n<!--a-b?-->\n\n<a> <?q d "
             "d?>\n<![CDATA[<&>]]>&lt;&gt;&amp;\"'&#xD;\n\t</a>\n\n"},
            {"<a k='&lt;&gt;&amp;&quot;&apos;&#13;&#10;&#9;'/>",
             "<a k=\"&lt;>&amp;&quot;'&#xD;&#xA;&#x9;\"/>", nullptr},
            {"<!DOCTYPE a SYSTEM 'a.dtd'><a/>", "<!DOCTYPE a SYSTEM \"a.dtd\"><a/>",
             "<!DOCTYPE a SYSTEM \"a.dtd\">\n\n<a/>\n\n"},
            {"<!DOCTYPE a PUBLIC 'p' 'a.dtd' [<!ENTITY e 'x'>]><a>&e;</a>",
             "<!DOCTYPE a PUBLIC \"p\" \"a.dtd\"[<!ENTITY e \"x\">]><a>x</a>", nullptr},
            {"<!DOCTYPE a [ <!ELEMENT a ANY> ]><a/>", "<!DOCTYPE a[ <!ELEMENT a ANY> ]><a/>",
             nullptr},
        };
        for (const auto& c : cases) {
            const std::string file = folder.write("in.xml", c.text);
            const PelDOMDocument document = services().readDocument(file.c_str());
            ASSERT_EQ(document.isNull(), c.plain == nullptr ? 1 : 0) << c.text;
            if (c.plain == nullptr)
                continue;
            EXPECT_EQ(written(document), c.plain);
            if (c.withNewlines != nullptr) {
                EXPECT_EQ(written(document, 1), c.withNewlines);
            }
            const std::string out = folder.file("out.xml");
            PelString name(out.c_str());
            EXPECT_EQ(services().writeDocument(document, name, 1, 0, 0), PelDOM::SUCCESS);
            EXPECT_EQ(show(services().readDocument(name)), show(document)) << c.text;
            expectAccepted(out);
        }
    });
}

TEST(Writing, WritesWhatOnlyProgramsCanMake) {
    inNewProcess([] {
        PelDOMDocument document = createWith({"", "", PelString("yes")});
        xercesc::DOMDocument& engine = engineDocument(document);
        xercesc::DOMElement& root = *engine.getDocumentElement();
        root.appendChild(engine.createTextNode(u""));
        root.appendChild(engine.createElement(u"e"))->appendChild(engine.createTextNode(u""));
        root.appendChild(engine.createEntityReference(u"ref"));
        EXPECT_EQ(written(document), "<?xml version=\"\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                                     "<r><e></e>&ref;</r>");
        PelDOMNode declaration = childAt(document, 0);
        document.appendChild(declaration);
        EXPECT_EQ(written(document, 1),
                  "\n<r>\n<e></e>&ref;</r>\n"
                  "<?xml version=\"\" encoding=\"UTF-8\" standalone=\"yes\"?>\n\n\n\n");
        testing::internal::CaptureStderr();
        const PelDOMNode attribute(new PelXercesDOMNode(
            PelXercesDOMNode::of(*document.getNodeImp()).to(engine.createAttribute(u"k"))));
        EXPECT_EQ(written(PelDOMDocument(attribute)), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unrecognized node type = 2\n");
    });
}

TEST(FirstWrite, SettlesTheEncodingOfTheProcess) {
    inNewProcess([] {
        const ScratchFolder folder;
        PelString name(folder.file("f").c_str());
        PelDOMDocument latin = createWith({"1.0", "ISO-8859-1", std::nullopt});
        PelDOMText text = latin.createTextNode(u"\u00e9\u0416");
        latin.getDocumentElement().appendChild(text);
        EXPECT_EQ(services().writeDocument(latin, name, 1, 0, 0), PelDOM::SUCCESS);
        EXPECT_EQ(bytesOf(name.toUtf8()),
                  "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<r>\xE9&#x416;</r>");
        services().terminate();
        PelDOMUtilites::releaseUtilities();
        EXPECT_EQ(written(services().createDocument("a")),
                  "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a/>");
    });
    for (const char* encoding : {"", "ISO-8859-1"})
        inNewProcess([encoding] { // empty, or not the first child
            PelDOMDocument document = createWith({"1.0", encoding, std::nullopt});
            PelDOMNode declaration = childAt(document, 0);
            if (*encoding != 0)
                document.appendChild(declaration);
            EXPECT_NE(written(document).find("encoding=\"UTF-8\""), std::string::npos);
        });
    inNewProcess([] { // nothing reaches the encoding without a document
        PelString target("kept");
        EXPECT_EQ(services().writeDocument(PelDOMDocument(), target, 0, 1, 1), PelDOM::NULL_NODE);
        EXPECT_EQ(target, "kept");
        EXPECT_NE(written(createWith({"1.0", "US-ASCII", std::nullopt})).find("US-ASCII"),
                  std::string::npos);
    });
}

TEST(Failures, OfTheEncodingLast) {
    inNewProcess([] {
        const ScratchFolder folder;
        PelString name(folder.write("f", "old").c_str());
        PelString target("kept");
        const PelDOMDocument odd = createWith({"1.0", "no-such-encoding", std::nullopt});
        EXPECT_EQ(services().writeDocument(odd, target, 0, 0, 0), PelDOM::INTERNAL_ERROR);
        EXPECT_EQ(services().writeDocument(services().createDocument("a"), name),
                  PelDOM::INTERNAL_ERROR);
        EXPECT_EQ(target, "kept");
        EXPECT_EQ(bytesOf(name.toUtf8()), "");
    });
}

TEST(Failures, OfFilesAndTextAreContained) {
    inNewProcess([] {
        const ScratchFolder folder;
        PelDOMDocument document = services().createDocument("r");
        PelString name(folder.write("f", "old").c_str());
        EXPECT_EQ(services().writeDocument(document, ""), PelDOM::INVALID_VALUE);
        EXPECT_EQ(services().writeDocument(PelDOMDocument(), name), PelDOM::NULL_NODE);
        EXPECT_EQ(bytesOf(name.toUtf8()), "");
        for (const std::string& lost :
             {folder.file("no/such/folder"), folder.file(""), std::string("/dev/full")})
            EXPECT_EQ(services().writeDocument(document, lost.c_str()), PelDOM::SUCCESS) << lost;
        PelDOMElement root = document.getDocumentElement();
        for (const char16_t* bad :
             {u"\xD800", u"\xDC00", u"a\xDBFF", u"\xD83D\xD83D\xDE00", u"\xDE00\xD83D"}) {
            root.setAttribute("k", bad);
            PelString target("kept");
            EXPECT_EQ(services().writeDocument(document, target, 0, 0, 0), PelDOM::INTERNAL_ERROR);
            EXPECT_EQ(services().writeDocument(document, name), PelDOM::INTERNAL_ERROR);
            EXPECT_EQ(target, "kept");
        }
        root.setAttribute("k", u"\xD83D\xDE00");
        EXPECT_NE(written(document).find("\xF0\x9F\x98\x80"), std::string::npos);
    });
}

// The writer escapes by itself; the engine's formatter says what is right.
TEST(Escapes, AreThoseOfTheEnginesFormatter) {
    inNewProcess([] {
        std::u16string all;
        for (char16_t unit = 1; unit != 0; ++unit)
            if (unit < 0xD800 || unit > 0xDFFF)
                all.push_back(unit);
        PelDOMDocument document = parse("<r/>");
        PelDOMElement root = document.getDocumentElement();
        root.setAttribute("k", PelString(all));
        PelDOMText text = document.createTextNode(PelString(all));
        root.appendChild(text);
        const auto formatted = [&](xercesc::XMLFormatter::EscapeFlags mode) {
            xercesc::MemBufFormatTarget target;
            xercesc::XMLFormatter formatter(u"UTF-8", &target, mode,
                                            xercesc::XMLFormatter::UnRep_CharRef);
            formatter << all.c_str();
            return std::string(reinterpret_cast<const char*>(target.getRawBuffer()),
                               target.getLen());
        };
        EXPECT_TRUE(written(document) == "<r k=\"" + formatted(xercesc::XMLFormatter::AttrEscapes) +
                                             "\">" + formatted(xercesc::XMLFormatter::CharEscapes) +
                                             "</r>");
    });
}

/// Encodings by the engine's name, with ICU's and whether a file has text mode.
const struct {
    const char* name;
    const char* icuName;
    bool isByteOriented;
} encodings[] = {{"UTF-8", "UTF-8", true},
                 {"ISO-8859-1", "ISO-8859-1", true},
                 {"US-ASCII", "US-ASCII", true},
                 {"windows-1252", "windows-1252", true},
                 {"ISO-8859-15", "ISO-8859-15", true},
                 {"KOI8-R", "KOI8-R", true},
                 {"Shift_JIS", "Shift_JIS", true},
                 {"EUC-JP", "EUC-JP", true},
                 {"GB18030", "GB18030", true},
                 {"ISO-2022-JP", "ISO-2022-JP", true},
                 {"UTF-16", "UTF-16LE", false},
                 {"UTF-16BE", "UTF-16BE", false},
                 {"ISO-10646-UCS-4", "UTF-32LE", false}};

std::u16string decode(const std::string& bytes, const char* encoding) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(encoding, &status);
    std::u16string text(2 * bytes.size() + 1, u'\0');
    const int32_t length = ucnv_toUChars(converter, text.data(), static_cast<int32_t>(text.size()),
                                         bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    EXPECT_TRUE(U_SUCCESS(status)) << encoding;
    ucnv_close(converter);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

// Pairs fall on both sides of every edge of the engine's buffers, in text and in an attribute; what
// an encoding cannot hold comes back as a reference; file and string say the same.
TEST(Encodings, CarryEveryCharacterAcrossEveryEdge) {
    for (const auto& encoding : encodings)
        inNewProcess([&encoding] {
            const ScratchFolder folder;
            PelString name(folder.file("f.xml").c_str());
            for (std::size_t shift = 0; shift < 4; ++shift) {
                std::u16string all =
                    std::u16string(shift, u'a') + u"\u00e9\u20ac\u0416\u3042\u6f22\u00a5~\\";
                for (int i = 0; i < 20000; ++i)
                    all += u"\U0001F600";
                all += u"\u3042\U00020000\U0010FFFFz\u0416";
                PelDOMDocument document = createWith({"1.0", encoding.name, std::nullopt});
                PelDOMElement root = document.getDocumentElement();
                root.setAttribute("k", PelString(all));
                root.appendTextElement("t", PelString(all + u"\n&"));
                ASSERT_EQ(services().writeDocument(document, name), PelDOM::SUCCESS)
                    << encoding.name;
                PelString text;
                ASSERT_EQ(services().writeDocument(document, text, 0, 1, 0), PelDOM::SUCCESS);
                std::u16string expected(text.view());
                if (encoding.isByteOriented)
                    for (std::size_t at = 0; (at = expected.find(u'\n', at)) != expected.npos;
                         at += 2)
                        expected.insert(at, 1, u'\r');
                ASSERT_TRUE(decode(bytesOf(name.toUtf8()), encoding.icuName) == expected)
                    << encoding.name;
                const PelDOMElement back = services().readDocument(name).getDocumentElement();
                ASSERT_TRUE(back.getAttribute("k").view() == all) << encoding.name;
                PelString value;
                PelDOMElement(childAt(back, 1)).getChildTextValue(value);
                ASSERT_TRUE(value.view() == all + u"\n&") << encoding.name;
                if (encoding.isByteOriented)
                    expectAccepted(name.toUtf8());
            }
        });
}

TEST(Encodings, OfASingleByteMatchAPlainReference) {
    inNewProcess([] {
        const ScratchFolder folder;
        PelString name(folder.file("f.xml").c_str());
        PelDOMDocument document = createWith({"1.0", "KOI8-R", std::nullopt});
        document.getDocumentElement().setAttribute("k", u"\u0416\U0001F600\u00e9");
        EXPECT_EQ(services().writeDocument(document, name, 1, 0, 0), PelDOM::SUCCESS);
        EXPECT_EQ(bytesOf(name.toUtf8()), "<?xml version=\"1.0\" encoding=\"KOI8-R\"?>\r\n"
                                          "<r k=\"\xF6&#x1F600;&#xE9;\"/>");
    });
}

TEST(Writing, ADeepDocumentTakesNoStack) {
    inNewProcess([] {
        constexpr std::size_t depth = 1000000;
        PelDOMDocument document = services().createDocument("a");
        PelDOMElement element = document.getDocumentElement();
        for (std::size_t i = 1; i < depth; ++i) {
            PelDOMElement child = document.createElement("a");
            element.appendChild(child);
            element = child;
        }
        const ScratchFolder folder;
        const std::string file = folder.file("deep.xml");
        EXPECT_EQ(services().writeDocument(document, file.c_str()), PelDOM::SUCCESS);
        const std::size_t declaration = 39;
        const std::string text = written(document);
        EXPECT_EQ(text.size(), declaration + depth * 7 - 3);
        EXPECT_EQ(bytesOf(file).size(), text.size() + 2 * depth + 9);
    });
}

} // namespace
