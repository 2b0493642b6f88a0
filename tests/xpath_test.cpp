// SPDX-License-Identifier: MIT
#include "support.h"

#include <cmath>

namespace {

// A node in a word: an element by its name and `id`, other nodes by their kind and value.
std::string brief(const PelDOMNode& node) {
    if (node.getNodeType() == PelDOM::ELEMENT_NODE)
        return (node.getNodeName() + PelDOMElement(node).getAttribute("id")).toUtf8();
    const char* const marks = node.getNodeType() == PelDOM::COMMENT_NODE                  ? "!"
                              : node.getNodeType() == PelDOM::PROCESSING_INSTRUCTION_NODE ? "?"
                                                                                          : "|";
    return node.getNodeType() == PelDOM::DOCUMENT_NODE
               ? "/"
               : marks + node.getNodeValue().toUtf8() + marks;
}

// What a path gives, whatever that is; a set by its nodes, then its attributes; then the message.
std::string ask(const PelDOMXPath& path, const PelDOMNode& context) {
    std::string answer;
    const auto add = [&answer](const std::string& word) {
        answer += (answer.empty() ? "" : " ") + word;
    };
    if (path.getType() == PelDOMXPath::NODES) {
        const std::vector<PelDOMNode> nodes = path.selectNodes(context);
        for (const PelDOMNode& node : nodes)
            add(brief(node));
        const std::string wrong = path.getMessage().toUtf8();
        // The same by the ways that stop early.
        const PelDOMNode first = path.selectNode(context);
        EXPECT_EQ(first, nodes.empty() ? PelDOMNode() : nodes.front()) << answer;
        EXPECT_EQ(path.getMessage().toUtf8(), wrong);
        const std::vector<PelDOMAttributeMatch> matches = path.selectAttributes(context);
        for (const PelDOMAttributeMatch& match : matches)
            add("@" + brief(match.element) + ":" + match.name.toUtf8() + "=" +
                match.value.toUtf8());
        EXPECT_EQ(path.evaluateBoolean(context), !nodes.empty() || !matches.empty()) << answer;
    } else if (path) {
        add("'" + path.evaluateString(context).toUtf8() + "'");
    }
    if (path.getMessage().isEmpty() == 0)
        add("(" + path.getMessage().toUtf8() + ")");
    return answer;
}

std::string ask(const char* expression, const PelDOMNode& context) {
    return ask(PelDOMXPath(expression), context);
}

struct Case {
    Case(const char* asked, const char* answer, int caseLine = __builtin_LINE())
        : expression(asked), expected(answer), line(caseLine) {}
    const char* expression;
    const char* expected;
    int line;
};

void expectAll(const PelDOMNode& context, std::initializer_list<Case> cases,
               const char* file = __builtin_FILE()) {
    for (const Case& each : cases) {
        const std::string answer = ask(each.expression, context);
        if (answer != each.expected)
            ADD_FAILURE_AT(file, each.line)
                << each.expression << " gave " << answer << ", not " << each.expected;
    }
}

const char* const shelves =
    "<r id='0'><!--c--><a id='1' k='v'>one<a id='2'>in<b id='3'/></a><b id='4' m='w'/></a>"
    "<a id='5'><b id='6'/>t<![CDATA[w]]>o<c id='7'/><b id='8'/></a><?p data?><c id='9'/></r>";

} // namespace

