// SPDX-License-Identifier: MIT
// Documents that are read with their source, changed, and written with its layout.
#include "read/PelXercesReader.h"
#include "support.h"

namespace {

using Method = PelXercesReadSettings::Method;
using Edit = std::function<void(PelDOMDocument&, PelDOMElement&)>;

struct Case {
    const char* name; // with a star: depends on the order of attributes
    std::string source;
    std::string written;
    Edit edit;
};

PelDOMDocument readKept(const std::string& source,
                        Method method = PelXercesReadSettings::usualMethod, bool isKept = true) {
    PelXercesReadSettings settings;
    settings.validation = PelDOMReader::NEVER;
    settings.isSourceKept = isKept;
    settings.method = method;
    PelXercesReader reader(settings);
    const PelXercesNodeRef node = reader.readText(u"source", source.data(), source.size());
    return node ? PelDOMDocument(PelXercesDOMNode::make(node)) : PelDOMDocument();
}

std::string writeKept(const PelDOMNode& node, const PelDOMWriter& settings = {}) {
    PelDOMWriter writer(settings);
    writer.setKeepLayout(true);
    std::string bytes;
    const PelDOM::Error code = writer.writeBytes(node, bytes);
    return code == PelDOM::SUCCESS ? bytes : writer.getMessage().toUtf8();
}

// By the scanner of plain documents and by the engine.
void expectWritten(const std::vector<Case>& cases) {
    for (const Case& each : cases)
        for (const Method method : {PelXercesReadSettings::usualMethod, Method::engine}) {
            PelDOMDocument document = readKept(each.source, method);
            PelDOMElement root = rootOf(document);
            if (!PelXercesFields::areNumbered() && each.name[0] == '*')
                continue; // attributes go by name there
            each.edit(document, root);
            EXPECT_EQ(writeKept(document), each.written)
                << each.name << (method == Method::engine ? ", by the engine" : "");
        }
}

PelDOMElement child(const PelDOMElement& parent, const char* name) {
    return parent.getChildElement(name);
}

const char* const brought = "<!DOCTYPE a [<!ENTITY e '<x/>t'><!ENTITY f 'z'><!ENTITY n ''>]>\n";
const char* const ignorable = "<!DOCTYPE a [<!ELEMENT a (b*)><!ELEMENT b (b*)>"
                              "<!ATTLIST b k CDATA 'd'>]>\n";

} // namespace

TEST(Keeping, WritesWhatWasNotChangedByteForByte) {
    const std::string types(brought);
    for (const std::string& source : std::vector<std::string>{
             "<a/>", "\xEF\xBB\xBF<a></a>\n",
             "<?xml version='1.0'\tstandalone='no' ?>\r\n<!-- c -->\r<a  k = 'v'\n "
             "b=\"&#65;&lt;'\" >"
             "<![CDATA[x]]>t]&amp;&#13;<b\n></b ><b /><?pi  x ?><?q?></a\t>\n<!--e-->\n\n",
             types + "<a>p&e;q&f;<b k='&f;>'/>&e;&e; y&n;</a>", types + "<a>&n;&f;<b/>&f;</a>\n",
             "<!DOCTYPE a [<!-- ' ]> --><?p '?><!ENTITY e \"]>'\"> ] ><a>\xE2\x82\xAC&e;</a>",
             std::string(ignorable) + "<a>\n <b/>\n <b\n></b>\n</a>\n",
             "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>",
             "<?xml version='1.0' encoding='ISO-2022-JP'?><a>\x1B$B$\"\x1B(B</a>",
             utf16Bytes(u"\uFEFF<?xml version='1.0' encoding='UTF-16'?>\n<a>\u20AC\U0001F600</a>"),
             utf16Bytes(u"\uFEFF<a>\u20AC</a>", false)})
        for (const Method method : {PelXercesReadSettings::usualMethod, Method::engine})
            EXPECT_EQ(writeKept(readKept(source, method)), source);
}

