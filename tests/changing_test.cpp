// SPDX-License-Identifier: MIT
#include "support.h"

TEST(NamesWithAZeroInThem, EndThereOrAreRefused) {
    const PelString zero(std::string("a\0b", 3));
    PelDOMDocument document = parse("<r/>");
    PelDOMElement root = rootOf(document);
    expectEach("invalid",
               {root.putAttribute(zero, "v"), root.setAttribute(zero, 1), root.setTagName(zero)});
    EXPECT_EQ(answers({document.createProcessingInstruction(zero, "d"), root}), "null r");
    expectEach("ok", {root.setAttribute(zero, "v"), root.appendTextElement(zero, "t")});
    EXPECT_EQ(answers({root, document.createElement(zero)}), "r a=v(a(|t|)) a");
}

TEST(Copies, HaveNamesOfXml11InItsDocumentsOnly) {
    PelDOMDocument document = services().createDocument("r");
    EXPECT_EQ(show(document.importNode(rootOf("<?xml version='1.1'?><r><a\u0370/></r>"), true)),
              PelString(u"r(a\u0370)").toUtf8());
    const PelDOMDocument newer =
        parse(u"<?xml version='1.1'?><r><a\U00010000/><b a\U00010000='1'/><?a\U00010000 d?></r>");
    for (long i = 0; i < 3; ++i) {
        const PelDOMNode node = childAt(rootOf(newer), i);
        EXPECT_EQ(answers({document.importNode(node, true), node.cloneNode(true)}),
                  "null " + show(node));
    }
    EXPECT_EQ(document.importNode(rootOf(newer), true).isNull(), 1);
}

TEST(CharactersOfXml11, StayInItsDocuments) {
    const PelString xml = "<?xml version='1.1'?><r k='&#1;'>&#x1F;<b><c/>&#2;</b></r>";
    PelDOMDocument document = parse(xml), older = services().createDocument("r");
    PelDOMElement root = rootOf(document), olderRoot = rootOf(older);
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
    PelDOMElement root = rootOf(document), a(childAt(root, 0)), b(childAt(root, 1));
    const PelDOMElement same = a;
    EXPECT_EQ(answers({a.setTagName("n"), same, a.setTagName("b"), same}),
              "ok n x=1(|t|) ok b d=b x=1(|t|)");
    EXPECT_EQ(answers({b.setTagName("c"), b, b.setTagName("c"), b}),
              "ok c d=own y=c ok c d=own y=c");
    EXPECT_EQ(answers({a.setTagName("c"), same, a.setTagName("a"), same}),
              "ok c d=c x=1 y=c(|t|) ok a x=1(|t|)");
    EXPECT_EQ(answers({b.removeAttribute("d"), b, b.setTagName("c"), b}),
              "ok c d=c y=c ok c d=c y=c");
    for (const char16_t* name : {u"", u"1", u"a b", u"a\xD800"})
        EXPECT_EQ(a.setTagName(name), PelDOM::INVALID_VALUE) << PelString(name);
    EXPECT_EQ(answers({root.setTagName("q:r"), document}), "ok #9(#10 q:r(a x=1(|t|) c d=c y=c))");
    EXPECT_EQ(answers({b.putAttribute("k", "v"), b.setTagName("a"), b}), "ok ok a k=v");
}

// Recursion would not get through this.
TEST(Changes, OfDeepTreesTakeNoStack) {
    constexpr int depth = 1000000;
    PelDOMDocument document = services().createDocument("r"),
                   other = services().createDocument("o");
    PelDOMElement root = rootOf(document);
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
    rootOf(other).insertBefore(imported, PelDOMNode());
    root.replaceChild(clone, top);
    PelDOMNodeList found;
    EXPECT_EQ(root.getElementsByTagName("e", found) +
                  rootOf(other).getElementsByTagName("e", found),
              2 * (depth + 1));
    EXPECT_EQ(top.getElementsByTagName("e", found), depth);
    EXPECT_EQ(answers({root.removeChild(clone), top.setTextContent("x"), top, document}),
              "ok ok e(|x|) #9(#13 r)");
}
