// SPDX-License-Identifier: MIT
#include "support.h"
#include "threads.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/dom/impl/DOMDocumentTypeImpl.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>

#include <algorithm>
#include <malloc.h>

namespace {

struct Settings {
    int indent = 0;
    const char* encoding = "UTF-8";
    bool hasDeclaration = true;
    PelDOMWriter::LineEnds ends = PelDOMWriter::LF;

    PelDOMWriter writer() const {
        PelDOMWriter made;
        made.setIndent(indent);
        made.setEncoding(encoding);
        made.setDeclaration(hasDeclaration);
        made.setLineEnds(ends);
        return made;
    }
};

const Settings indented{2, "UTF-8", false};
const Settings latin{0, "ISO-8859-1", false};
const std::string declared = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// What a node is written as, to bytes and to a stream alike. When it is not, both are untouched,
// and this is the code and the message.
std::string saved(const PelDOMNode& node, const Settings& settings = {}) {
    PelDOMWriter writer = settings.writer();
    std::string bytes = "kept";
    std::ostringstream stream;
    const PelDOM::Error code = writer.writeBytes(node, bytes);
    const std::string message = writer.getMessage().toUtf8();
    EXPECT_EQ(writer.writeStream(node, stream), code);
    EXPECT_EQ(writer.getMessage().toUtf8(), message);
    EXPECT_EQ(message.empty(), code == PelDOM::SUCCESS);
    EXPECT_EQ(stream.str(), code == PelDOM::SUCCESS ? bytes : "");
    if (code == PelDOM::SUCCESS)
        return bytes;
    EXPECT_EQ(bytes, "kept");
    return answers({code}) + ": " + message;
}

// A document whose root holds what only programs can make.
PelDOMDocument holding(PelDOM::NodeType type, const char16_t* value, const char16_t* target = u"") {
    PelDOMDocument document = parse("<r/>");
    xercesc::DOMDocument& engine = engineOf(document);
    xercesc::DOMNode* made = engine.createTextNode(value);
    if (type == PelDOM::CDATA_SECTION_NODE)
        made = engine.createCDATASection(value);
    else if (type == PelDOM::COMMENT_NODE)
        made = engine.createComment(value);
    else if (type == PelDOM::PROCESSING_INSTRUCTION_NODE)
        made = engine.createProcessingInstruction(target, value);
    engine.getDocumentElement()->appendChild(made);
    return document;
}

struct OpenType : xercesc::DOMDocumentTypeImpl {
    using xercesc::DOMDocumentTypeImpl::setInternalSubset;
};

} // namespace