TEST(Keeping, ChangesWhatWasEditedAndNothingElse) {
    const std::string types(brought);
    expectWritten({
        {"values between their quotes", "<a x='1' y=\"2\"  z='3' />",
         "<a x='&apos;\"&lt;' y=\"'&quot;\"  z='3' />",
         [](auto&, auto& a) { a.putAttribute("x", "'\"<"), a.putAttribute("y", "'\""); }},
        {"*attributes that come and go", "<a x='1'\n   y='2' z='3' ><b/></a>",
         "<a x='1' z='3' n=\"4\" m=\"5\" ><b/></a>",
         [](auto&, auto& a) {
             a.putAttribute("n", "4"), a.removeAttribute("y"), a.putAttribute("m", "5");
         }},
        {"*an attribute that comes back", "<a x='1' y='2'/>", "<a y='2' x=\"1\"/>",
         [](auto&, auto& a) { a.removeAttribute("x"), a.putAttribute("x", "1"); }},
        {"values that stay", "<a x='&#65;'>&#66;<!--c--></a>", "<a x='&#65;'>&#66;<!--c--></a>",
         [](auto&, auto& a) {
             a.setAttribute("x", "A"), a.getFirstChild().setNodeValue("B"), a.setTagName("a");
         }},
        {"names at both ends", "<a ><b k='1'/><c></c\n></a >", "<n ><m k='1'/><o></o\n></n >",
         [](auto&, auto& a) {
             child(a, "b").setTagName("m"), child(a, "c").setTagName("o"), a.setTagName("n");
         }},
        {"values that another name normalises otherwise",
         "<!DOCTYPE a [<!ATTLIST a k NMTOKENS #IMPLIED j CDATA #IMPLIED>]>\n<a k=' x  y' "
         "j='&#x41;\t'/>",
         "<!DOCTYPE a [<!ATTLIST a k NMTOKENS #IMPLIED j CDATA #IMPLIED>]>\n<n k='x y' "
         "j='&#x41;\t'/>",
         [](auto&, auto& a) { a.setTagName("n"); }},
        {"text beside a reference to nothing", types + "<a>t&n;t<b/></a>", types + "<a>x<b/></a>",
         [](auto&, auto& a) { a.getFirstChild().setNodeValue("x"); }},
        {"texts, comments, sections, instructions", "<a>x<!--x--><![CDATA[x]]><?p  x?>&amp;</a>",
         "<a>&lt;<!--y--><![CDATA[<]]><?p y?>&amp;</a>",
         [](auto&, auto& a) {
             childAt(a, 0).setNodeValue("<"), childAt(a, 1).setNodeValue("y");
             childAt(a, 2).setNodeValue("<"), childAt(a, 3).setNodeValue("y");
         }},
        {"the encoding's own", "<?xml version='1.0' encoding='ISO-8859-1'?>\n<a>\xE9</a>",
         "<?xml version='1.0' encoding='ISO-8859-1'?>\n<a k=\"\xE9&#x20AC;\">\xE9</a>",
         [](auto&, auto& a) { a.putAttribute("k", u"\u00E9\u20AC"); }},
        {"what an entity brought, out as a whole", types + "<a>p&e;q<b/>&#65;&f;</a>",
         types + "<a>p<x/>T<b/>&#65;&f;</a>",
         [](auto&, auto& a) { child(a, "b").getPreviousSibling().setNodeValue("T"); }},
        {"below what an entity brought", types + "<a>&e;<b/>p&f;</a>",
         types + "<a><x k=\"1\"/>t<b/>p&f;</a>",
         [](auto&, auto& a) { child(a, "x").putAttribute("k", "1"); }},
        {"beside what an entity brought, and below it", types + "<a><b/>&e;</a>",
         types + "<a><b k=\"1\"/><x k=\"1\"/>t</a>",
         [](auto&, auto& a) {
             child(a, "b").putAttribute("k", "1"), child(a, "x").putAttribute("k", "1");
         }},
        {"a part of what an entity brought", types + "<a>&e;&e;</a>", types + "<a>t&e;</a>",
         [](auto&, auto& a) { a.removeChild(child(a, "x")); }},
        {"defaults that are written now", std::string(ignorable) + "<a><b/><b/></a>",
         std::string(ignorable) + "<a><b k=\"d\"/><b/></a>",
         [](auto&, auto& a) { child(a, "b").putAttribute("k", "d"); }},
        {"texts that are no markup together", "<a>]]<b/>></a>", "<a>]]&gt;</a>",
         [](auto&, auto& a) { a.removeChild(child(a, "b")); }},
        {"texts that stay as they were", "<a>x<b/>/> &#65;</a>", "<a>x/> &#65;</a>",
         [](auto&, auto& a) { a.removeChild(child(a, "b")); }},
        {"a text behind a new element", "<a>x<b/>&#65;</a>", "<a>x<b/><n>]</n>&#65;</a>",
         [](auto& d, auto& a) {
             PelDOMElement n = d.createElement("n");
             n.setTextContent("]"), a.insertBefore(n, child(a, "b").getNextSibling());
         }},
        {"what was the text before", "<a><b>&#65;</b><c><![CDATA[x]]></c></a>",
         "<a><b>&#65;</b><c>x</c></a>",
         [](auto&, auto& a) {
             child(a, "b").setTextContent("A"), child(a, "c").setTextContent("x");
         }},
        {"what an entity brought, taken out and back", types + "<a>&e;&e;</a>",
         types + "<a>&e;&e;</a>",
         [](auto&, auto& a) {
             const PelDOMNode x = child(a, "x"), next = x.getNextSibling();
             a.removeChild(x), a.insertBefore(x, next);
         }},
        {"an element that opens, and one that loses all", "<a><b k='1' /><c>x</c></a>",
         "<a><b k='1'>x</b><c></c></a>",
         [](auto&, auto& a) {
             child(a, "b").setTextContent("x"), child(a, "c").setTextContent("");
         }},
    });
}

