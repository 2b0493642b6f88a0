// SPDX-License-Identifier: MIT
#include "support.h"

#include <cfloat>
#include <cmath>

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
    expectEach("ok", {filer.appendElement("i", 3), filer.appendElement("l", 4L, "%03ld"),
                      filer.appendElement("d", 0.5), filer.setAttribute("k", 6)});
    EXPECT_EQ(show(filer.currentElement()), "r k=6(i(|3|) l(|004|) d(|0.500000|))");
}

TEST(Filer, IsAssignedWithItsCursorAndMayLoseItsElement) {
    PelDOMDocument document = parse("<r/>"), other = parse("<o/>");
    PelDOMFiler filer(document), copy(other);
    EXPECT_EQ(&(copy = filer), &copy);
    filer.currentElement() = PelDOMFiler::InvalidElement;
    EXPECT_EQ(answers({copy.setAttribute("k", "v"), document}), "ok #9(r k=v)");
    expectEach("null-node", {filer.appendElement("x", "y"), filer.setAttribute("x", 1.0)});
    EXPECT_EQ(PelDOMFiler::InvalidElement.getErrorStatus(), PelDOM::NO_IMPLEMENTATION);
}
