// SPDX-License-Identifier: MIT
#include "support.h"

#include <algorithm>
#include <sstream>

// Without the line breaks that the writer adds.
static std::string written(const PelDOMDocument& document) {
    PelString text;
    services().writeDocument(document, text, 0, 1, 0);
    std::string bytes = text.toUtf8();
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\n'), bytes.end());
    return bytes;
}

// The nodes that a case names: "/" the document, "/0/1" by positions, "~" null, "@" another
// document's root, a new one by "<name", "|text", "!comment", "[cdata", "?target".
static PelDOMNode nodeAt(PelDOMDocument& document, const std::string& path) {
    const PelString rest(path == "|_" || path == "[_" ? " \n" : path.substr(1));
    switch (path[0]) {
    case '@':
        return rootOf("<other/>");
    case '<':
        return document.createElement(rest);
    case '|':
        return document.createTextNode(rest);
    case '!':
        return document.createComment(rest);
    case '[':
        return document.createCDATASection(rest);
    case '?':
        return document.createProcessingInstruction(rest, "d");
    case '/':
        break;
    default:
        return PelDOMNode();
    }
    PelDOMNode node = document;
    std::istringstream positions(path.substr(1));
    for (std::string position; std::getline(positions, position, '/');)
        node = childAt(node, std::stol(position));
    return node;
}

// In front of (i), in place of (r), out of (x): what the node, the child and the other one are, and
// the document afterwards; without that the change is refused, and nothing is changed.
TEST(Changes, AreMadeExactlyOrNotAtAll) {
    const char* const small = "<r><a/><b><c/></b>t</r>";
    const char* const typed = "<!DOCTYPE r [<!ELEMENT r ANY>]><!--1--><r/>";
    const struct {
        const char* xml; // null: a created document
        bool goesOn;     // with what the change before has left
        std::vector<std::string> changes;
    } cases[] = {
        {small,
         false,
         {"i /0 <n /0/0 = #9(r(n a b(c) |t|))",
          "i /0 <n /0/1 = #9(r(a n b(c) |t|))",
          "i /0 <n /0/2 = #9(r(a b(c) n |t|))",
          "i /0 <n ~ = #9(r(a b(c) |t| n))",
          "i /0/0 |x ~ = #9(r(a(|x|) b(c) |t|))",
          "i /0 /0/2 /0/0 = #9(r(|t| a b(c)))",
          "i /0 /0/0 /0/2 = #9(r(b(c) a |t|))",
          "i /0 /0/0 /0/1 = #9(r(a b(c) |t|))",
          "i /0 /0/1 /0/1 = #9(r(a b(c) |t|))",
          "i /0 /0/0 ~ = #9(r(b(c) |t| a))",
          "i /0 /0/2 ~ = #9(r(a b(c) |t|))",
          "i /0 /0/1/0 /0/1 = #9(r(a c b |t|))",
          "i /0/1/0 /0/0 ~ = #9(r(b(c(a)) |t|))",
          "r /0 <n /0/0 = #9(r(n b(c) |t|))",
          "r /0 <n /0/2 = #9(r(a b(c) n))",
          "r /0 /0/0 /0/1 = #9(r(a |t|))",
          "r /0 /0/1 /0/0 = #9(r(b(c) |t|))",
          "r /0 /0/1/0 /0/1 = #9(r(a c |t|))",
          "r /0 /0/1 /0/1 = #9(r(a b(c) |t|))",
          "x /0 /0/0 = #9(r(b(c) |t|))",
          "x /0 /0/1 = #9(r(a |t|))",
          "x /0 /0/2 = #9(r(a b(c)))",
          "x /0/1 /0/1/0 = #9(r(a b |t|))"}},
        // in front of no child, what is no child, cycles, another document's, into what holds no
        // children
        {small, false, {"i /0 <n /0/1/0", "i /0 /0/0 <n",    "i /0/0 /0/0 /0/0",
                        "i /0/1 /0/1 ~",  "i /0/1/0 /0/1 ~", "i /0/0 /0 ~",
                        "i /0/0 / ~",     "i /0 @ ~",        "i /0 <n @",
                        "i /0/2 |x ~",    "r /0 <n /0/1/0",  "r /0 <n <m",
                        "r /0 <n /0",     "r /0 /0 /0/0",    "r /0/1 /0/1 /0/1/0",
                        "r /0 @ /0/0",    "x /0 /0/1/0",     "x /0 /0",
                        "x /0 <n",        "x /0 /"}},
        // a document's own children
        {small,
         true,
         {"i / !c /0 = #9(#8 r(a b(c) |t|))", "i / ?p ~ = #9(#8 r(a b(c) |t|) #7)",
          "i / |_ /1 = #9(#8 | \n| r(a b(c) |t|) #7)", "i / /2 /0 = #9(r(a b(c) |t|) #8 | \n| #7)",
          "i / |x /1", "i / | /1", "i / [_ /1", "i / <n ~", "r / <n /1", "r / |x /0",
          "r / <n /0 = #9(n #8 | \n| #7)", "r / !c /0 = #9(#8 #8 | \n| #7)",
          "i / <m /1 = #9(#8 m #8 | \n| #7)", "x / /1 = #9(#8 #8 | \n| #7)",
          "i / <o ~ = #9(#8 #8 | \n| #7 o)"}},
        // the document type: before the root
        {typed,
         true,
         {"i /2 /0 ~", "i /0 <n ~", "i / /0 ~", "i / /0 /2 = #9(#8 #10 r)", "i / /2 /1",
          "i / /2 /0", "i / /2 ~ = #9(#8 #10 r)", "r / /1 /2 = #9(#8 #10)", "i / <n /0",
          "i / <n /1", "i / <n ~ = #9(#8 #10 n)", "r / <n /1", "r / /2 /1 = #9(#8 n)"}},
        // the declaration: first
        {nullptr,
         false,
         {"i / !c /0", "i /1 /0 ~", "i / /0 ~", "i / /0 /1 = #9(#13 r)", "r / /0 /1 = #9(#13)",
          "r / /1 /0 = #9(r)"}},
        {nullptr,
         true,
         {"i / !c /1 = #9(#13 #8 r)", "i / /0 /2", "i / /2 /0", "i / /1 /0",
          "r / !d /0 = #9(#8 #8 r)"}},
    };
    for (const auto& [xml, goesOn, changes] : cases) {
        PelDOMDocument document;
        for (const std::string& change : changes) {
            SCOPED_TRACE(change);
            if (!goesOn || &change == &changes[0])
                document = xml != nullptr ? parse(xml) : services().createDocument("r");
            std::istringstream words(change);
            char operation = 0;
            std::string path;
            PelDOMNode nodes[3];
            words >> operation;
            for (int i = 0; i < (operation == 'x' ? 2 : 3); ++i)
                nodes[i] = nodeAt(document, (words >> path, path));
            auto& [parent, child, other] = nodes;
            const std::string before = show(document);
            const std::size_t end = change.find(" = ");
            const PelDOM::Error code = operation == 'i'   ? parent.insertBefore(child, other)
                                       : operation == 'r' ? parent.replaceChild(child, other)
                                                          : parent.removeChild(child);
            EXPECT_EQ(code, end != change.npos ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE);
            EXPECT_EQ(show(document), end != change.npos ? change.substr(end + 3) : before);
            if (end == change.npos || operation == 'i' || child == other)
                continue;
            EXPECT_FALSE((operation == 'x' ? child : other).getParentNode());
        }
    }
}