TEST(XPath, EachAxisGivesItsNodesInDocumentOrder) {
    const PelDOMDocument document = parse(shelves);
    expectAll(document,
              {{"/", "/"},
               {"/r/a", "a1 a5"},
               {"r/a/b", "b4 b6 b8"},
               {"//b", "b3 b4 b6 b8"},
               {"//a/b", "b3 b4 b6 b8"},
               {"//a//b", "b3 b4 b6 b8"},
               {"//b/..", "a1 a2 a5"},
               {"//a/a/b/../b/..", "a2"},
               {"//@m/..", "b4"},
               {"//b/ancestor::*", "r0 a1 a2 a5"},
               {"//b/ancestor-or-self::node()", "/ r0 a1 a2 b3 b4 a5 b6 b8"},
               {"//a[@id=2]/following::*", "b4 a5 b6 c7 b8 c9"},
               {"//a/following::*", "b4 a5 b6 c7 b8 c9"},
               {"//@k/following::b", "b3 b4 b6 b8"},
               {"//c[1]/preceding::*", "a1 a2 b3 b4 a5 b6 c7 b8"},
               {"//@m/preceding::*", "a2 b3"},
               {"//b/following-sibling::node()", "|t| c7 b8"},
               {"//b/preceding-sibling::*", "a2 b6 c7"},
               {"//a/following-sibling::*", "b4 a5 c9"},
               {"//@k/following-sibling::* | //@k/preceding-sibling::*", ""},
               {"//a/self::node()/descendant-or-self::b", "b3 b4 b6 b8"},
               {"//a/descendant::*", "a2 b3 b4 b6 c7 b8"},
               {"//node()[self::comment() or self::processing-instruction()]", "!c! ?data?"},
               {"//processing-instruction('p') | //processing-instruction('q')", "?data?"},
               {"//processing-instruction('')", ""},
               {"//@*[../@k]", "@a1:id=1 @a1:k=v"},
               {"//a/@k | //c", "c7 c9 @a1:k=v"},
               {"//@k/descendant-or-self::node() | //@m/ancestor::a", "a1 @a1:k=v"},
               {"//c | //a[b] | /r/a | //b[../@k]", "a1 a2 b4 a5 c7 c9"},
               {"//nothing/..", ""}});
}

TEST(XPath, PredicatesCountAlongTheAxis) {
    const PelDOMDocument document = parse(shelves);
    expectAll(document, {{"//b[1]", "b3 b4 b6"},
                         {"(//b)[1]", "b3"},
                         {"//b[last()]", "b3 b4 b8"},
                         {"(//b)[last()]", "b8"},
                         {"//b[2]", "b8"},
                         {"//b[position() > 1]", "b8"},
                         {"//b[position() = last()]", "b3 b4 b8"},
                         {"//b[last() - 1]", "b6"},
                         {"//*[@id > 2][1]", "b3 b4 a5 b6"},
                         {"//*[2][self::a or self::c]", "a5 c7"},
                         {"//*[last()][1][self::b]", "b3 b4 b8"},
                         {"//*[last()][2]", ""},
                         {"//@*/node()[last()] | //@*/node()[1]", ""},
                         {"//b[1.5] | //b[0] | //b[-1]", ""},
                         {"//b[@id='8']/preceding-sibling::*[1]", "c7"},
                         {"//b[@id='8']/preceding-sibling::*[last()]", "b6"},
                         {"(//b[@id='8']/preceding-sibling::*)[1]", "b6"},
                         {"//b[@id='3']/ancestor::*[1] | //b[@id='3']/ancestor::*[3]", "r0 a2"},
                         {"//b/ancestor::*[2]", "r0 a1"},
                         {"//b/preceding::*[1]", "b3 b4 c7"},
                         {"//a/following::*[1]", "b4 a5 c9"},
                         {"//a/following-sibling::*[1]", "b4 a5 c9"},
                         {"//b/following-sibling::*[1]", "c7"},
                         {"//a/descendant::*[2]", "b3 c7"},
                         {"//a/*[2]/@id", "@b4:id=4 @c7:id=7"},
                         {"//a[count(b) = 2][1]", "a5"},
                         {"/r/*[position() mod 2 = 1]", "a1 c9"},
                         {"//a[b[2]]", "a5"},
                         {"//a[.//b[@m]]", "a1"},
                         {"//*[not(*)][position() = 2]", "c7"},
                         {"/r/a[2]/b[1]/following-sibling::c[1]/..", "a5"},
                         {"//a[number(true())]", "a1 a2"},
                         {"//a[string(0)]", "a1 a2 a5"}});
}

