// SPDX-License-Identifier: MIT
#include "support.h"

#include <cfloat>
#include <cmath>

TEST(Creating, MakesADeclarationAndARoot) {
    const PelDOMDocument document = services().createDocument("Model");
    const PelDOMDocument other = services().createDocument("Model");
    document.getDocumentElement().setAttribute("k", "v");
    expectAnswers({{document, "#9(#13 Model k=v)"}, {other, "#9(#13 Model)"}});
    for (const char* name : {"1", "a b", "p:a", "<"})
        EXPECT_THROW(services().createDocument(name), xercesc::DOMException) << name;
}

TEST(Creating, LetsTheDeclarationMoveWithinTheDocumentOnly) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMNode declaration = childAt(document, 0);
    EXPECT_EQ(declaration.getContentImp(), nullptr);
    EXPECT_THROW(document.getDocumentElement().appendChild(declaration), xercesc::DOMException);
    expectAnswers({{document, "#9(#13 r)"},
                   {document.appendChild(declaration), "ok"},
                   {document, "#9(r #13)"}});
}

TEST(Filer, StartsOnTheRootAndStaysThere) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMFiler filer(document);
    expectAnswers({{filer.document(), "#9(#13 r)"},
                   {filer.currentNode(), "#9(#13 r)"},
                   {filer.appendElement("a", "1"), "ok"},
                   {filer.appendElement("a", "2"), "ok"},
                   {filer.setAttribute("k", "v"), "ok"},
                   {filer.appendElement("a", ""), "invalid"},
                   {filer.appendElement("", 5L), "invalid"},
                   {filer.currentElement(), "r k=v(a(|1|) a(|2|))"}});
}

TEST(Filer, PrintsNumbersByTheirFormats) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMFiler filer(document);
    const auto printed = [&filer](auto value, const char16_t* format) {
        filer.setAttribute("k", "before");
        const PelDOM::Error code = filer.setAttribute("k", value, format);
        return answers({code, filer.currentElement().getAttribute("k")});
    };
    const std::tuple<long, const char16_t*, std::string> wholes[] = {
        {42, u"", "ok '42'"},
        {-7, u"", "ok '-7'"},
        {LONG_MIN, u"", "ok '" + std::to_string(LONG_MIN) + "'"},
        {7, u"%05d", "ok '00007'"},
        {7, u"%5ld kg", "ok '    7 kg'"},
        {255, u"%#x", "ok '0xff'"},
        {9, u"100%% %hhd", "ok '100% 9'"},
        {LONG_MAX, u"%d", "ok '" + std::to_string(LONG_MAX) + "'"}};
    for (const auto& [value, format, text] : wholes)
        EXPECT_EQ(printed(value, format), text);
    for (const char16_t* format : {u"no conversion", u"%d%d", u"%s", u"%n%d", u"%*d", u"%.*d",
                                   u"%f", u"%c", u"%d %y", u"%%", u"%", u"%100001d", u"%.100001d"})
        EXPECT_EQ(printed(1L, format), "invalid 'before'") << PelString(format);
    EXPECT_EQ(printed(1L, u"%100000d").size() + printed(0.5, u"%.100000f").size(),
              200000 + 2 + 10U);
    const std::tuple<double, const char16_t*, const char*> reals[] = {
        {2.5, u"", "ok '2.500000'"},      {0.5, u"%.2lf", "ok '0.50'"},
        {1e21, u"%Lg m", "ok '1e+21 m'"}, {0.1, u"%08.3e", "ok '1.000e-01'"},
        {2, u"%.1F", "ok '2.0'"},         {1, u"%d", "invalid 'before'"},
        {1, u"%s", "invalid 'before'"},   {-HUGE_VAL, u"", "ok '-inf'"}};
    for (const auto& [value, format, text] : reals)
        EXPECT_EQ(printed(value, format), text);
    EXPECT_EQ(printed(-DBL_MAX, u"").substr(0, 10), "ok '-17976");
    expectAnswers({{filer.appendElement("i", 3), "ok"},
                   {filer.appendElement("l", 4L, "%03ld"), "ok"},
                   {filer.appendElement("d", 0.5), "ok"},
                   {filer.setAttribute("k", 6), "ok"},
                   {filer.currentElement(), "r k=6(i(|3|) l(|004|) d(|0.500000|))"}});
}

TEST(Filer, MovesItsCursorWhereItIsTold) {
    PelDOMDocument document = parse("<r><a/>t</r>");
    PelDOMFiler filer(document);
    PelDOMNode a = childAt(document.getDocumentElement(), 0);
    PelDOMNode text = childAt(document.getDocumentElement(), 1);
    PelDOMNode none;
    PelDOMFiler copy(filer);
    expectAnswers({{filer.setCurrentNode(a), "ok"},
                   {filer.currentNode(), "a"},
                   {filer.setCurrentNode(text), "ok"},
                   {filer.currentNode(), "|t|"},
                   {filer.setCurrentNode(none), "ok"},
                   {filer.currentNode(), "null"},
                   {filer.appendElement("in", "a"), "ok"},
                   {copy.appendElement("in", "r"), "ok"},
                   {document, "#9(r(a(in(|a|)) |t| in(|r|)))"}});
    PelDOMDocument other = parse("<o/>");
    copy = PelDOMFiler(other);
    expectAnswers(
        {{copy.document(), "#9(o)"}, {copy.currentNode(), "#9(o)"}, {copy.currentElement(), "o"}});
    EXPECT_EQ(&(copy = filer), &copy);
    expectAnswers({{copy.document(), show(document)}, {copy.currentNode(), "null"}});
    copy.setAttribute("k", "v");
    filer.currentElement() = PelDOMFiler::InvalidElement;
    expectAnswers({{a, "a k=v(in(|a|))"},
                   {filer.appendElement("x", "y"), "null-node"},
                   {filer.setAttribute("x", 1.0), "null-node"},
                   {PelDOMFiler::InvalidElement.getErrorStatus(), "no-imp"}});
}