TEST(Changes, KeepRemovedNodesUsable) {
    PelDOMDocument document = parse("<r><a><b>t</b></a></r>");
    PelDOMElement root = document.getDocumentElement();
    PelDOMElement a(childAt(root, 0));
    expectAnswers({{root.removeChild(a), "ok"},
                   {root, "r"},
                   {a, "a(b(|t|))"},
                   {a.setAttribute("k", "v"), "ok"},
                   {a.appendTextElement("c", "t"), "ok"},
                   {a, "a k=v(b(|t|) c(|t|))"},
                   {root.insertBefore(a, PelDOMNode()), "ok"},
                   {root, "r(a k=v(b(|t|) c(|t|)))"},
                   {document.removeChild(root), "ok"},
                   {document, "#9"},
                   {PelDOMNode(nullptr), "null"}});
    EXPECT_EQ(show(document.getDocumentElement()), "#0");
    expectAnswers({{document.appendChild(document.createElement("n")), "ok"}, {document, "#9(n)"}});
}

TEST(Changes, AnswerForNullHandles) {
    PelDOMDocument document = parse("<r><a/></r>"), nothing;
    PelDOMElement root = document.getDocumentElement(), none;
    const PelDOMNode a = childAt(root, 0);
    PelDOMNode absent;
    document.getParentNode(absent);
    expectAnswers({{none.insertBefore(a, none), "null-node"},
                   {root.insertBefore(none, a), "null-node"},
                   {root.insertBefore(absent, a), "null-node"},
                   {none.replaceChild(a, a), "null-node"},
                   {root.replaceChild(none, a), "null-node"},
                   {root.replaceChild(a, none), "null-node"},
                   {root.removeChild(none), "null-node"},
                   {absent.removeChild(a), "null-node"},
                   {none.cloneNode(true), "null"},
                   {absent.cloneNode(true), "null"},
                   {nothing.importNode(a, true), "null"},
                   {document.importNode(none, true), "null"},
                   {nothing.createComment("c"), "null"},
                   {nothing.createCDATASection("c"), "null"},
                   {none.setTagName("n"), "null-node"},
                   {root.setTagName(""), "invalid"},
                   {document, "#9(r(a))"},
                   {root.insertBefore(a, absent), "ok"}});
    EXPECT_EQ(nothing.createProcessingInstruction("p", "").isNull(), 1);
}