TEST(XPath, ValuesCompareAndConvertAsTheRulesSay) {
    const PelDOMDocument document =
        parse("<r><n>1</n><n>2</n><n>x</n><m>2</m><m>3</m><w> 7 </w></r>");
    expectAll(document,
              {{"//n = //m", "'true'"},
               {"//n != //m", "'true'"},
               {"//w != //w", "'false'"},
               {"//n != //n", "'true'"},
               {"//n = //none or //n != //none", "'false'"},
               {"//n = 1 and //n != 1", "'true'"},
               {"//n = 'x'", "'true'"},
               {"1 = //n", "'true'"},
               {"//m < //n", "'false'"},
               {"//n < //m", "'true'"},
               {"//n <= //m and //m >= //n", "'true'"},
               {"3 > //m", "'true'"},
               {"3 < //m", "'false'"},
               {"'2.5' < //m", "'true'"},
               {"//none = false()", "'true'"},
               {"//none < true()", "'true'"},
               {"//n = true()", "'true'"},
               {"1 = true()", "'true'"},
               {"2 > 1 > 0", "'true'"},
               {"3 = 3 = 3", "'true'"},
               {"1 = 1 != false()", "'true'"},
               {"'a' < 'b'", "'false'"},
               {"'1' = 1.0", "'true'"},
               {"'NaN' = number('NaN')", "'false'"},
               {"number('x') != number('x')", "'true'"},
               {"string(1 div 0)", "'Infinity'"},
               {"-1 div 0", "'-Infinity'"},
               {"0 div 0", "'NaN'"},
               {"1.0", "'1'"},
               {"-0", "'0'"},
               {"1 div -0", "'-Infinity'"},
               {"0.1 + 0.2", "'0.30000000000000004'"},
               {"1000000 * 1000000 * 1000000 * 1000000", "'1000000000000000000000000'"},
               {"1 div 1024 div 1024", "'0.00000095367431640625'"},
               {"-1.5 div 1000000000", "'-0.0000000015'"},
               {"5 mod 2", "'1'"},
               {"5 mod -2", "'1'"},
               {"-5 mod 2", "'-1'"},
               {"1.5 mod 0.5", "'0'"},
               {"--5", "'5'"},
               {"- '5'", "'-5'"},
               {"number(' -.5 ')", "'-0.5'"},
               {"number('5.')", "'5'"},
               {"number('+5')", "'NaN'"},
               {"number('1e3')", "'NaN'"},
               {"number('.')", "'NaN'"},
               {"number('1.2.3')", "'NaN'"},
               {"number('- 5')", "'NaN'"},
               {"number('')", "'NaN'"},
               {"number(//w)", "'7'"},
               {"12345678901234567890", "'12345678901234567168'"},
               {"round(2.5)", "'3'"},
               {"round(-2.5)", "'-2'"},
               {"1 div round(-0.5)", "'-Infinity'"},
               {"round(0.49999999999999994)", "'0'"},
               {"round(4503599627370497)", "'4503599627370497'"},
               {"floor(-0.5)", "'-1'"},
               {"ceiling(2.1)", "'3'"},
               {"sum(//m)", "'5'"},
               {"sum(//n)", "'NaN'"},
               {"sum(//none)", "'0'"},
               {"count(//n | //m | //n)", "'5'"},
               {"boolean(0) or boolean('') or boolean(//none) or boolean(0 div 0)", "'false'"},
               {"boolean(-1) and boolean('0') and boolean(//n)", "'true'"},
               {"not(1 = 2)", "'true'"},
               {"1 + 2 * 3 - 4 div 2", "'5'"},
               {"10 - 4 - 3", "'3'"},
               {"string(true())", "'true'"}});
}

