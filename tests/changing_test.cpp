// SPDX-License-Identifier: MIT
#include "support.h"

#include <algorithm>

// Without the line breaks that the writer adds.
static std::string written(const PelDOMDocument& document) {
    PelString text;
    services().writeDocument(document, text, 0, 1, 0);
    std::string bytes = text.toUtf8();
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\n'), bytes.end());
    return bytes;
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
