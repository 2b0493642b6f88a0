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

TEST(NewNodes, WithTextThatLooksLikeTheirEndAreWritten) {
    PelDOMDocument document = parse("<r/>");
    PelDOMElement root = document.getDocumentElement();
    for (const char* const data : {"", "a - b", "]]", "? >", "<&>"})
        for (const PelDOMNode& made :
             {document.createComment(data), document.createCDATASection(data),
              document.createProcessingInstruction("p", data)})
            EXPECT_EQ(root.insertBefore(made, PelDOMNode()), PelDOM::SUCCESS) << data;
    const std::string all = written(document);
    for (const char* const part : {"<!---->", "<!--]]-->", "<![CDATA[? >]]>", "<?p <&>?>"})
        EXPECT_NE(all.find(part), all.npos) << part;
    expectAnswers({{document.createProcessingInstruction("xMl", "d"), "null"},
                   {document.createComment(u"a\xFFFF"), "null"}});
}

TEST(NamesWithAZeroInThem, EndThereOrAreRefused) {
    const PelString zero(std::string("a\0b", 3));
    PelDOMDocument document = parse("<r/>");
    PelDOMElement root = document.getDocumentElement();
    expectEach("invalid",
               {root.putAttribute(zero, "v"), root.setAttribute(zero, 1), root.setTagName(zero)});
    EXPECT_EQ(answers({document.createProcessingInstruction(zero, "d"), root}), "null r");
    expectEach("ok", {root.setAttribute(zero, "v"), root.appendTextElement(zero, "t")});
    EXPECT_EQ(answers({root, document.createElement(zero)}), "r a=v(a(|t|)) a");
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
    expectEach("null", {older.importNode(root, false), older.importNode(text, false),
                        older.importNode(b, true)});
    EXPECT_EQ(answers({copy, older.importNode(childAt(b, 0), true)}), "b c");
    expectEach(show(root), {parse(xml).importNode(root, true), root.cloneNode(true)});
    expectEach("ok", {text.setNodeValue(text.getNodeValue()), b.setTextContent(b.getTextContent()),
                      root.putAttribute("l", root.getAttribute("k"))});
    EXPECT_EQ(show(root), "r k=\x1 l=\x1(|\x1F| b(|\x2|))");
    expectEach("invalid", {comment.setNodeValue("\x1"), root.setTagName("a\x1"),
                           olderRoot.putAttribute("k", "\x1"), copy.setTextContent("\x1F"),
                           older.createTextNode("t").setNodeValue("\x1")});
}

TEST(Names, ChangeInPlace) {
    PelDOMDocument document =
        parse("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY><!ELEMENT b ANY><!ELEMENT c "
              "ANY><!ATTLIST a x "
              "CDATA #IMPLIED><!ATTLIST b d CDATA 'b' x CDATA 'b'>"
              "<!ATTLIST c d CDATA 'c' y CDATA 'c'>]><r><a x='1'>t</a><b d='own'/></r>");
    PelDOMElement root = document.getDocumentElement(), a(childAt(root, 0)), b(childAt(root, 1));
    const PelDOMElement same = a;
    EXPECT_EQ(answers({a.setTagName("n"), same, a.setTagName("b"), same}),
              "ok n x=1(|t|) ok b d=b x=1(|t|)");
    EXPECT_EQ(answers({b.setTagName("c"), b, b.setTagName("c"), b}),
              "ok c d=own y=c ok c d=own y=c");
    EXPECT_EQ(answers({a.setTagName("c"), same, a.setTagName("a"), same}),
              "ok c d=c x=1 y=c(|t|) ok a x=1(|t|)");
    EXPECT_EQ(answers({b.removeAttribute("d"), b.setTagName("c"), b}), "ok ok c d=c y=c");
    for (const char16_t* name : {u"", u"1", u"a b", u"a\xD800"})
        EXPECT_EQ(a.setTagName(name), PelDOM::INVALID_VALUE) << PelString(name);
    expectAnswers(
        {{root.setTagName("q:r"), "ok"}, {document, "#9(#10 q:r(a x=1(|t|) c d=c y=c))"}});
    expectAnswers({{b.putAttribute("k", "v"), "ok"}, {b.setTagName("a"), "ok"}, {b, "a k=v"}});
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
    bottom.appendTextElement("e", "t");
    EXPECT_EQ(root.getTextContent(), "t");
    EXPECT_EQ(bottom.insertBefore(top, PelDOMNode()), PelDOM::INVALID_VALUE);
    PelDOMNode clone = top.cloneNode(true), imported = other.importNode(top, true);
    other.getDocumentElement().insertBefore(imported, PelDOMNode());
    root.replaceChild(clone, top);
    PelDOMNodeList found;
    EXPECT_EQ(root.getElementsByTagName("e", found) +
                  other.getDocumentElement().getElementsByTagName("e", found),
              2 * (depth + 1));
    EXPECT_EQ(top.getElementsByTagName("e", found), depth);
    EXPECT_EQ(answers({root.removeChild(clone), top.setTextContent("x"), top, document}),
              "ok ok e(|x|) #9(#13 r)");
}
