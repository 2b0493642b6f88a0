// SPDX-License-Identifier: MIT
#include "support.h"

TEST(Relatives, AreWhatTheListsOfChildrenSay) {
    const PelDOMDocument document =
        parse("<?pi?><!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY>]><r>t<a><a/></a><!--c--><a/>"
              "<![CDATA[d]]><?p i?></r>");
    std::vector<PelDOMNode> nodes{document};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const PelDOMNode node = nodes[i];
        const PelDOMNodeList children = childrenOf(node);
        const long count = children.length();
        EXPECT_EQ(node.hasChildNodes(), count > 0);
        EXPECT_EQ(node.getOwnerDocument(), i == 0 ? PelDOMDocument() : document);
        EXPECT_EQ(node.getChildNodes(), children);
        EXPECT_EQ(node.getFirstChild(), itemOf(children, 0));
        EXPECT_EQ(node.getLastChild(), itemOf(children, count - 1));
        for (long j = 0; j < count; ++j) {
            const PelDOMNode child = itemOf(children, j);
            EXPECT_EQ(child.getParentNode(), node);
            EXPECT_EQ(child.getPreviousSibling(), itemOf(children, j - 1));
            EXPECT_EQ(child.getNextSibling(), itemOf(children, j + 1));
            nodes.push_back(child);
        }
    }
    EXPECT_EQ(nodes.size(), 11U);
    EXPECT_TRUE(!document.getParentNode() && !document.getNextSibling() && !document.getOwnerDocument());
}

TEST(Relatives, AreElementsWithAName) {
    const PelDOMElement root = rootOf("<r>t<a i='1'/><!--c--><b i='2'><a/></b> <a i='3'/><![CDATA[d]]></r>");
    const PelDOMElement first = root.getChildElement(), third = root.getChildElement("b").getNextElement();
    EXPECT_EQ("a i=1 null b i=2(a) a i=3 null null b i=2(a) a i=1 null null null",
        answers({first, root.getChildElement("c"), first.getNextElement(), first.getNextElement("a"),
            first.getNextElement("c"), third.getNextElement(), third.getPreviousElement(),
            third.getPreviousElement("a"), first.getPreviousElement(), first.getChildElement(),
            root.getNextElement("*")}));
}
