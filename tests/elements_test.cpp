// SPDX-License-Identifier: MIT
#include "support.h"

#include <xercesc/dom/DOMException.hpp>

#include <climits>
#include <cmath>

namespace {

using xercesc::DOMException;

TEST(Attributes, AreReadByNameAndByPosition) {
    const PelDOMElement root = parse("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r d CDATA 'default' z "
                                     "CDATA #IMPLIED p:a CDATA #IMPLIED>]><r z='1' p:a='x &lt;'/>")
                                   .getDocumentElement();
    EXPECT_EQ(show(root), "r d=default p:a=x < z=1");
    EXPECT_EQ(root.getAttribute("p:a"), u"x <");
    for (const long outside : {-1L, 3L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(root.getAttributeNameAt(outside) + root.getAttributeValueAt(outside), "");
    PelString value("old");
    EXPECT_EQ(root.getAttribute("absent", value), PelDOM::SUCCESS);
    EXPECT_EQ(value, "");
}

TEST(Attributes, AreSetAndRemovedUnlessEmpty) {
    PelDOMElement root = parse("<r a='1'/>").getDocumentElement();
    EXPECT_EQ(root.setAttribute("a", ""), PelDOM::INVALID_VALUE);
    EXPECT_EQ(root.setAttribute("", "v"), PelDOM::INVALID_VALUE);
    EXPECT_EQ(root.setAttribute("", ""), PelDOM::INVALID_VALUE);
    EXPECT_EQ(show(root), "r a=1");
    EXPECT_EQ(root.setAttribute("a", " 2\n"), PelDOM::SUCCESS);
    EXPECT_EQ(root.setAttribute("b", "3"), PelDOM::SUCCESS);
    EXPECT_EQ(show(root), "r a= 2\n b=3");
    EXPECT_EQ(root.removeAttribute("a"), PelDOM::SUCCESS);
    EXPECT_EQ(root.removeAttribute("a"), PelDOM::SUCCESS);
    EXPECT_EQ(root.removeAttribute(""), PelDOM::INVALID_VALUE);
    EXPECT_THROW(root.setAttribute("not a name", "v"), DOMException);
    EXPECT_EQ(show(root), "r b=3");
}

TEST(TypedReads, FollowTheRulesOfFormattedInput) {
    PelDOMElement root = parse("<r/>").getDocumentElement();
    constexpr long none = -99;
    constexpr double noReal = -99;
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        const char16_t* text;
        long whole;
        double real;
    } cases[] = {
        {u"42", 42, 42},
        {u"-3", -3, -3},
        {u"+8", 8, 8},
        {u"4.9", 4, 4.9},
        {u"12abc", 12, 12},
        {u" \t\r\n\v\f7", 7, 7},
        {u"abc", none, noReal},
        {u"   ", none, noReal},
        {u"\u00a05", none, noReal},
        {u"\u0665", none, noReal},
        {u"--1", none, noReal},
        {u"+", none, noReal},
        {u"- 1", none, noReal},
        {u".", none, noReal},
        {u".5", none, 0.5},
        {u"5.", 5, 5},
        {u"1e3", 1, 1000},
        {u"1E-2x", 1, 0.01},
        {u"1e", 1, noReal},
        {u"1e+", 1, noReal},
        {u"1,5", 1, 1},
        {u"0x1p3", 0, 8},
        {u"0XA.8", 0, 10.5},
        {u"0x", 0, noReal},
        {u"0x.p1", 0, noReal},
        {u"0x1p", 0, noReal},
        {u"inf", none, infinity},
        {u"-INFINITY!", none, -infinity},
        {u"infin", none, noReal},
        {u"infx", none, infinity},
        {u"na", none, noReal},
        {u"nan(1", none, noReal},
        {u"1e999", 1, infinity},
        {u"-1e-999", -1, 0},
        {u"9223372036854775807", LONG_MAX, 9223372036854775807.0},
        {u"9223372036854775808", LONG_MAX, 9223372036854775808.0},
        {u"-9223372036854775808", LONG_MIN, -9223372036854775808.0},
        {u"-99999999999999999999", LONG_MIN, -1e20},
        {u"000000000000000000000000000012", 12, 12},
    };
    for (const auto& c : cases) {
        root.setAttribute("n", c.text);
        long whole = none;
        double real = noReal;
        EXPECT_EQ(root.getAttribute("n", whole),
                  c.whole == none ? PelDOM::INVALID_VALUE : PelDOM::SUCCESS)
            << PelString(c.text);
        EXPECT_EQ(root.getAttribute("n", real),
                  c.real == noReal ? PelDOM::INVALID_VALUE : PelDOM::SUCCESS)
            << PelString(c.text);
        EXPECT_EQ(whole, c.whole) << PelString(c.text);
        EXPECT_EQ(real, c.real) << PelString(c.text);
    }
    double real = 0;
    for (const char* text : {"nan", "-NAN(ab_1)", "nanx"}) {
        root.setAttribute("n", text);
        EXPECT_EQ(root.getAttribute("n", real), PelDOM::SUCCESS) << text;
        EXPECT_TRUE(std::isnan(real)) << text;
    }
    EXPECT_EQ(root.getAttribute("absent", real), PelDOM::INVALID_VALUE);
}

TEST(ChildText, IsThatOfAnElementWithOneTextOnly) {
    const PelDOMElement root =
        parse("<r><a> x &amp; y "
              "</a><b/><c>1<d/></c><e><![CDATA[1]]></e><f><!--1--></f><g><h/></g></r>")
            .getDocumentElement();
    PelString value("kept");
    for (long i = 1; i < 6; ++i)
        EXPECT_EQ(PelDOMElement(childAt(root, i)).getChildTextValue(value), PelDOM::INVALID_VALUE);
    EXPECT_EQ(value, "kept");
    EXPECT_EQ(PelDOMElement(childAt(root, 0)).getChildTextValue(value), PelDOM::SUCCESS);
    EXPECT_EQ(value, " x & y ");
}

TEST(Elements, GainTextElements) {
    PelDOMElement root = parse("<r><a/></r>").getDocumentElement();
    EXPECT_EQ(root.appendTextElement("n", ""), PelDOM::INVALID_VALUE);
    EXPECT_EQ(root.appendTextElement("", "t"), PelDOM::INVALID_VALUE);
    EXPECT_EQ(root.appendTextElement("n", "t"), PelDOM::SUCCESS);
    EXPECT_EQ(root.appendTextElement("n", "t"), PelDOM::SUCCESS);
    EXPECT_THROW(root.appendTextElement("<", "t"), DOMException);
    EXPECT_EQ(show(root), "r(a n(|t|) n(|t|))");
}

TEST(Texts, KeepWhatIsSet) {
    PelDOMDocument document = parse("<r>old</r>");
    PelDOMText text(childAt(document.getDocumentElement(), 0));
    PelDOMText other = text;
    EXPECT_EQ(text.setValue(""), PelDOM::INVALID_VALUE);
    EXPECT_EQ(text.getValue(), "old");
    EXPECT_EQ(text.setValue(u" \r\n<\U0001F600 "), PelDOM::SUCCESS);
    EXPECT_EQ(other.getValue(), u" \r\n<\U0001F600 ");
    PelDOMText empty = document.createTextNode("");
    EXPECT_EQ(empty.getErrorStatus(), PelDOM::SUCCESS);
    EXPECT_EQ(empty.getValue(), "");
}

TEST(Trees, GrowAndMoveByAppending) {
    PelDOMDocument document = parse("<r><a/><b><c/></b></r>");
    PelDOMElement root = document.getDocumentElement();
    PelDOMElement made = document.createElement("made");
    PelDOMNode parent;
    EXPECT_EQ(made.getParentNode(parent), PelDOM::SUCCESS);
    EXPECT_EQ(parent.getNodeType(), PelDOM::NO_NODE);
    EXPECT_EQ(show(root), "r(a b(c))");
    PelDOMText text = document.createTextNode("t");
    made.appendChild(text);
    EXPECT_EQ(root.appendChild(made), PelDOM::SUCCESS);
    PelDOMNode moved = childAt(root, 0);
    EXPECT_EQ(childAt(root, 1).appendChild(moved), PelDOM::SUCCESS);
    EXPECT_EQ(show(root), "r(b(c a) made(|t|))");
    EXPECT_EQ(moved.getParentNode(parent), PelDOM::SUCCESS);
    EXPECT_EQ(show(parent), "b(c a)");
    PelDOMDocument owner;
    EXPECT_EQ(moved.getOwnerDocument(owner), PelDOM::SUCCESS);
    EXPECT_EQ(show(owner), show(document));
}

// Runs an append that the DOM forbids and gives the engine's code for the refusal.
int refusal(PelDOMNode parent, PelDOMNode child) {
    try {
        return parent.appendChild(child);
    } catch (const DOMException& exception) {
        return -exception.code;
    }
}

TEST(Trees, RefuseWhatTheDomForbidsAndStayAsTheyWere) {
    PelDOMDocument document = parse("<r><a><b/></a></r>");
    PelDOMDocument other = parse("<o/>");
    PelDOMElement root = document.getDocumentElement();
    const PelDOMNode a = childAt(root, 0);
    constexpr int hierarchy = -DOMException::HIERARCHY_REQUEST_ERR;
    EXPECT_EQ(refusal(a, a), hierarchy);
    EXPECT_EQ(refusal(childAt(a, 0), a), hierarchy);
    EXPECT_EQ(refusal(childAt(a, 0), childAt(a, 0)), hierarchy);
    EXPECT_EQ(refusal(document, document), hierarchy);
    EXPECT_EQ(refusal(document, document.createElement("second")), hierarchy);
    EXPECT_EQ(refusal(document, document.createTextNode("t")), hierarchy);
    EXPECT_EQ(refusal(root, other.getDocumentElement()), -DOMException::WRONG_DOCUMENT_ERR);
    EXPECT_EQ(show(document) + show(other), "#9(r(a(b)))#9(o)");
    for (const char* name : {"", "1a", "a b"})
        EXPECT_THROW(document.createElement(name), DOMException) << name;
}

} // namespace