TEST(Keeping, LaysOutWhatIsNewAsItsSiblings) {
    const auto add = [](PelDOMElement to, const char* name,
                        const PelDOMNode& before = PelDOMNode()) {
        PelDOMElement made = to.getOwnerDocument().createElement(name);
        to.insertBefore(made, before);
        return made;
    };
    const std::string lines = "<a>\n  <b/>\n\n  <c/>\n</a>\n";
    expectWritten({
        {"at the end", lines, "<a>\n  <b/>\n\n  <c/>\n  <n/>\n  <m>\n    <k/>\n  </m>\n</a>\n",
         [&](auto&, auto& a) { add(a, "n"), add(add(a, "m"), "k"); }},
        {"in the middle", lines, "<a>\n  <b/>\n\n  <n/>\n  <c/>\n</a>\n",
         [&](auto&, auto& a) { add(a, "n", child(a, "c")); }},
        {"behind a sibling", lines, "<a>\n  <b/>\n  <n/>\n\n  <c/>\n</a>\n",
         [&](auto&, auto& a) { add(a, "n", child(a, "b").getNextSibling()); }},
        {"in front of all", lines, "<a>\n  <n/>\n  <b/>\n\n  <c/>\n</a>\n",
         [&](auto&, auto& a) { add(a, "n", a.getFirstChild()); }},
        {"in the place of another", lines, "<a>\n  <n/>\n\n  <c/>\n</a>\n",
         [&](auto& d, auto& a) { a.replaceChild(d.createElement("n"), child(a, "b")); }},
        {"a line taken along", lines, "<a>\n  <b/>\n\n</a>\n",
         [](auto&, auto& a) { a.removeChild(child(a, "c")); }},
        {"all lines taken along", "<a>\n  <b/>\n  <c/>\n</a>", "<a>\n</a>",
         [](auto&, auto& a) { a.removeChild(child(a, "b")), a.removeChild(child(a, "c")); }},
        {"no line of its own", "<a>\n  <b/> <c/>\n</a>", "<a>\n  <b/> \n</a>",
         [](auto&, auto& a) { a.removeChild(child(a, "c")); }},
        {"a first child", "<a>\n\t<b/>\n</a>", "<a>\n\t<b>\n\t\t<n>x</n>\n\t</b>\n</a>",
         [&](auto&, auto& a) { add(child(a, "b"), "n").setTextContent("x"); }},
        {"on one line", "<a><b/></a>\n", "<a><b/><n><m/></n></a>\n",
         [&](auto&, auto& a) { add(add(a, "n"), "m"); }},
        {"beside text", "<a>\n  x <b/>\n</a>", "<a>\n  x <n/>\n</a>",
         [&](auto&, auto& a) {
             a.removeChild(child(a, "b")), add(a, "n", a.getFirstChild().getNextSibling());
         }},
        {"where white space is kept", "<a xml:space='preserve'>\n  <b/>\n</a>",
         "<a xml:space='preserve'>\n  <b/>\n<n/></a>", [&](auto&, auto& a) { add(a, "n"); }},
        {"with a line end of the program's own", "<a>\n  <b/>\n</a>", "<a>\n  <b/>\n<n/>\n</a>",
         [&](auto& d, auto& a) { add(a, "n"), a.appendChild(d.createTextNode("\n")); }},
        {"line ends of the document", "<a>\r\n <b/>\r\n</a>\r\n",
         "<a>\r\n <b/>\r\n <n>x\r\ny</n>\r\n</a>\r\n",
         [&](auto&, auto& a) { add(a, "n").setTextContent("x\ny"); }},
        {"white space that the tree does not hold", std::string(ignorable) + "<a>\n <b/>\n</a>\n",
         std::string(ignorable) + "<a>\n <b/>\n <b>\n  <b/>\n </b>\n</a>\n",
         [&](auto&, auto& a) { add(add(a, "b"), "b"); }},
        {"in the document", "<?xml version='1.0'?>\n<a/>\n<!--e-->\n",
         "<?xml version='1.0'?>\n<!--n-->\n<a/>\n",
         [](auto& d, auto& a) {
             d.insertBefore(d.createComment("n"), a), d.removeChild(a.getNextSibling());
         }},
        {"another root", "<!-- c -->\n<a/>\n", "<!-- c -->\n<n/>\n",
         [](auto& d, auto& a) { d.replaceChild(d.createElement("n"), a); }},
        {"moved among its siblings", "<a>\n  <b>1</b>\n  <c/>\n  <d/>\n</a>",
         "<a>\n  <c/>\n  <d/>\n  <b>1</b>\n</a>",
         [](auto&, auto& a) { a.appendChild(child(a, "b")); }},
        {"moved and back", lines, lines,
         [](auto&, auto& a) {
             const PelDOMNode moved = child(a, "b"), behind = moved.getNextSibling();
             a.removeChild(moved), a.insertBefore(moved, behind);
         }},
        {"moved to another depth",
         "<a>\n  <b>\n    <c k='1'>\n      <d/>\n    </c>\n  </b>\n</a>\n",
         "<a>\n  <b>\n  </b>\n  <c k='1'>\n    <d/>\n  </c>\n</a>\n",
         [](auto&, auto& a) { a.appendChild(child(child(a, "b"), "c")); }},
        {"moved with text in its lines", "<a>\n  <b>\n    <c>x\n    y</c>\n  </b>\n</a>",
         "<a>\n  <b>\n  </b>\n  <c>x\n    y</c>\n</a>",
         [](auto&, auto& a) { a.appendChild(child(child(a, "b"), "c")); }},
        {"*copied", "<a>\n  <b  k='1' j='2'/>\n</a>",
         "<a>\n  <b  k='1' j='2'/>\n  <b k=\"1\" j=\"2\"/>\n</a>",
         [](auto&, auto& a) { a.appendChild(child(a, "b").cloneNode(true)); }},
    });
}