TEST(NewNodes, AreRefusedWhereXmlForbidsThem) {
    PelDOMDocument document = parse("<r/>");
    PelDOMElement root = document.getDocumentElement();
    const LogWatch log;
    for (const char16_t* const data : {u"", u"d", u"a - b", u"]]", u"? >", u"<&>", u"\U0001F600"})
        for (const PelDOMNode& made :
             {document.createComment(data), document.createCDATASection(data),
              document.createProcessingInstruction("p", data)})
            EXPECT_EQ(root.insertBefore(made, PelDOMNode()), PelDOM::SUCCESS) << PelString(data);
    EXPECT_EQ(log.text(), "");
    const std::string all = written(document);
    for (const char* const part :
         {"<!--d-->", "<![CDATA[d]]>", "<?p d?>", "<!--]]-->", "<![CDATA[? >]]>"})
        EXPECT_NE(all.find(part), all.npos) << part;
    const PelDOMNode refused[] = {
        document.createComment("--"),
        document.createComment("-"),
        document.createCDATASection("]]>"),
        document.createProcessingInstruction("p", "?>"),
        document.createProcessingInstruction("", "d"),
        document.createProcessingInstruction("1", "d"),
        document.createProcessingInstruction("xMl", "d"),
        document.createComment(u"\xD800"),
        document.createComment(PelString(std::u16string_view(u"a\0b", 3))),
        document.createCDATASection(u"\x01"),
        document.createProcessingInstruction("p", u"\uFFFF")};
    for (const PelDOMNode& node : refused)
        EXPECT_EQ(node.isNull(), 1) << &node - refused;
}

TEST(TextWithAZeroInIt, EndsThereOrIsRefused) {
    const PelString zero(std::string("a\0b", 3));
    PelDOMDocument document = parse("<r k='v'>t<![CDATA[d]]><!--c--><?p i?></r>");
    PelDOMElement root = document.getDocumentElement();
    const std::string before = written(document);
    expectAnswers({{root.putAttribute("k", zero), "invalid"},
                   {root.putAttribute("n", zero), "invalid"},
                   {root.putAttribute(zero, "v"), "invalid"},
                   {root.setAttribute(zero, 1), "invalid"},
                   {root.setTagName(zero), "invalid"},
                   {root.setTextContent(zero), "invalid"},
                   {document.createComment(zero), "null"},
                   {document.createCDATASection(zero), "null"},
                   {document.createProcessingInstruction("p", zero), "null"},
                   {document.createProcessingInstruction(zero, "d"), "null"}});
    for (PelDOMNode child : root.getChildNodes())
        expectAnswers(
            {{child.setNodeValue(zero), "invalid"}, {child.setTextContent(zero), "invalid"}});
    EXPECT_EQ(written(document), before);
    PelDOMText text(root.getFirstChild());
    expectAnswers({{root.setAttribute("k", zero), "ok"},
                   {text.setValue(zero), "ok"},
                   {root.appendTextElement(zero, zero), "ok"},
                   {root, "r k=a(|a| #4 #8 #7 a(|a|))"},
                   {document.createTextNode(zero), "|a|"},
                   {document.createElement(zero), "a"}});
}

TEST(Copies, AreEqualAndOnTheirOwn) {
    const PelString text = "<a k='v&#10;' l=''>t<![CDATA[c<]]><!--m--><?p d?><b><c/>u</b><d/></a>";
    PelDOMDocument document = parse("<r>" + text + "<z/></r>");
    PelDOMDocument other = parse("<o><z/></o>");
    PelDOMElement root = document.getDocumentElement();
    const PelDOMNode a = childAt(root, 0);
    const std::string all = show(a);
    const LogWatch log;
    PelDOMNode clone = a.cloneNode(true), imported = other.importNode(a, true);
    const PelDOMNode flat[] = {a.cloneNode(false), other.importNode(a, false)};
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(all + " " + all + " a k=v\n l= a k=v\n l=",
              show(clone) + " " + show(imported) + " " + show(flat[0]) + " " + show(flat[1]));
    PelDOMElement(childAt(clone, 4)).setAttribute("new", "n");
    PelDOMElement(clone).setTagName("copy");
    EXPECT_EQ(show(a), all);
    PelDOMNode last = childAt(imported, 5);
    expectAnswers({{root.insertBefore(clone, a), "ok"},
                   {other.getDocumentElement().insertBefore(imported, PelDOMNode()), "ok"},
                   {imported.removeChild(last), "ok"}});
    document = PelDOMDocument();
    const std::string bytes = written(other);
    EXPECT_NE(bytes.find("<a k=\"v&#xA;\" l=\"\">t<![CDATA[c<]]><!--m--><?p d?><b><c/>u</b></a>"),
              bytes.npos)
        << bytes;
}

