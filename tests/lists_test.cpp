// SPDX-License-Identifier: MIT
#include "support.h"

static PelDOMNodeList elementsOf(const PelDOMElement& root, const PelString& name) {
    PelDOMNodeList list;
    const int found = root.getElementsByTagName(name, list);
    EXPECT_EQ(found, list.length());
    return list;
}

static PelString names(const PelDOMNodeList& list) {
    PelString joined;
    for (long i = 0; i < list.length(); ++i)
        joined += PelDOMElement(itemOf(list, i)).getTagName();
    return joined;
}

TEST(Lists, AreCopiedAndAssignedAsHandlesAre) {
    PelDOMElement root = rootOf("<r><a/></r>");
    auto first = std::make_unique<PelDOMNodeList>(childrenOf(root));
    PelDOMNodeList copy(*first);
    EXPECT_EQ(&(copy = *first), first.get());
    copy = *&copy;
    first.reset();
    root.appendTextElement("b", "t");
    EXPECT_EQ(names(copy), "ab");
    copy = PelDOMNodeList();
    EXPECT_EQ(copy.length(), 0);
}

struct OwnList : PelDOMNodeListImp {
    explicit OwnList(const PelDOMNode& node) : listed(node) {}
    PelDOM::Error item(long index, PelDOMNode& out) override {
        return index < length() ? (out = listed, PelDOM::SUCCESS) : PelDOM::INDEX_OUT_OF_RANGE;
    }
    long length() override { return 2; }
    PelDOMNodeListImp* clone() override {
        return failsToClone ? throw std::bad_alloc() : new OwnList(listed);
    }
    static inline bool failsToClone = false;
    PelDOMNode listed;
};

TEST(Lists, OfUsersAreGoneThroughByPosition) {
    std::string seen;
    for (const PelDOMNode node : PelDOMNodeList(new OwnList(rootOf("<r/>"))))
        seen += show(node);
    for (const PelDOMNode node : PelDOMNodeList(new OwnList(PelDOMNode())))
        seen += show(node);
    EXPECT_EQ(seen, "rrnullnull");
    PelDOMNodeList kept = childrenOf(rootOf("<r><a/></r>"));
    const PelDOMNodeList own(new OwnList(PelDOMNode()));
    OwnList::failsToClone = true;
    EXPECT_THROW(kept = own, std::bad_alloc);
    EXPECT_EQ(show(itemOf(kept, 0)), "a");
    OwnList::failsToClone = false;
}

TEST(Lists, AreMovedAndCompared) {
    const PelDOMDocument document = parse("<r><a/><a/></r>");
    const PelDOMElement root = rootOf(document);
    const std::vector<PelDOMNodeList> distinct(
        {root.getChildNodes(), document.getChildNodes(), root.getElementsByTagName("a"),
         document.getElementsByTagName("a"), PelDOMNodeList(new OwnList(root)), PelDOMNodeList()});
    const std::vector<PelDOMNodeList> again(
        {childrenOf(root), childrenOf(document), elementsOf(root, "a"),
         PelDOMDocument(document).getElementsByTagName("a"), distinct[4], PelDOMNodeList()});
    for (std::size_t i = 0; i < 6; ++i)
        for (std::size_t j = 0; j < 6; ++j) {
            EXPECT_EQ(distinct[i] == again[j], i == j && i != 4) << i << j;
            EXPECT_EQ(distinct[i] != again[j], i != j || i == 4) << i << j;
        }
    EXPECT_TRUE(distinct[4] == *&distinct[4] && elementsOf(root, "") && !distinct[5]);
    EXPECT_EQ(document.getElementsByTagName("*").length(), 3);
    PelDOMNodeList one = distinct[0], two(std::move(one)), three = distinct[1];
    EXPECT_EQ(&(three = std::move(two)), &three);
    PelDOMNodeList& same = three;
    three = std::move(same);
    EXPECT_TRUE(!one && !two && three == distinct[0]);
}