TEST(Keeping, TakesWhatWasSetForWhatIsNew) {
    const auto written = [](const std::function<void(PelDOMWriter&)>& set) {
        PelDOMDocument document = readKept("<?xml version='1.0'?>\n<a\n>\n <b/>\n</a>");
        rootOf(document).appendTextElement("n", u"\u00E9");
        PelDOMWriter writer;
        set(writer);
        return writeKept(document, writer);
    };
    EXPECT_EQ(written([](auto& w) { w.setLineEnds(PelDOMWriter::CRLF); }),
              "<?xml version='1.0'?>\n<a\n>\n <b/>\r\n <n>\xC3\xA9</n>\n</a>");
    EXPECT_EQ(written([](auto& w) { w.setDeclaration(false); }),
              "\n<a\n>\n <b/>\n <n>\xC3\xA9</n>\n</a>");
    EXPECT_EQ(written([](auto& w) { w.setEncoding("ISO-8859-1"); }),
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a>\n <b/>\n<n>\xE9</n></a>\n");
    EXPECT_EQ(written([](auto& w) { w.setEncoding("utf-8"), w.setDeclaration(true); }),
              "<?xml version='1.0'?>\n<a\n>\n <b/>\n <n>\xC3\xA9</n>\n</a>");
}

TEST(Keeping, KnowsWhereNodesStood) {
    const std::string source =
        std::string(brought) + "<a>\xE2\x82\xAC&e;<b\n/>\r\n<!--c--><c/>\r&f;</a>";
    PelDOMDocument document = readKept(source);
    const PelDOMElement root = rootOf(document);
    std::string places;
    for (const PelDOMNode& node : root.getChildNodes())
        places += std::to_string(node.getLine()) + ":" + std::to_string(node.getColumn()) + " ";
    EXPECT_EQ(places, "2:4 2:5 2:5 2:8 3:3 4:1 4:9 4:13 ");
    child(root, "b").putAttribute("k", "1"); // stands where it stood
    EXPECT_EQ(child(root, "b").getLine(), 2U);
    EXPECT_EQ(document.getFirstChild().getColumn(), 1U);
    for (const PelDOMNode& node :
         {PelDOMNode(document), PelDOMNode(document.createElement("n")), childAt(parse("<a/>"), 0)})
        EXPECT_EQ(node.getLine(), 0U);
    EXPECT_EQ(
        answers({document.getInputEncoding(), services().createDocument("a").getInputEncoding()}),
        "'UTF-8' ''");
}

TEST(Keeping, WritesAttributesInTheirOrder) {
    for (const Method method :
         {PelXercesReadSettings::usualMethod, Method::fastNodes, Method::engine}) {
        const std::string source = std::string(ignorable) + "<a><b z='1' y='2' x='3'/></a>";
        PelDOMDocument document = readKept(source, method, false);
        PelDOMElement b = child(rootOf(document), "b");
        b.putAttribute("A", "4"), b.putAttribute("y", "5"), b.removeAttribute("z"),
            b.putAttribute("z", "6");
        PelDOMElement copy(document.importNode(b, true));
        copy.setAttribute("k", "7");
        rootOf(document).appendChild(copy);
        std::string bytes;
        PelDOMWriter writer;
        writer.setDeclaration(false);
        writer.writeBytes(document, bytes);
        EXPECT_EQ(replaced(bytes.substr(bytes.find("<a>")), "\"", ""),
                  PelXercesFields::areNumbered()
                      ? "<a><b y=5 x=3 A=4 z=6/><b y=5 x=3 A=4 z=6 k=7/></a>\n"
                      : "<a><b A=4 x=3 y=5 z=6/><b A=4 k=7 x=3 y=5 z=6/></a>\n");
        writer.setDefaultAttributes(true);
        writer.writeBytes(document, bytes);
        EXPECT_PRED2(contains, bytes, "k=\"d\"");
    }
}
