// SPDX-License-Identifier: MIT
#include "support.h"

TEST(Dump, LeavesOutLayoutOnly) {
    PelDOMDocument document = parse("<r>\n  <a> </a><b>&#13;\n</b><c>\t\n</c></r>");
    append(document.getDocumentElement(), document.createTextNode(""));
    const LogWatch log;
    document.getDocumentElement().dump(0);
    PelDOMNode().dump(3);
    EXPECT_EQ(log.text(),
              "Element(r)\n(\nElement(a)\n(\n  Text(\" \")\n)\nElement(b)\n(\n)\nElement(c)\n(\n"
              "  Text(\"\t\n\")\n)\nText(\"\")\n)\n    Node(type=0)\n");
}

TEST(Dump, PrintsATreeLineByLineAndStampsElementsWithTheirDepth) {
    PelDOMDocument document = services().createDocument("r");
    PelDOMElement root = document.getDocumentElement();
    root.setAttribute("k", "v");
    root.appendTextElement("a", "x");
    const std::string failure = "PelXercesDOMNode::createContentImp(13) failed\n";
    const std::string head =
        "Node(type=9)\n(\n" + failure + failure + "  Node(type=13)\n  Element(r)\n";
    const std::string tail =
        "   - k=\"v\"\n  (\n    Element(a)\n    (\n      Text(\"x\")\n    )\n  )\n)\n";
    const LogWatch log;
    document.dump(1);
    document.dumpParseLevel(1);
    EXPECT_EQ(log.text(), head + tail + head + tail);
    EXPECT_EQ(show(root), "r PARSELEVEL=2 k=v(a PARSELEVEL=3(|x|))");
    append(root, document.createTextNode("\n"));
    const LogWatch second;
    root.dumpParseLevel(-5);
    EXPECT_EQ(second.text(), "Element(r)\n - PARSELEVEL=\"2\"\n - k=\"v\"\n(\nElement(a)\n - "
                             "PARSELEVEL=\"3\"\n(\nText(\"x\")\n)\nText(\"\n\")\n)\n");
    EXPECT_EQ(show(root), "r PARSELEVEL=-5 k=v(a PARSELEVEL=-4(|x|) |\n|)");
}

TEST(Dump, GoesToTheDeepestLevelThatThereIs) {
    PelDOMElement root = rootOf("<r><a><b/></a></r>");
    const LogWatch log;
    root.dump(LONG_MAX);
    EXPECT_EQ(log.text(), repeated("A line is left out: the log has no room for it.\n", 7));
    root.dumpParseLevel(LONG_MAX - 1);
    EXPECT_EQ(show(root), "r PARSELEVEL=" + std::to_string(LONG_MAX - 1) +
                              "(a PARSELEVEL=" + std::to_string(LONG_MAX) +
                              "(b PARSELEVEL=" + std::to_string(LONG_MAX) + "))");
}
