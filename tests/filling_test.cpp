// SPDX-License-Identifier: MIT
#include "support.h"

#include <xercesc/dom/DOMException.hpp>

#include <climits>

namespace {

TEST(Creating, MakesADeclarationAndARoot) {
    PelDOMDocument document = services().createDocument("Model");
    const PelDOMDocument other = services().createDocument("Model");
    EXPECT_EQ(show(document), "#9(#13 Model)");
    document.getDocumentElement().setAttribute("k", "v");
    EXPECT_EQ(show(other), "#9(#13 Model)");
    for (const char* name : {"1", "a b", "p:a", "<"})
        EXPECT_THROW(services().createDocument(name), xercesc::DOMException) << name;
}

TEST(Creating, LetsTheDeclarationMoveWithinTheDocumentOnly) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMElement root = document.getDocumentElement();
    PelDOMNodeList children;
    document.getChildNodes(children);
    PelDOMNode declaration = childAt(document, 0);
    EXPECT_EQ(declaration.isNull(), 0);
    EXPECT_EQ(declaration.getContentImp(), nullptr);
    EXPECT_THROW(root.appendChild(declaration), xercesc::DOMException);
    EXPECT_EQ(show(document), "#9(#13 r)");
    EXPECT_EQ(document.appendChild(declaration), PelDOM::SUCCESS);
    EXPECT_EQ(show(document), "#9(r #13)");
    EXPECT_EQ(children.length(), 2);
}

TEST(Filer, StartsOnTheRootAndStaysThere) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMFiler filer(document);
    EXPECT_EQ(filer.document().getNodeType(), PelDOM::DOCUMENT_NODE);
    EXPECT_EQ(filer.currentNode().getNodeType(), PelDOM::DOCUMENT_NODE);
    EXPECT_EQ(filer.currentElement().getTagName(), "r");
    EXPECT_EQ(filer.appendElement("a", "1"), PelDOM::SUCCESS);
    EXPECT_EQ(filer.appendElement("a", "2"), PelDOM::SUCCESS);
    EXPECT_EQ(filer.setAttribute("k", "v"), PelDOM::SUCCESS);
    EXPECT_EQ(filer.appendElement("a", ""), PelDOM::INVALID_VALUE);
    EXPECT_EQ(filer.appendElement("", 5L), PelDOM::INVALID_VALUE);
    EXPECT_EQ(show(document.getDocumentElement()), "r k=v(a(|1|) a(|2|))");
}

TEST(Filer, PrintsNumbersByTheirFormats) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMFiler filer(document);
    const PelDOMElement root = document.getDocumentElement();
    const auto last = [&] { return root.getAttribute("k"); };
    const struct {
        long value;
        const char16_t* format;
        const char16_t* text; // null: refused
    } wholes[] = {
        {42, u"", u"42"},
        {-7, u"", u"-7"},
        {LONG_MIN, u"", u"-9223372036854775808"},
        {7, u"%05d", u"00007"},
        {7, u"%5ld kg", u"    7 kg"},
        {255, u"%#x", u"0xff"},
        {9, u"100%% %hhd", u"100% 9"},
        {LONG_MAX, u"%d", u"9223372036854775807"},
        {1, u"no conversion", nullptr},
        {1, u"%d%d", nullptr},
        {1, u"%s", nullptr},
        {1, u"%n%d", nullptr},
        {1, u"%*d", nullptr},
        {1, u"%.*d", nullptr},
        {1, u"%f", nullptr},
        {1, u"%c", nullptr},
        {1, u"%d %y", nullptr},
        {1, u"%%", nullptr},
        {1, u"%", nullptr},
    };
    for (const auto& c : wholes) {
        root.isNull();
        PelDOMElement(root).setAttribute("k", "before");
        EXPECT_EQ(filer.setAttribute("k", c.value, c.format),
                  c.text != nullptr ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE);
        EXPECT_EQ(last(), c.text != nullptr ? c.text : u"before") << PelString(c.format);
    }
    const struct {
        double value;
        const char16_t* format;
        const char16_t* text;
    } reals[] = {
        {2.5, u"", u"2.500000"},        {0.5, u"%.2lf", u"0.50"}, {1e21, u"%Lg m", u"1e+21 m"},
        {0.1, u"%08.3e", u"1.000e-01"}, {1, u"%d", nullptr},      {1, u"%s", nullptr},
    };
    for (const auto& c : reals) {
        PelDOMElement(root).setAttribute("k", "before");
        EXPECT_EQ(filer.setAttribute("k", c.value, c.format),
                  c.text != nullptr ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE);
        EXPECT_EQ(last(), c.text != nullptr ? c.text : u"before") << PelString(c.format);
    }
    filer.appendElement("i", 3);
    filer.appendElement("l", 4L, "%03ld");
    filer.appendElement("d", 0.5);
    filer.setAttribute("k", 6);
    EXPECT_EQ(show(root), "r k=6(i(|3|) l(|004|) d(|0.500000|))");
}

TEST(Filer, MovesItsCursorWhereItIsTold) {
    PelDOMDocument document = parse("<r><a/>t</r>");
    PelDOMFiler filer(document);
    PelDOMNode a = childAt(document.getDocumentElement(), 0);
    PelDOMNode text = childAt(document.getDocumentElement(), 1);
    PelDOMNode none;
    PelDOMFiler copy(filer);
    EXPECT_EQ(filer.setCurrentNode(a), PelDOM::SUCCESS);
    EXPECT_EQ(filer.setCurrentNode(text), PelDOM::SUCCESS);
    EXPECT_EQ(filer.currentNode().getNodeType(), PelDOM::TEXT_NODE);
    EXPECT_EQ(filer.setCurrentNode(none), PelDOM::SUCCESS);
    EXPECT_EQ(filer.currentNode().isNull(), 1);
    filer.appendElement("in", "a");
    copy.appendElement("in", "r");
    EXPECT_EQ(show(document), "#9(r(a(in(|a|)) |t| in(|r|)))");
    EXPECT_EQ(&(copy = filer), &copy);
    copy.setAttribute("k", "v");
    EXPECT_EQ(show(a), "a k=v(in(|a|))");
    filer.currentElement() = PelDOMFiler::InvalidElement;
    EXPECT_EQ(filer.appendElement("x", "y"), PelDOM::NULL_NODE);
    EXPECT_EQ(filer.setAttribute("x", 1.0), PelDOM::NULL_NODE);
    EXPECT_EQ(PelDOMFiler::InvalidElement.getErrorStatus(), PelDOM::NO_IMPLEMENTATION);
}

} // namespace