TEST(Copies, HaveTheAttributesOfTheirOwnDocumentType) {
    const auto typed = [](const PelString& values) {
        return parse("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT b ANY><!ATTLIST b " + values +
                     ">]><r><b s='1' d='own'/><b/></r>");
    };
    PelDOMDocument first = typed("s CDATA #IMPLIED d CDATA 'first' e CDATA 'first'");
    PelDOMDocument second = typed("s CDATA #IMPLIED d CDATA 'second' f CDATA 'second'");
    const PelDOMNode b = childAt(first.getDocumentElement(), 0),
                     c = childAt(first.getDocumentElement(), 1);
    EXPECT_EQ("b d=own e=first s=1 b d=own f=second s=1 b d=first e=first b d=second f=second",
              answers({b.cloneNode(true), second.importNode(b, true), c.cloneNode(true),
                       second.importNode(c, true)}));
    PelDOMElement copies[] = {PelDOMElement(b.cloneNode(true)),
                              PelDOMElement(second.importNode(b, true))};
    for (PelDOMElement& copy : copies)
        copy.removeAttribute("d");
    expectAnswers({{copies[0], "b d=first e=first s=1"}, {copies[1], "b d=second f=second s=1"}});
}

TEST(Copies, AreNotMadeOfWhatADocumentHasOnce) {
    PelDOMDocument document = services().createDocument("r");
    const PelDOMDocument typed = parse("<!DOCTYPE r [<!ELEMENT r ANY>]><r/>");
    for (const PelDOMNode& node : {PelDOMNode(document), childAt(document, 0), childAt(typed, 0)})
        for (const bool deep : {false, true})
            expectAnswers(
                {{node.cloneNode(deep), "null"}, {document.importNode(node, deep), "null"}});
    EXPECT_EQ(show(document.importNode(
                  parse("<?xml version='1.1'?><r><a\u0370/></r>").getDocumentElement(), true)),
              PelString(u"r(a\u0370)").toUtf8());
    const PelDOMDocument newer =
        parse(u"<?xml version='1.1'?><r><a\U00010000/><b a\U00010000='1'/><?a\U00010000 d?></r>");
    for (long i = 0; i < 3; ++i) {
        const PelDOMNode node = childAt(newer.getDocumentElement(), i);
        expectAnswers(
            {{document.importNode(node, true), "null"}, {node.cloneNode(true), show(node)}});
    }
    EXPECT_EQ(document.importNode(newer.getDocumentElement(), true).isNull(), 1);
}

TEST(CharactersOfXml11, StayInItsDocuments) {
    const PelString xml = "<?xml version='1.1'?><r k='&#1;'>&#x1F;<b><c/>&#2;</b></r>";
    PelDOMDocument document = parse(xml), older = services().createDocument("r");
    PelDOMElement root = document.getDocumentElement(), olderRoot = older.getDocumentElement();
    PelDOMNode text = childAt(root, 0), b = childAt(root, 1), comment = document.createComment("c");
    PelDOMNode copy = older.importNode(b, false);
    expectAnswers({{older.importNode(root, false), "null"},
                   {older.importNode(text, false), "null"},
                   {older.importNode(b, true), "null"},
                   {copy, "b"},
                   {older.importNode(childAt(b, 0), true), "c"},
                   {parse(xml).importNode(root, true), show(root)},
                   {root.cloneNode(true), show(root)},
                   {text.setNodeValue(text.getNodeValue()), "ok"},
                   {text.getNodeValue(), "'\x1F'"},
                   {root.putAttribute("l", root.getAttribute("k")), "ok"},
                   {root.getAttribute("l"), "'\x1'"},
                   {b.setTextContent(b.getTextContent()), "ok"},
                   {b, "b(|\x2|)"},
                   {text.setNodeValue(PelString(std::u16string(1, u'\0'))), "invalid"},
                   {text.setNodeValue(u"\xFFFF"), "invalid"},
                   {comment.setNodeValue("\x1"), "invalid"},
                   {root.setTagName("a\x1"), "invalid"},
                   {olderRoot.putAttribute("k", "\x1"), "invalid"},
                   {copy.setTextContent("\x1F"), "invalid"},
                   {older.createTextNode("t").setNodeValue("\x1"), "invalid"}});
}