// What was counted while the document was read holds until the first change.
TEST(Lists, OfManyChildrenAreAsLongAsTheyWereRead) {
    for (long count = 250; count < 262; ++count) {
        const std::string pieces[] = {"<b/>",         "t",     "<!---->",
                                      "<b><b/>t</b>", "<?p?>", "<![CDATA[]]>"};
        std::string xml = "<r><a>";
        for (long i = 0; i < count; ++i)
            xml += pieces[i % 6];
        PelDOMElement root = rootOf((xml + "</a>t</r>").c_str()), a = root.getChildElement();
        const PelDOMNodeList kept = a.getChildNodes(), last = childAt(a, count - 1).getChildNodes();
        PelDOMNode node;
        expectEach(std::to_string(count), {kept.length(), a.getChildNodes().length()});
        EXPECT_EQ(root.getChildNodes().length(), 2);
        EXPECT_EQ(answers({kept.item(count - 1, node), kept.item(count, node)}), "ok outside");
        EXPECT_TRUE(node == a.getLastChild());
        EXPECT_EQ(a.removeChild(node), PelDOM::SUCCESS);
        expectEach(std::to_string(count - 1), {kept.length(), a.getChildNodes().length()});
        EXPECT_EQ(last.item(9, node), PelDOM::INDEX_OUT_OF_RANGE);
    }
}

// Each step changes the tree; a list that began anew with each change would never get through this.
TEST(Lists, OfManyNodesAreWalkedWhileTheTreeGrows) {
    constexpr long count = 100000;
    PelDOMElement root = rootOf("<r/>");
    const PelDOMNodeList children = childrenOf(root);
    const PelDOMNodeList items = elementsOf(root, "i");
    for (long i = 0; i < count; ++i) {
        root.appendTextElement("i", PelString().format(u"%ld", i));
        ASSERT_EQ(children.length(), i + 1);
    }
    ASSERT_EQ(items.length(), count);
    for (long i = 0; i < count / 2; ++i) { // from both ends
        ASSERT_EQ(show(itemOf(items, i)), "i(|" + std::to_string(i) + "|)");
        PelDOMElement(itemOf(children, count - 1 - i)).appendTextElement("note", "t");
    }
    EXPECT_EQ(elementsOf(root, "note").length(), count / 2);
}

// Loops that DOM users write. A list that began anew, or climbed to its root, for each change would
// not get through them.
TEST(Lists, OfManyElementsAreWalkedWhileAnyOfThemChange) {
    constexpr long count = 40000;
    using Step = std::function<void(const PelDOMNodeList& list, PelDOMDocument& document)>;
    const auto removes = [](long part) {
        return [part](const PelDOMNodeList& list, auto&) {
            remove(itemOf(list, list.length() * part / 8));
        };
    };
    const auto renames = [](long part) {
        return [part](const PelDOMNodeList& list, auto&) {
            PelDOMElement(itemOf(list, (list.length() - 1) * part / 8)).setTagName("y");
        };
    };
    const auto removesLast = [](const PelDOMNodeList& list, auto&) {
        remove(itemOf(list, list.length() - 1));
    };
    const auto wrapsFirst = [](const PelDOMNodeList& list, PelDOMDocument& document) {
        const PelDOMNode first = itemOf(list, 0);
        PelDOMElement wrapper = document.createElement("y");
        first.getParentNode().replaceChild(wrapper, first);
        wrapper.appendChild(first);
        PelDOMElement(first).setTagName("z");
    };
    const std::pair<Step, const char*> loops[] = {
        {removes(0), "<x>t</x>"}, {removesLast, "<x><y/></x>"}, {removes(4), "<x>t<y/></x>"},
        {renames(0), "<x/>"},     {renames(8), "<x>t</x>"},     {removesLast, "<x>t"},
        {wrapsFirst, "<x/>"}};
    for (const auto& [step, piece] : loops) {
        const bool isNested = std::string(piece) == "<x>t";
        PelDOMDocument document =
            parse("<r>" + repeated(piece, count) + repeated("</x>", isNested ? count : 0) + "</r>");
        const PelDOMNodeList list = document.getElementsByTagName("x");
        for (long left = count; left > 0; --left) {
            ASSERT_EQ(list.length(), left) << piece;
            step(list, document);
        }
        EXPECT_EQ(list.length(), 0);
    }
}
