// SPDX-License-Identifier: MIT
#include "support.h"

namespace {

using Lines = std::vector<std::string>;

std::string failure(int type) {
    return "PelXercesDOMNode::createContentImp(" + std::to_string(type) + ") failed";
}

TEST(Dump, PrintsATreeLineByLine) {
    PelDOMDocument document = services().createDocument("Model");
    PelDOMElement root = document.getDocumentElement();
    root.setAttribute("a", "1");
    PelDOMText text = document.createTextNode("x");
    root.appendChild(text);
    const LogWatch log;
    document.dump(1);
    EXPECT_EQ(log.lines(),
              Lines({"Node(type=9)", "(", failure(13), failure(13), "  Node(type=13)",
                     "  Element(Model)", "   - a=\"1\"", "  (", "    Text(\"x\")", "  )", ")"}));
}

TEST(Dump, LeavesOutLayoutOnly) {
    PelDOMDocument document = parse("<r>\n  <a> </a><b>\n</b><c>\t\n</c></r>");
    PelDOMElement root = document.getDocumentElement();
    PelDOMText empty = document.createTextNode("");
    root.appendChild(empty);
    const LogWatch log;
    root.dump(0);
    PelDOMNode().dump(3);
    EXPECT_EQ(log.lines(), Lines({"Element(r)", "(", "Element(a)", "(", "  Text(\" \")", ")",
                                  "Element(b)", "(", ")", "Element(c)", "(", "  Text(\"\t", "\")",
                                  ")", "Text(\"\")", ")", "    Node(type=0)"}));
}

TEST(Dump, StampsElementsWithTheirDepth) {
    PelDOMDocument document = parse("<r>\n<a k='v'><b/></a></r>");
    {
        const LogWatch log;
        document.dumpParseLevel(1);
        EXPECT_EQ(log.lines(), Lines({"Node(type=9)", "(", "  Element(r)", "  (", "    Text(\"",
                                      "\")", "    Element(a)", "     - k=\"v\"", "    (",
                                      "      Element(b)", "    )", "  )", ")"}));
    }
    EXPECT_EQ(show(document), "#9(r PARSELEVEL=2(|\n| a PARSELEVEL=3 k=v(b PARSELEVEL=4)))");
    const LogWatch log;
    PelDOMNode a = childAt(document.getDocumentElement(), 1);
    a.dumpParseLevel(-5);
    EXPECT_EQ(log.lines(), Lines({"Element(a)", " - PARSELEVEL=\"3\"", " - k=\"v\"", "(",
                                  "Element(b)", " - PARSELEVEL=\"4\"", ")"}));
    EXPECT_EQ(show(a), "a PARSELEVEL=-5 k=v(b PARSELEVEL=-4)");
}

} // namespace