TEST(XPath, TextsAreCountedInCharacters) {
    const PelDOMDocument document =
        parse("<r><t>a \n b</t><e/><i xml:lang='en-GB'><j/><k xml:lang='de'/></i></r>");
    expectAll(document,
              {{"string-length('\xF0\x9F\x98\x80x')", "'2'"},
               {"substring('\xF0\x9F\x98\x80xy', 2, 1)", "'x'"},
               {"translate('\xF0\x9F\x98\x80xyx', 'x\xF0\x9F\x98\x80', '\xF0\x9F\x98\x81z')",
                "'z\xF0\x9F\x98\x81y\xF0\x9F\x98\x81'"},
               {"translate('abcab', 'aba', 'x')", "'xcx'"},
               {"substring('12345', 1.5, 2.6)", "'234'"},
               {"substring('12345', 0, 3)", "'12'"},
               {"substring('12345', 0 div 0, 3)", "''"},
               {"substring('12345', 1, 0 div 0)", "''"},
               {"substring('12345', -42, 1 div 0)", "'12345'"},
               {"substring('12345', -1 div 0, 1 div 0)", "''"},
               {"substring('12345', 2)", "'2345'"},
               {"substring-before('1999/04', '/')", "'1999'"},
               {"substring-before('a', '/')", "''"},
               {"substring-after('1999/04/01', '/')", "'04/01'"},
               {"substring-after('a', '/')", "''"},
               {"substring-after('abc', '')", "'abc'"},
               {"contains('abc', '') and starts-with('abc', 'ab') and not(starts-with('a', 'ab'))",
                "'true'"},
               {"contains('aaaaaaaaaaaaaaaaaaaaaaaaaab', 'aaaaaaaaaaaaaaaaaaaaaab')", "'true'"},
               {"substring-before('xabababababababababababc', 'ababababababababababc')", "'xab'"},
               {"contains('aaaaaaaaaaaaaaaaaaaaaaaaaa', 'aaaaaaaaaaaaaaaaaaaaaab')", "'false'"},
               {"normalize-space(//t)", "'a b'"},
               {"normalize-space('  ')", "''"},
               {"concat('a', 1, true(), //e)", "'a1true'"},
               {"//*[string-length() = 5]", "r t"},
               {"//*[normalize-space() = 'a b']", "r t"},
               {"//*[lang('EN')]", "i j"},
               {"//*[lang('en-gb')]", "i j"},
               {"//*[lang('e')] | //*[lang('en-GB-x')]", ""},
               {"//@*[lang('de')]", "@k:xml:lang=de"},
               {"//*[lang('')]", ""},
               {"lang('en')", "'false'"}});
}

TEST(XPath, TextsBesideSectionsAreOne) {
    PelDOMDocument document = parse("<r>a<![CDATA[b]]><x/><![CDATA[]]>c<!--d--><?e f?></r>");
    PelDOMElement root = rootOf(document);
    expectAll(root, {{"text()", "|a| |c|"},
                     {"count(node())", "'5'"},
                     {"string(text()[1])", "'ab'"},
                     {"string(x/preceding-sibling::text()[1])", "'ab'"},
                     {"string(x/following-sibling::node()[1])", "'c'"},
                     {"string()", "'abc'"},
                     {"string(comment())", "'d'"},
                     {"string(processing-instruction())", "'f'"},
                     {"/node()[last()]", "r"}});
    // Each part of a text stands for the whole; one that is empty is no node.
    expectAll(childAt(root, 1), {{"string()", "'ab'"}, {".", "|a|"}, {"following::*", "x"}});
    expectAll(childAt(root, 3), {{".", "|c|"}});
    root.removeChild(childAt(root, 4));
    expectAll(childAt(root, 3), {{".", "(expressions do not see the node to ask from)"}});
    expectAll(root, {{"count(//text())", "'1'"}});
}

TEST(XPath, NamesMatchByNamespace) {
    const PelDOMDocument document =
        parse("<r xmlns:p='urn:p' xmlns:q='urn:q'><p:x id='1' p:k='1' k='2'/><x id='2'/>"
              "<o xmlns='urn:p' xmlns:p='urn:z' p:k='3'><x id='3'/><p:x id='4'/>"
              "<i xmlns=''><x id='5'/></i></o><u:x id='6'/></r>");
    expectAll(document,
              {{"//x", "x2 x5"},
               {"//p:x", "p:x1 x3"},
               {"//p:*", "p:x1 o x3"},
               {"//q:x", ""},
               {"//o", ""},
               {"//*[local-name() = 'x']", "p:x1 x2 x3 p:x4 x5"},
               {"//*[namespace-uri() = 'urn:z']", "p:x4"},
               {"//*[name() = 'p:x']", "p:x1 p:x4"},
               {"local-name(//*[@id = 6])", "'u:x'"},
               {"count(//@*)", "'9'"},
               {"//@p:k", "@p:x1:p:k=1"},
               {"//@p:*/..", "p:x1"},
               {"//@xmlns | //@xmlns:p", "(column 15: the prefix xmlns stands for nothing)"},
               {"count(//@xmlns)", "'0'"},
               {"//u:x", "(column 3: the prefix u stands for nothing)"},
               {"concat(name(//none), local-name(//none), namespace-uri(//none), name(/))", "''"},
               {"namespace-uri(//@p:k)", "'urn:p'"},
               {"namespace-uri(//@k)", "''"}});
    PelDOMXPath path("//p:x/@xml:id | //p:x");
    EXPECT_EQ(ask(path, rootOf(document).getChildElement("o")), "p:x4");
    path.setNamespace("p", "urn:p");
    EXPECT_EQ(ask(path, rootOf(document).getChildElement("o")), "p:x1 x3");
}

