// SPDX-License-Identifier: MIT
#include "support.h"

#include <cfloat>
#include <cmath>

TEST(Creating, MakesADeclarationAndARoot) {
    const PelDOMDocument document = services().createDocument("Model");
    const PelDOMDocument other = services().createDocument("Model");
    document.getDocumentElement().setAttribute("k", "v");
    EXPECT_EQ(show(document) + show(other), "#9(#13 Model k=v)#9(#13 Model)");
    for (const char* name : {"1", "a b", "p:a", "<"})
        EXPECT_THROW(services().createDocument(name), xercesc::DOMException) << name;
}

TEST(Creating, LetsTheDeclarationMoveWithinTheDocumentOnly) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMNode declaration = childAt(document, 0);
    EXPECT_EQ(declaration.getContentImp(), nullptr);
    EXPECT_THROW(document.getDocumentElement().appendChild(declaration), xercesc::DOMException);
    EXPECT_EQ(answers({document, document.appendChild(declaration), document}), "#9(#13 r) ok #9(r #13)");
}

TEST(Filer, StartsOnTheRootAndStaysThere) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMFiler filer(document);
    EXPECT_EQ("#9(#13 r) #9(#13 r) ok ok ok invalid invalid r k=v(a(|1|) a(|2|))",
        answers({filer.document(), filer.currentNode(), filer.appendElement("a", "1"),
            filer.appendElement("a", "2"), filer.setAttribute("k", "v"), filer.appendElement("a", ""),
            filer.appendElement("", 5L), filer.currentElement()}));
}

TEST(Filer, PrintsNumbersByTheirFormats) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMFiler filer(document);
    const auto printed = [&filer](auto value, const char16_t* format) {
        filer.setAttribute("k", "before");
        const PelDOM::Error code = filer.setAttribute("k", value, format);
        return answers({code, filer.currentElement().getAttribute("k")});
    };
    const std::tuple<long, const char16_t*, const char*> wholes[] = {{42, u"", "ok '42'"},
        {-7, u"", "ok '-7'"}, {LONG_MIN, u"", "ok '-9223372036854775808'"}, {7, u"%05d", "ok '00007'"},
        {7, u"%5ld kg", "ok '    7 kg'"}, {255, u"%#x", "ok '0xff'"}, {9, u"100%% %hhd", "ok '100% 9'"},
        {LONG_MAX, u"%d", "ok '9223372036854775807'"}};
    for (const auto& [value, format, text] : wholes) EXPECT_EQ(printed(value, format), text);
    for (const char16_t* format : {u"no conversion", u"%d%d", u"%s", u"%n%d", u"%*d", u"%.*d", u"%f", u"%c",
             u"%d %y", u"%%", u"%", u"%100001d", u"%.100001d"})
        EXPECT_EQ(printed(1L, format), "invalid 'before'") << PelString(format);
    EXPECT_EQ(printed(1L, u"%100000d").size() + printed(0.5, u"%.100000f").size(), 200000 + 2 + 10U);
    EXPECT_EQ(printed(2.5, u"") + printed(0.5, u"%.2lf") + printed(1e21, u"%Lg m") + printed(0.1, u"%08.3e") +
                  printed(1.0, u"%d") + printed(1.0, u"%s") + printed(-HUGE_VAL, u"") +
                  printed(-DBL_MAX, u"").substr(0, 10),
        "ok '2.500000'ok '0.50'ok '1e+21 m'ok '1.000e-01'invalid 'before'invalid 'before'ok '-inf'ok "
        "'-17976");
    EXPECT_EQ("ok ok ok ok r k=6(i(|3|) l(|004|) d(|0.500000|))",
        answers({filer.appendElement("i", 3), filer.appendElement("l", 4L, "%03ld"),
            filer.appendElement("d", 0.5), filer.setAttribute("k", 6), filer.currentElement()}));
}

TEST(Filer, MovesItsCursorWhereItIsTold) {
    PelDOMDocument document = parse("<r><a/>t</r>");
    PelDOMFiler filer(document);
    PelDOMNode a = childAt(document.getDocumentElement(), 0);
    PelDOMNode text = childAt(document.getDocumentElement(), 1);
    PelDOMNode none;
    PelDOMFiler copy(filer);
    EXPECT_EQ("ok a ok |t| ok null ok ok #9(r(a(in(|a|)) |t| in(|r|)))",
        answers({filer.setCurrentNode(a), filer.currentNode(), filer.setCurrentNode(text),
            filer.currentNode(), filer.setCurrentNode(none), filer.currentNode(),
            filer.appendElement("in", "a"), copy.appendElement("in", "r"), document}));
    EXPECT_EQ(&(copy = filer), &copy);
    copy.setAttribute("k", "v");
    filer.currentElement() = PelDOMFiler::InvalidElement;
    EXPECT_EQ("a k=v(in(|a|)) null-node null-node no-imp",
        answers({a, filer.appendElement("x", "y"), filer.setAttribute("x", 1.0),
            PelDOMFiler::InvalidElement.getErrorStatus()}));
}