TEST(Names, ChangeInPlace) {
    PelDOMDocument document =
        parse("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY><!ELEMENT b ANY><!ELEMENT c "
              "ANY><!ATTLIST a x "
              "CDATA #IMPLIED><!ATTLIST b d CDATA 'b' x CDATA 'b'>"
              "<!ATTLIST c d CDATA 'c' y CDATA 'c'>]><r><a x='1'>t</a><b d='own'/></r>");
    PelDOMElement root = document.getDocumentElement(), a(childAt(root, 0)), b(childAt(root, 1));
    const PelDOMElement same = a;
    expectAnswers({{a.setTagName("n"), "ok"},
                   {same, "n x=1(|t|)"},
                   {a.setTagName("b"), "ok"},
                   {same, "b d=b x=1(|t|)"},
                   {b.setTagName("c"), "ok"},
                   {b, "c d=own y=c"},
                   {a.setTagName("c"), "ok"},
                   {same, "c d=c x=1 y=c(|t|)"},
                   {b.setTagName("c"), "ok"},
                   {b, "c d=own y=c"},
                   {a.setTagName("a"), "ok"},
                   {same, "a x=1(|t|)"},
                   {b.removeAttribute("d"), "ok"},
                   {b.setTagName("c"), "ok"},
                   {b, "c d=c y=c"}});
    for (const char16_t* name : {u"", u"1", u"a b", u"a\xD800"})
        EXPECT_EQ(a.setTagName(name), PelDOM::INVALID_VALUE) << PelString(name);
    expectAnswers(
        {{root.setTagName("q:r"), "ok"}, {document, "#9(#10 q:r(a x=1(|t|) c d=c y=c))"}});
    expectAnswers({{b.putAttribute("k", "v"), "ok"}, {b.setTagName("a"), "ok"}, {b, "a k=v"}});
}

// The engine makes it of another kind, which goes by rules of namespaces.
TEST(Names, OfACreatedRootChangeToAnyOther) {
    const PelDOMDocument document = services().createDocument("r");
    PelDOMElement root = document.getDocumentElement();
    const PelDOMNodeList former = document.getElementsByTagName("r");
    EXPECT_EQ(former.length(), 1);
    for (const char* name : {"p:q", ":a", "a:b:c", "xmlns:p", "xml:b", "s", "p:q", "r"}) {
        const PelDOMNodeList list = document.getElementsByTagName(name);
        const long before = list.length();
        expectAnswers({{root.setTagName(name), "ok"},
                       {root.getTagName(), answers({PelString(name)})},
                       {list.length(), "1"},
                       {before, "0"},
                       {former.length(), name == PelString("r") ? "1" : "0"}});
    }
    EXPECT_EQ(root.setTagName("1"), PelDOM::INVALID_VALUE);
    EXPECT_EQ(show(document), "#9(#13 r)");
}

// Recursion would not get through this.
TEST(Changes, OfDeepTreesTakeNoStack) {
    constexpr int depth = 1000000;
    PelDOMDocument document = services().createDocument("r"),
                   other = services().createDocument("o");
    PelDOMElement root = document.getDocumentElement();
    PelDOMElement top = document.createElement("e"), bottom = top;
    for (int i = 1; i < depth; ++i) {
        PelDOMElement next = document.createElement("e");
        bottom.insertBefore(next, PelDOMNode());
        bottom = next;
    }
    EXPECT_EQ(root.insertBefore(top, PelDOMNode()), PelDOM::SUCCESS);
    EXPECT_EQ(bottom.insertBefore(top, PelDOMNode()), PelDOM::INVALID_VALUE);
    PelDOMNode clone = top.cloneNode(true), imported = other.importNode(top, true);
    other.getDocumentElement().insertBefore(imported, PelDOMNode());
    root.replaceChild(clone, top);
    PelDOMNodeList found;
    EXPECT_EQ(root.getElementsByTagName("e", found) +
                  other.getDocumentElement().getElementsByTagName("e", found),
              2 * depth);
    EXPECT_EQ(top.getElementsByTagName("e", found), depth - 1);
    EXPECT_EQ(root.removeChild(clone), PelDOM::SUCCESS);
    EXPECT_EQ(show(document), "#9(#13 r)");
}