TEST(XPath, ItIsAskedFromAnyNode) {
    PelDOMDocument document = parse("<!DOCTYPE r><r><a>t<b/></a><c k='v'/></r>");
    PelDOMElement root = rootOf(document);
    const PelDOMElement a = root.getChildElement("a");
    expectAll(a.getFirstChild(), {{"..", "a"}, {"/r/c", "c"}, {"following::node()", "b c"}});
    expectAll(document.getFirstChild(), {{".", "(expressions do not see the node to ask from)"}});
    expectAll(PelDOMNode(), {{"1", "'' (there is no node to ask from)"}});
    EXPECT_EQ(root.removeChild(a), PelDOM::SUCCESS);
    expectAll(a, {{"..", ""},
                  {"/*/*", "c"},
                  {"//b", ""},
                  {".//b", "b"},
                  {"b/ancestor::node() | b | .", "a b"},
                  {"count(/ | . | b | //c | text())", "'5'"},
                  {"b/following::node() | a/preceding::node()", ""}});
    expectAll(document, {{"count(//node())", "'2'"}, {"//b", ""}});
    PelDOMDocument made = services().createDocument("made");
    expectAll(made, {{"node()", "made"}, {"count(//node())", "'1'"}});
}

TEST(XPath, IdsAreThoseThatAreDeclared) {
    const std::string xml = "<!DOCTYPE r [<!ATTLIST e key ID #IMPLIED>]>"
                            "<r key='x'><e key='b'/><e id='1' key='a'/><f>b  a</f>"
                            "<e id='2' key='a'/></r>";
    PelDOMReader reader;
    reader.setValidation(PelDOMReader::NEVER);
    const PelDOMDocument document = reader.readBytes(xml.data(), xml.size(), "ids");
    expectAll(document, {{"id(' a\tb b')", "e e1"},
                         {"id(//f)", "e e1"},
                         {"id('x')", ""},
                         {"//f[id(.)/@id = 1]", "f"},
                         {"id('a')/following-sibling::*", "f e2"}});
}

TEST(XPath, WordsAreOperatorsByWhatStandsBefore) {
    const PelDOMDocument document =
        parse("<div><and/><mod>6</mod><or-else/><div>3</div><a.b/><text/></div>");
    expectAll(document, {{"div/div", "div"},
                         {"/div/mod div /div/div", "'2'"},
                         {"/*/mod * 2", "'12'"},
                         {"//mod mod 4", "'2'"},
                         {"/*/* [self::and or self::or-else]", "and or-else"},
                         {"//div[div and and]", "div"},
                         {"/div/mod -1", "'5'"},
                         {"count(/div/mod-1)", "'0'"},
                         {"count(//a.b|//text)", "'2'"},
                         {"* * *", "'3969'"},
                         {".5 + 5.", "'5.5'"},
                         {"concat(\"it's\", 'a \"b\"')", "'it'sa \"b\"'"},
                         {" / child :: div / descendant :: * [ 1 ] ", "and"}});
}

