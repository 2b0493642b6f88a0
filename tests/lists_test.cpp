// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/PelXercesDOMNode.h"

#include <xercesc/dom/DOMException.hpp>

#include <random>

namespace {

const xercesc::DOMNode& nodeOf(const PelDOMNode& handle) {
    return *PelXercesDOMNode::of(*handle.getNodeImp()).getNode();
}

// Appends, unless that would make a cycle.
void tryToAppend(PelDOMNode& parent, PelDOMNode& child) {
    try {
        parent.appendChild(child);
    } catch (const xercesc::DOMException&) {
        return;
    }
}

PelDOMNodeList childrenOf(const PelDOMNode& node) {
    PelDOMNodeList list;
    node.getChildNodes(list);
    return list;
}

PelDOMNodeList elementsOf(const PelDOMElement& root, const PelString& name) {
    PelDOMNodeList list;
    const int found = root.getElementsByTagName(name, list);
    EXPECT_EQ(found, list.length());
    return list;
}

// The tag names in a list, asked for in order.
std::string names(const PelDOMNodeList& list) {
    std::string joined;
    for (long i = 0; i < list.length(); ++i) {
        PelDOMNode node;
        EXPECT_EQ(list.item(i, node), PelDOM::SUCCESS);
        joined += PelDOMElement(node).getTagName().toUtf8();
    }
    return joined;
}

TEST(Lists, AnswerPositionsOutsideThem) {
    const PelDOMElement root = parse("<r><a/><b/><c/></r>").getDocumentElement();
    const PelDOMNodeList list = childrenOf(root);
    PelDOMNode node = root;
    for (const long outside : {-1L, 3L})
        EXPECT_EQ(list.item(outside, node), PelDOM::INDEX_OUT_OF_RANGE);
    EXPECT_EQ(show(node), show(root));
    EXPECT_EQ(list.item(2, node), PelDOM::SUCCESS);
    EXPECT_EQ(show(node), "c");
    const PelDOMNodeList none = elementsOf(root, "absent");
    EXPECT_EQ(none.length(), 0);
    EXPECT_EQ(none.item(0, node), PelDOM::INDEX_OUT_OF_RANGE);
}

TEST(Lists, AreCopiedAndAssignedAsHandlesAre) {
    PelDOMElement root = parse("<r><a/></r>").getDocumentElement();
    auto first = std::make_unique<PelDOMNodeList>(childrenOf(root));
    PelDOMNodeList copy(*first);
    PelDOMNodeList empty;
    EXPECT_EQ(&(copy = *first), first.get());
    copy = *&copy;
    first.reset();
    root.appendTextElement("b", "t");
    EXPECT_EQ(names(copy), "ab");
    copy = empty;
    EXPECT_EQ(copy.length(), 0);
}

TEST(Lists, OfElementsAreInDocumentOrderWithoutTheRoot) {
    const PelDOMElement root =
        parse("<x><x><y/><x/></x>t<!--x--><y><p:x/><X/><x/></y></x>").getDocumentElement();
    EXPECT_EQ(elementsOf(root, "x").length(), 3);
    EXPECT_EQ(names(elementsOf(root, "*")), "xyxyp:xXx");
    EXPECT_EQ(elementsOf(root, "p:x").length(), 1);
    EXPECT_EQ(elementsOf(root, "").length(), 0);
    PelDOMNode last;
    elementsOf(root, "x").item(2, last);
    PelDOMNode parent;
    last.getParentNode(parent);
    EXPECT_EQ(show(parent), "y(p:x X x)");
}

TEST(Lists, ShareTheirNodes) {
    const PelDOMElement root = parse("<r><a/></r>").getDocumentElement();
    PelDOMNode found;
    elementsOf(root, "a").item(0, found);
    PelDOMElement(childAt(root, 0)).setAttribute("k", "v");
    EXPECT_EQ(PelDOMElement(found).getAttribute("k"), "v");
}

// Random changes, with long-lived lists compared to fresh ones after each; more changes between two
// looks than a tree remembers as well as fewer.
TEST(Lists, FollowEveryChangeAtOnce) {
    std::mt19937 random(20240229);
    PelDOMDocument document = parse("<r/>");
    PelDOMElement root = document.getDocumentElement();
    std::vector<PelDOMElement> elements{root};
    for (int i = 0; i < 12; ++i)
        elements.push_back(document.createElement(i % 3 == 0 ? "a" : "b"));
    std::vector<PelDOMNodeList> kept;
    for (const PelDOMElement& element : elements) {
        kept.push_back(childrenOf(element));
        for (const char* name : {"a", "b", "*"})
            kept.push_back(elementsOf(element, name));
    }
    const auto pick = [&](std::size_t n) { return random() % n; };
    for (int round = 0; round < 400; ++round) {
        for (std::size_t changes = pick(2) == 0 ? 1 : pick(80); changes > 0; --changes) {
            PelDOMElement& parent = elements[pick(elements.size())];
            if (pick(30) == 0)
                parent.appendTextElement(pick(2) == 0 ? "a" : "b", "t");
            else
                tryToAppend(parent, elements[1 + pick(elements.size() - 1)]);
        }
        std::size_t next = 0;
        for (const PelDOMElement& element : elements) {
            const PelDOMNodeList fresh[] = {childrenOf(element), elementsOf(element, "a"),
                                            elementsOf(element, "b"), elementsOf(element, "*")};
            for (const PelDOMNodeList& list : fresh) {
                PelDOMNodeList& old = kept[next++];
                if (pick(3) == 0)
                    continue; // let it fall behind
                ASSERT_EQ(old.length(), list.length());
                for (int probe = 0; probe < 4 && list.length() > 0; ++probe) {
                    const long index =
                        static_cast<long>(pick(static_cast<std::size_t>(list.length())));
                    PelDOMNode one;
                    PelDOMNode two;
                    old.item(index, one);
                    list.item(index, two);
                    ASSERT_EQ(&nodeOf(one), &nodeOf(two));
                }
            }
        }
    }
}

// Each step changes the tree; a list that began anew with each change would never get through this.
TEST(Lists, OfManyNodesAreWalkedWhileTheTreeGrows) {
    constexpr long count = 100000;
    PelDOMElement root = parse("<r/>").getDocumentElement();
    const PelDOMNodeList children = childrenOf(root);
    const PelDOMNodeList items = elementsOf(root, "i");
    for (long i = 0; i < count; ++i) {
        root.appendTextElement("i", PelString().format(u"%ld", i));
        ASSERT_EQ(children.length(), i + 1);
    }
    for (long i = 0; i < items.length(); ++i) {
        PelDOMNode child;
        PelDOMNode item;
        children.item(count - 1 - i, child);
        items.item(i, item);
        PelString number;
        PelDOMElement(item).getChildTextValue(number);
        ASSERT_EQ(number, PelString().format(u"%ld", i));
        PelDOMElement(child).appendTextElement("note", "t");
        if (i >= count / 2 - 1)
            break; // the other half has its notes
    }
    EXPECT_EQ(elementsOf(root, "note").length(), count / 2);
}

} // namespace
