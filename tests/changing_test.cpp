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

static char kindOf(const PelDOMNode& node) {
    const std::string value = node.getNodeValue().toUtf8();
    switch (node.getNodeType()) {
    case PelDOM::XML_DECL_NODE:
        return 'D';
    case PelDOM::DOCUMENT_TYPE_NODE:
        return 'T';
    case PelDOM::ELEMENT_NODE:
        return 'E';
    case PelDOM::TEXT_NODE:
        return !value.empty() && value.find_first_not_of(" \n") == value.npos ? 'S' : 'X';
    case PelDOM::CDATA_SECTION_NODE:
        return 'X';
    default:
        return 'C';
    }
}

static std::string orderOf(const PelDOMDocument& document) {
    std::string order;
    for (const PelDOMNode child : document.getChildNodes())
        order += kindOf(child);
    return order;
}

static bool isDocument(const std::string& order) {
    const auto count = [&](char kind) { return std::count(order.begin(), order.end(), kind); };
    return count('X') == 0 && count('E') < 2 && count('T') < 2 &&
           (count('D') == 0 || order.rfind('D') == 0) &&
           (count('T') == 0 || count('E') == 0 || order.find('T') < order.find('E'));
}

// Each node that there is and new ones of each kind, in front of and in the place of each other
// one.
TEST(Changes, OfADocumentKeepTheOrderThatXmlDemands) {
    for (long i = 0; i < 4 * 2 * 10 * 4; ++i) {
        const bool isCreated = i % 2 == 0, isWithoutRoot = i / 2 % 2 == 0,
                   isReplaced = i / 4 % 2 == 0;
        const long moved = i / 8 % 10 - 7, place = i / 80;
        PelDOMDocument document = isCreated ? services().createDocument("r")
                                            : parse("<!DOCTYPE r [<!ELEMENT r ANY>]><!--1--><r/>");
        if (isWithoutRoot)
            document.removeChild(document.getDocumentElement());
        const std::string before = orderOf(document);
        const auto size = static_cast<long>(before.size());
        if (moved >= size || place > size - (isReplaced ? 1 : 0))
            continue;
        const PelDOMNode made[] = {document.createElement("n"),
                                   document.createTextNode(" \n"),
                                   document.createTextNode(""),
                                   document.createTextNode("x"),
                                   document.createComment("c"),
                                   document.createCDATASection(" "),
                                   document.createProcessingInstruction("p", "")};
        const PelDOMNode child = moved < 0 ? made[moved + 7] : childAt(document, moved);
        const PelDOMNode other = place < size ? childAt(document, place) : PelDOMNode();
        std::string after = before;
        after.insert(static_cast<std::size_t>(place), 1, kindOf(child));
        if (isReplaced)
            after[static_cast<std::size_t>(place) + 1] = '-';
        if (moved >= 0)
            after[static_cast<std::size_t>(moved < place ? moved : moved + 1)] = '-';
        after.erase(std::remove(after.begin(), after.end(), '-'), after.end());
        const PelDOM::Error code =
            isReplaced ? document.replaceChild(child, other) : document.insertBefore(child, other);
        EXPECT_EQ(answers({code, orderOf(document)}),
                  isDocument(after) ? answers({PelDOM::SUCCESS, after})
                                    : answers({PelDOM::INVALID_VALUE, before}))
            << before << (isReplaced ? " replaced " : " before ") << place << " by "
            << kindOf(child) << moved;
    }
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