TEST(XPath, WhatIsWrongIsSaidWithItsColumn) {
    const PelDOMDocument document = parse("<r a='1'/>");
    const std::string deep(201, '(');
    const std::string deepest = std::string(199, '(') + "1" + std::string(199, ')');
    const std::string nested(300, '[');
    EXPECT_EQ(ask(deepest.c_str(), document), "'1'");
    expectAll(
        document,
        {{"", "(column 1: there is no expression)"},
         {"a[1", "(column 4: ']' is missing)"},
         {"'\xF0\x9F\x98\x80' a", "(column 5: an operator is missing)"},
         {"1e3", "(column 2: an operator is missing)"},
         {"///a", "(column 3: a step or a value is missing)"},
         {"a/", "(column 3: a step or a value is missing)"},
         {"a + ", "(column 5: a step or a value is missing)"},
         {"@", "(column 2: the name of an attribute is missing)"},
         {"f()", "(column 1: no function has this name)"},
         {"p:count(a)", "(column 1: no function has this name)"},
         {"count()", "(column 1: the function takes another number of arguments)"},
         {"contains('a', 'b', 'c')", "(column 1: the function takes another number of arguments)"},
         {"1 + sum('a')", "(column 5: the function takes a set of nodes)"},
         {"a | 1", "(column 5: only sets of nodes can be united)"},
         {"'a'[1]", "(column 1: only a set of nodes can be followed by a predicate or a step)"},
         {"$v/a", "(column 1: only a set of nodes can be followed by a predicate or a step)"},
         {"side::a", "(column 1: no axis has this name)"},
         {"namespace::a", "(column 1: the axis of namespaces is not supported)"},
         {"a)", "(column 2: no '(' fits this ')')"},
         {"(a", "(column 3: ')' is missing)"},
         {"'a", "(column 1: the quote at the text's end is missing)"},
         {"a ! b", "(column 3: a character that means nothing here)"},
         {"..[1]", "(column 3: an operator is missing)"},
         {"a:", "(column 3: a name is missing)"},
         {"$ v", "(column 2: a variable's name is missing)"},
         {deep.c_str(), "(column 201: nested more than 200 deep)"},
         {"a + $v", "'' (column 5: the variable $v is not set)"},
         {"r/@a", "@r:a=1"}});
    const PelDOMXPath attributes("//@a");
    for (const PelDOMNode& found :
         {attributes.selectNode(document), PelDOMNode(attributes.selectElement(document))}) {
        EXPECT_FALSE(found);
        EXPECT_EQ(attributes.getMessage(),
                  "the expression gives attributes only: ask with selectAttributes");
    }
    EXPECT_TRUE(attributes.selectElements(document).empty());
    EXPECT_NE(attributes.getMessage(), "");
    EXPECT_FALSE(PelDOMXPath(std::string(100'001, ' ')));
    EXPECT_EQ(PelDOMXPath("1").selectNodes(document).size(), 0U);
    const PelDOMXPath number("1");
    EXPECT_FALSE(number.selectElement(document));
    EXPECT_EQ(number.getMessage(), "the expression gives no set of nodes");
    // The next evaluation begins anew.
    EXPECT_EQ(number.evaluateNumber(document), 1);
    EXPECT_EQ(number.getMessage(), "");
}

TEST(XPath, VariablesAndCopiesAreIndependent) {
    const PelDOMDocument document = parse("<r><a k='1'/><a k='2'/><a k='3'/></r>");
    PelDOMXPath path("//a[@k < $most][$place]/@k = $text");
    EXPECT_EQ(path.getType(), PelDOMXPath::BOOLEAN);
    path.setVariable("most", 3);
    path.setVariable("place", 2.0F);
    path.setVariable("text", "2");
    EXPECT_TRUE(path.evaluateBoolean(document));
    PelDOMXPath copy(path);
    copy.setVariable("place", true); // no position
    copy.setVariable("text", std::u16string(u"1"));
    EXPECT_TRUE(copy.evaluateBoolean(document));
    EXPECT_TRUE(path.evaluateBoolean(document));
    path.setVariable("text", u"1");
    EXPECT_FALSE(path.evaluateBoolean(document));

    PelDOMXPath variable("$v");
    EXPECT_EQ(variable.getType(), PelDOMXPath::UNKNOWN);
    variable.setVariable("v", false);
    EXPECT_EQ(variable.getType(), PelDOMXPath::BOOLEAN);
    variable.setVariable("v", 7L);
    EXPECT_EQ(variable.getType(), PelDOMXPath::NUMBER);
    EXPECT_EQ(variable.evaluateString(document), "7");
    variable.setVariable("v", PelString("a"));
    EXPECT_EQ(variable.getType(), PelDOMXPath::STRING);

    PelDOMXPath moved(std::move(variable));
    EXPECT_TRUE(moved);
    EXPECT_FALSE(variable); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(ask(variable, document), "(there is no expression)");
    variable.setVariable("v", 1);
    EXPECT_EQ(ask(variable, document), "(there is no expression)");
    variable = PelDOMXPath("count(//a)");
    EXPECT_EQ(variable.evaluateNumber(document), 3);
    EXPECT_TRUE(std::isnan(PelDOMXPath().evaluateNumber(document)));
}

TEST(XPath, NodesAreAskedByText) {
    const PelDOMElement root = rootOf("<r><a id='1'/>t<a id='2'/></r>");
    EXPECT_EQ(root.selectNodes("node()").size(), 3U);
    EXPECT_EQ(brief(root.selectNode("text()")), "|t|");
    EXPECT_EQ(root.selectElements("node()").size(), 2U);
    EXPECT_EQ(brief(root.selectElement("text() | a[2]")), "a2");
    const LogWatch log;
    EXPECT_FALSE(root.selectElement("a["));
    EXPECT_EQ(PelDOMXPath::getLastMessage(), "column 3: a step or a value is missing");
    EXPECT_EQ(log.text(), "XPath a[: column 3: a step or a value is missing\n");
    EXPECT_FALSE(root.selectNode("@id | b/@id"));
    EXPECT_EQ(PelDOMXPath::getLastMessage(), "");
}

TEST(XPath, WorkIsLimited) {
    const PelDOMDocument document = parse("<r><a/><a/><a/></r>");
    PelDOMXPath path("//a");
    path.setLimit(4);
    EXPECT_TRUE(path.selectNodes(document).empty());
    EXPECT_EQ(path.getMessage(), "it takes more than 4 steps");
    path.setLimit(20);
    EXPECT_EQ(ask(path, document), "a a a");
    // What is passed on the way up or down counts too, though nothing is found there.
    std::string deep(3'000, 'a');
    for (std::size_t i = 0; i < deep.size(); i += 3)
        deep.replace(i, 3, "<a>");
    for (int i = 0; i < 1'000; ++i)
        deep += "</a>";
    for (const char* const expression : {"count(//*[preceding::a])", "count(//*[following::a])"}) {
        PelDOMXPath climbing(expression);
        climbing.setLimit(100'000);
        EXPECT_TRUE(std::isnan(climbing.evaluateNumber(parse(deep)))) << expression;
    }
    // Texts that double.
    std::string text = "'0123456789'";
    for (int i = 0; i < 10; ++i)
        text = "concat(" + text + ", //a, " + text + ")";
    PelDOMXPath doubling(text);
    doubling.setLimit(30'000);
    EXPECT_EQ(doubling.evaluateString(document), "");
    EXPECT_EQ(doubling.getMessage(), "it takes more than 30000 steps");
}

TEST(XPath, TreesMayBeDeepAndWide) {
    constexpr int size = 30'000;
    std::string open, close, wide;
    for (int i = 0; i < size; ++i) {
        open += i % 2 == 0 ? "<a>" : "<b k='1'>";
        close.insert(0, i % 2 == 0 ? "</a>" : "</b>");
        wide += "<a/><b k='1'/>";
    }
    for (const PelDOMDocument& document : {parse(open + close), parse("<r>" + wide + "</r>")})
        for (const char* const expression :
             {"count(//a[1])", "count(//a/..)", "count(//@k/..)", "count(//a/ancestor::*)",
              "count(//a//b//b)", "count(//a/following::b)", "count(//b/preceding::a)",
              "count(//a/following-sibling::*[1])", "count(//a/preceding-sibling::a)",
              "count(//a | //b | //*)", "count(//*/b)", "count(//b[@k = //b/@k])",
              "string-length(/)"}) {
            PelDOMXPath path(expression);
            path.setLimit(20 * size);
            const double answer = path.evaluateNumber(document);
            EXPECT_FALSE(std::isnan(answer)) << expression << path.getMessage();
        }
}