TEST(Saving, AddsNothingWithinElements) {
    const std::pair<const char*, const char*> cases[] = {
        {"<!--c--> <?p d?>\n<!DOCTYPE r [<!ELEMENT r ANY>]><r/> <?q?>",
         "<!--c-->\n<?p d?>\n<!DOCTYPE r [<!ELEMENT r ANY>]>\n<r/>\n<?q?>\n"},
        {"<!DOCTYPE r [<!ELEMENT r (a)><!ELEMENT a EMPTY><!NOTATION n PUBLIC \"p'\" 's\"'>]><r> "
         "<a/> </r>",
         "<!DOCTYPE r [<!ELEMENT r (a)><!ELEMENT a EMPTY><!NOTATION n PUBLIC \"p'\" "
         "'s\"'>]>\n<r><a/></r>\n"},
        {"<r a='&lt;&amp;\"&#9;&#10;&#13;' b='2'>\n <a/>t&amp;&gt;&#13;<!-- - "
         "--><![CDATA[<]>]]></r>",
         "<r a=\"&lt;&amp;&quot;&#x9;&#xA;&#xD;\" b=\"2\">\n <a/>t&amp;&gt;&#xD;<!-- - "
         "--><![CDATA[<]>]]></r>\n"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(saved(parse(text)), declared + expected);
    EXPECT_EQ(saved(parse("<?xml version='1.0' standalone='yes'?><r/>")),
              "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<r/>\n");
    const PelDOMDocument created = services().createDocument("r");
    append(created, childAt(created, 0)); // the declaration is written first wherever it stands
    EXPECT_EQ(saved(created), declared + "<r/>\n");
    EXPECT_EQ(saved(created, latin), "<r/>\n");
}

TEST(Saving, WritesEveryKindOfNodeByItself) {
    const ScratchFolder folder;
    folder.write("\"", "<!ELEMENT r ANY><!ELEMENT a ANY><!ATTLIST a k CDATA ''>");
    const PelDOMDocument document = readFile(folder.write(
        "f.xml",
        "<!DOCTYPE r SYSTEM '\"' []><r>t&lt;<?p d?><!--c--><![CDATA[x]]><a k='\xC3\xA9'/></r>"));
    const PelDOMElement root = rootOf(document);
    const char* const parts[] = {"t&lt;", "<?p d?>", "<!--c-->", "<![CDATA[x]]>",
                                 "<a k=\"\xC3\xA9\"/>"};
    for (long i = 0; i < 5; ++i)
        EXPECT_EQ(saved(childAt(root, i)), parts[i]);
    EXPECT_EQ(saved(childAt(document, 0)), "<!DOCTYPE r SYSTEM '\"' []>");
    EXPECT_EQ(saved(childAt(root, 4), {2, "ISO-8859-1"}),
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a k=\"\xE9\"/>\n");
    EXPECT_EQ(saved(childAt(root, 1), {2, "ISO-8859-1"}), "<?p d?>");
    EXPECT_EQ(saved(childAt(services().createDocument("r"), 0)), declared);
    PelDOMNode attribute;
    PelXercesDOMNode::give(PelXercesDOMNode::of(*root.getNodeImp()),
                           engineOf(document).createAttribute(u"k"), attribute);
    EXPECT_EQ(saved(attribute), "internal: a node of this kind is not written by itself");
    EXPECT_EQ(saved(PelDOMNode()), "null-node: there is no node to write");
}

namespace {

// Takes nothing, some bytes, or all, and throws or fails when it is asked for more.
struct Buffer : std::streambuf {
    Buffer(std::streamsize bytes, bool isThrower) : room(bytes), throws(isThrower) {}
    std::streamsize xsputn(const char*, std::streamsize count) override {
        const struct mallinfo2 heap = mallinfo2();
        mostMemory = std::max(mostMemory, heap.uordblks + heap.hblkhd);
        if ((room -= count) >= 0)
            return count;
        if (throws)
            throw std::bad_alloc();
        return 0;
    }
    int sync() override { return xsputn(nullptr, 1) == 1 ? 0 : -1; }
    std::streamsize room;
    const bool throws;
    std::size_t mostMemory = 0;
};

} // namespace

TEST(Saving, AnswersACodeWhateverAStreamThrows) {
    const PelDOMDocument document = parse("<r>text</r>");
    const auto size = static_cast<std::streamsize>(saved(document).size());
    const std::ios_base::iostate masks[] = {std::ios_base::goodbit, std::ios_base::badbit,
                                            std::ios_base::badbit | std::ios_base::failbit};
    for (const bool throws : {false, true})
        for (const std::ios_base::iostate mask : masks)
            for (const std::streamsize room : {size + 1, size, std::streamsize{0}}) {
                Buffer buffer(room, throws);
                std::ostream stream(&buffer);
                stream.exceptions(mask);
                PelDOMWriter writer;
                const bool fits = room > size; // the flush takes one
                EXPECT_EQ(writer.writeStream(document, stream),
                          fits ? PelDOM::SUCCESS : PelDOM::INTERNAL_ERROR);
                EXPECT_EQ(writer.getMessage(), fits ? u"" : u"the stream has failed");
                EXPECT_EQ(stream.exceptions(), mask);
                EXPECT_EQ(stream.good(), fits);
            }
}

TEST(Saving, TakesMemoryForAPieceOfALongText) {
    const std::string plain(std::size_t{4} << 20, 'x');
    std::string marked = plain, escaped = plain;
    for (std::size_t i = 0; i < plain.size(); i += 100) {
        marked[i] = i % 200 == 0 ? '\n' : ']';
        escaped[i] = '"';
    }
    PelDOMDocument document = parse("<r><a/><a/><a/><a/></r>");
    PelDOMElement root = rootOf(document);
    append(root, document.createTextNode(plain));
    append(root, document.createCDATASection(marked));
    append(root, document.createComment(plain));
    root.setAttribute("k", escaped);
    for (const PelDOMWriter::LineEnds ends : {PelDOMWriter::LF, PelDOMWriter::CRLF})
        for (const char* const encoding : {"UTF-8", "UTF-16", "ISO-8859-1"}) {
            Buffer buffer(LONG_MAX, true);
            std::ostream stream(&buffer);
            const struct mallinfo2 heap = mallinfo2();
            EXPECT_EQ(Settings({0, encoding, true, ends}).writer().writeStream(document, stream),
                      PelDOM::SUCCESS);
            EXPECT_LT(buffer.mostMemory, heap.uordblks + heap.hblkhd + (std::size_t{1} << 20))
                << encoding;
        }
}

TEST(Saving, IndentsWhereNoTextStands) {
    const std::pair<const char*, const char*> cases[] = {
        {"<r><a/><!--c--><b><c/></b></r>",
         "<r>\n  <a/>\n  <!--c-->\n  <b>\n    <c/>\n  </b>\n</r>\n"},
        {"<r><a>t</a> <a> </a>\n\t<a></a></r>", "<r>\n  <a>t</a>\n  <a> </a>\n  <a/>\n</r>\n"},
        {"<r><p>t<b><i/> <i/></b></p><q><i/></q></r>",
         "<r>\n  <p>t<b><i/> <i/></b></p>\n  <q>\n    <i/>\n  </q>\n</r>\n"},
        {"<r><a/><![CDATA[ ]]></r>", "<r><a/><![CDATA[ ]]></r>\n"},
        {"<r><a/>&#13;</r>", "<r><a/>&#xD;</r>\n"},
        {"<r><a/> \xC2\xA0</r>", "<r><a/> \xC2\xA0</r>\n"},
        {"<r><a xml:space='preserve'> <b> <c/></b><d xml:space='default'><e/></d></a></r>",
         "<r>\n  <a xml:space=\"preserve\"> <b> <c/></b><d xml:space=\"default\">\n      <e/>\n    "
         "</d></a>\n</r>\n"},
        {"<r xml:space='other'><a xml:space='preserve'><b xml:space='other'><c/></b></a></r>",
         "<r xml:space=\"other\">\n  <a xml:space=\"preserve\"><b "
         "xml:space=\"other\"><c/></b></a>\n</r>\n"}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(saved(parse(text), indented), expected);
        EXPECT_EQ(saved(parse(expected), indented), expected);
        EXPECT_EQ(saved(parse(text), {2, "UTF-8", false, PelDOMWriter::CRLF}),
                  replaced(expected, "\n", "\r\n"));
    }
    const PelDOMElement kept = rootOf("<r xml:space='preserve'><m><a><b/></a></m>"
                                      "<d xml:space='default'><e><f/></e></d></r>");
    EXPECT_EQ(saved(childAt(childAt(kept, 0), 0), indented), "<a><b/></a>\n");
    EXPECT_EQ(saved(childAt(childAt(kept, 1), 0), indented), "<e>\n  <f/>\n</e>\n");
    EXPECT_EQ(saved(kept, {-1, "UTF-8", false}).substr(0, 42),
              "<r xml:space=\"preserve\"><m><a><b/></a></m>");
    // White space that is added would break the promise of a standalone document.
    const char* const promised =
        "<?xml version='1.0' standalone='yes'?><!DOCTYPE r [<!ELEMENT r ANY>]><r/>";
    EXPECT_EQ(saved(parse(promised), {1}).find("standalone"), std::string::npos);
    EXPECT_PRED2(contains, saved(parse(promised)), "standalone");
    EXPECT_PRED2(contains, saved(parse("<?xml version='1.0' standalone='yes'?><r/>"), {1}),
                 "standalone");
}

TEST(Saving, IndentsNoLineByMoreThan256) {
    std::string text, expected;
    for (std::size_t i = 0; i < 300; ++i) {
        text = "<a>" + text + "</a>";
        const std::size_t level = 299 - i;
        const std::string spaces(std::min<std::size_t>(256, level), ' ');
        expected = i == 0 ? spaces + "<a/>\n" : spaces + "<a>\n" + expected + spaces + "</a>\n";
    }
    EXPECT_EQ(saved(parse(text), {1, "UTF-8", false}), expected);
}

TEST(Saving, RefusesWhatNoReaderWouldTake) {
    const auto text = PelDOM::TEXT_NODE, cdata = PelDOM::CDATA_SECTION_NODE,
               comment = PelDOM::COMMENT_NODE, instruction = PelDOM::PROCESSING_INSTRUCTION_NODE;
    const PelDOMDocument named = parse("<r><x/></r>");
    static_cast<xercesc::DOMElementImpl*>(engineOf(named).getDocumentElement()->getFirstChild())
        ->fName = u"two words";
    const std::pair<PelDOMDocument, std::string> cases[] = {
        {holding(text, u"a\x1"), "a text holds U+0001, which XML forbids"},
        {holding(text, u"\xFFFE"), "a text holds U+FFFE, which XML forbids"},
        {holding(cdata, u"\xFFFF"), "a CDATA section holds U+FFFF, which XML forbids"},
        {holding(text, u"a\xD800"), "a text holds half a surrogate pair, U+D800"},
        {holding(cdata, u"\xDC00\xD800"), "a CDATA section holds half a surrogate pair, U+DC00"},
        {holding(comment, u"a--b"), "a comment holds two hyphens, or one at its end"},
        {holding(comment, u"a-"), "a comment holds two hyphens, or one at its end"},
        {holding(instruction, u"?>", u"p"), "an instruction holds ?>"},
        {holding(instruction, u"", u"xMl"), "an instruction has the target xml"},
    };
    EXPECT_EQ(saved(named), "internal: 'two words' is no name in XML (in the element 'two words')");
    for (const auto& [document, message] : cases)
        EXPECT_EQ(saved(document), "internal: " + message + " (in the element 'r')");
    PelDOMDocument rootless = services().createDocument("r");
    append(rootless.createElement("elsewhere"), rootOf(rootless));
    EXPECT_EQ(saved(rootless), "internal: the document has no root element");
    PelDOMDocument late = parse("<!DOCTYPE r [<!ELEMENT r ANY>]><r/>");
    const PelDOMNode type = childAt(late, 0);
    late.removeChild(type);
    append(late, type);
    EXPECT_EQ(saved(late), "internal: the document type stands after the root element");
    const PelDOMDocument attribute = parse("<r><a/></r>");
    PelDOMElement(childAt(rootOf(attribute), 0)).setAttribute("k", u"\xDBFFx");
    EXPECT_EQ(saved(attribute),
              "internal: an attribute holds half a surrogate pair, U+DBFF (in the element 'a')");
    // Of what can be mended nothing is lost.
    EXPECT_EQ(saved(holding(cdata, u"]]>\r]]"), indented),
              "<r><![CDATA[]]]]><![CDATA[>]]>&#xD;<![CDATA[]]]]></r>\n");
    EXPECT_EQ(saved(holding(cdata, u""), indented), "<r><![CDATA[]]></r>\n");
    EXPECT_EQ(saved(holding(comment, u"a\r\nb\rc"), {0, "UTF-8", false}),
              "<r><!--a\nb\nc--></r>\n");
    EXPECT_EQ(saved(holding(text, u""), {0, "UTF-8", false}), "<r/>\n");
}

TEST(Saving, WritesNamesBeyondTheBasicPlane) {
    const char* const body = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?xm\U0001F600l "
                             "a?>\n<r><\U00010000 \U00010000=\"\"/><?\U00010000 b?></r>\n";
    PelDOMDocument document = parseBytes(body);
    EXPECT_EQ(saved(document), body);
    PelDOMElement root = rootOf(document);
    PelDOMNode copy = childAt(root, 1).cloneNode(true);
    root.replaceChild(copy, childAt(root, 1));
    EXPECT_EQ(saved(document), body);
}

TEST(Saving, WritesXml11SoThatItReadsBack) {
    const char* const text = "<?xml version='1.1'?><r "
                             "k='&#1;&#x7F;&#x85;&#x2028;'>&#x1F;&#x9F;\xC2\xA0&#13;<!--c--></r>";
    const char* const body =
        "<r k=\"&#x1;&#x7F;&#x85;&#x2028;\">&#x1F;&#x9F;\xC2\xA0&#xD;<!--c--></r>";
    const std::string version11 = "<?xml version=\"1.1\" encoding=\"UTF-8\"?>\n";
    const PelDOMDocument document = parse(text);
    EXPECT_EQ(saved(document), version11 + body + "\n");
    EXPECT_EQ(show(parseBytes(saved(document))), show(document));
    EXPECT_EQ(saved(rootOf(document)), version11 + body);
    EXPECT_EQ(saved(document, indented),
              "internal: an attribute holds U+0001, which XML forbids (in the element 'r')");
    EXPECT_EQ(saved(parse("<?xml version='1.1'?><r/>"), indented), "<r/>\n");
    xercesc::DOMDocument& engine = engineOf(document);
    xercesc::DOMElement& root = *engine.getDocumentElement();
    root.replaceChild(engine.createCDATASection(u"a\x85\x1]"), root.getFirstChild());
    EXPECT_PRED2(contains, saved(document), "><![CDATA[a]]>&#x85;&#x1;<![CDATA[]]]><!--");
    root.appendChild(engine.createComment(u"\x7F"));
    EXPECT_EQ(saved(document), "internal: a comment holds U+007F, which XML takes as a reference "
                               "only (in the element 'r')");
}

TEST(SavingEncodings, PutsReferencesWhereTheyMeanSomething) {
    const std::string cannot = ", which the encoding does not have", inR = " (in the element 'r')",
                      badName =
                          "internal: the name '\xD0\x96' holds a character that cannot be written";
    const std::pair<const char*, std::string> cases[] = {
        {"<r k='\xC3\xA9\xD0\x96'>\xF0\x9F\x98\x80z</r>", "<r k=\"\xE9&#x416;\">&#x1F600;z</r>\n"},
        {"<r><![CDATA[a\xD0\x96\xD0\x96]]\xC3\xA9]]></r>",
         "<r><![CDATA[a]]>&#x416;&#x416;<![CDATA[]]\xE9]]></r>\n"},
        {"<r><![CDATA[\xD0\x96]]></r>", "<r>&#x416;</r>\n"},
        {"<r><!--\xD0\x96--></r>", "internal: a comment holds U+0416" + cannot + inR},
        {"<r><?p \xF0\x9F\x98\x80?></r>", "internal: an instruction holds U+1F600" + cannot + inR},
        {"<r><?\xD0\x96?></r>", badName + inR},
        {"<r><a \xD0\x96='1'/></r>", badName + " (in the element 'a')"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(saved(parse(text), latin), expected);
    const ScratchFolder folder;
    folder.write("\xD0\x96", "<!ELEMENT r ANY>");
    const std::string file = folder.write("f.xml", "<!DOCTYPE r SYSTEM '\xD0\x96' []><r/>");
    EXPECT_EQ(saved(readFile(file), latin), "internal: an identifier holds U+0416" + cannot);
    const auto withSubset = [](const std::string& subset) {
        const PelDOMDocument document = parse("<!DOCTYPE r [<!ELEMENT r ANY>]><r/>");
        auto* const type =
            static_cast<xercesc::DOMDocumentTypeImpl*>(engineOf(document).getDoctype());
        (type->*&OpenType::setInternalSubset)(PelString(subset).view().data());
        return saved(document, latin);
    };
    EXPECT_EQ(
        withSubset("<!ENTITY e \"\xD0\x96<\"><!ATTLIST r k CDATA \"100% \xD0\x96\">"),
        "<!DOCTYPE r [<!ENTITY e \"&#x416;<\"><!ATTLIST r k CDATA \"100% &#x416;\">]>\n<r/>\n");
    for (const char* const refused :
         {"<!ENTITY e \"&\xD0\x96;\">", "<!--\"\xD0\x96\"-->", "<?p \"\xD0\x96\"?>",
          "<!--'--><!ENTITY e SYSTEM \"\xD0\x96\">", "<!ENTITY e PUBLIC \"p\" \"\xD0\x96\">",
          "<!NOTATION n SYSTEM \"\xD0\x96\">", "<!ENTITY \xD0\x96 \"x\">",
          "<!ATTLIST r \xD0\x96 CDATA \"x\">"})
        EXPECT_EQ(withSubset(std::string("ANY>") + refused),
                  "internal: an internal subset holds U+0416" + cannot)
            << refused;
}

TEST(SavingEncodings, ReadBackWithAndWithoutDeclaration) {
    const PelDOMDocument document =
        parse(u"<r k='\u00e9\u20ac\u0416\u3042\U0001F600'>\u00a5~\\<![CDATA[\u0416\u3042]]></r>");
    const auto check = [&document](const char* name, bool needsDeclaration) {
        const std::string bytes = saved(document, {0, name});
        const PelDOMDocument back = parseBytes(bytes);
        const PelDOMElement root = rootOf(back);
        EXPECT_EQ(root.getAttribute("k"), rootOf(document).getAttribute("k")) << name;
        EXPECT_EQ(saved(back, {0, name}), bytes) << name;
        EXPECT_EQ(show(parseBytes(saved(root, {0, name}))), show(back)) << name;
        if (!needsDeclaration) {
            EXPECT_EQ(show(parseBytes(saved(document, {0, name, false}))), show(back)) << name;
        }
    };
    for (const char* name : {"UTF-8", "utf-8", "UTF-16", "UTF-16LE", "UTF-16BE"})
        check(name, false);
    for (const char* name : {"ISO-10646-UCS-4", "UTF-32LE", "ISO-8859-1", "US-ASCII",
                             "windows-1252", "ISO-8859-15", "KOI8-R", "Shift_JIS", "EUC-JP",
                             "GB18030", "ISO-2022-JP", "UTF-7", "IBM037", "ebcdic-cp-us"})
        check(name, true);
    // A mark stands where the name does not tell the order of the bytes, which is the processor's
    // then.
    const char16_t mark = 0xFEFF;
    for (const auto& [name, start] : {std::pair{"UTF-16", reinterpret_cast<const char*>(&mark)},
                                      {"UTF-16LE", "<\0"},
                                      {"UTF-16BE", "\0<"},
                                      {"utf-16le", "<\0"},
                                      {"utf-16be", "\0<"}})
        EXPECT_EQ(saved(document, {0, name}).substr(0, 2), std::string(start, 2)) << name;
    for (const char* bad : {"", "no-such", "UTF-16,version=1", "8859-1", "BOCU-1"})
        EXPECT_EQ(saved(document, {0, bad}).substr(0, 10), "internal: ") << bad;
    EXPECT_EQ(saved(document, {0, "BOCU-1"}),
              "internal: no reader would recognise the encoding 'BOCU-1'");
}

TEST(Writers, KeepTheirSettingsToThemselves) {
    PelDOMWriter one = Settings{3, "UTF-16", false, PelDOMWriter::CRLF}.writer();
    PelString unused;
    services().writeDocument(services().createDocument("r"), unused, 0, 1, 0);
    one.writeBytes(PelDOMNode(), *std::make_unique<std::string>());
    PelDOMWriter two = one;
    const auto settings = [](const PelDOMWriter& writer) {
        return answers({writer.getIndent(), writer.getEncoding(), writer.getDeclaration(),
                        writer.getLineEnds() == PelDOMWriter::CRLF, writer.getMessage()});
    };
    EXPECT_EQ(settings(two), "3 'UTF-16' 0 1 'there is no node to write'");
    two = PelDOMWriter();
    EXPECT_EQ(settings(two), "0 'UTF-8' 1 0 ''");
    EXPECT_EQ(settings(one), "3 'UTF-16' 0 1 'there is no node to write'");
    std::ofstream failed("/no/such/file");
    EXPECT_EQ(two.writeStream(parse("<r/>"), failed), PelDOM::INTERNAL_ERROR);
    EXPECT_EQ(two.getMessage(), "the stream has failed");
    std::ostringstream good;
    EXPECT_EQ(answers({two.writeStream(parse("<r/>"), good), two.getMessage()}), "ok ''");
}

TEST(Writers, RunInSeveralThreadsAtOnce) {
    ASSERT_EQ(services().init(), PelDOM::SUCCESS);
    std::vector<std::string> results(4);
    inFourThreads([&results](std::size_t number) {
        const PelDOMDocument document = parse(u"<r><a>\u0416</a></r>");
        for (int round = 0; round < 50; ++round)
            results[number] =
                saved(document, {number % 2 == 0 ? 2 : 0, number < 2 ? "UTF-8" : "KOI8-R", false});
    });
    EXPECT_EQ(results, (std::vector<std::string>{
                           "<r>\n  <a>\xD0\x96</a>\n</r>\n", "<r><a>\xD0\x96</a></r>\n",
                           "<r>\n  <a>\xF6</a>\n</r>\n", "<r><a>\xF6</a></r>\n"}));
    services().terminate();
}
