// SPDX-License-Identifier: MIT
#include "counted_imp.h"
#include "support.h"
#include "xerces/handles/PelXercesDOMContents.h"

TEST(Handles, OwnOneImplementationEach) {
    PelDOMNode first(new CountedImp);
    PelDOMNode second(first);
    EXPECT_NE(first.getNodeImp(), second.getNodeImp());
    PelDOMNode third;
    EXPECT_EQ(&(third = first), &first); // the right-hand operand
    EXPECT_EQ(CountedImp::alive, 3);
    const PelDOMNodeImp* const own = third.getNodeImp();
    third = *&third;
    EXPECT_EQ(third.getNodeImp(), own);
    third = PelDOMNode();
    EXPECT_EQ(answers({third, third.getErrorStatus(), CountedImp::alive}), "null no-imp 2");
    third = second = first;
    EXPECT_EQ(answers({third, third.getErrorStatus(), CountedImp::alive}), "#8 ok 3");
    first = second = third = PelDOMNode();
    EXPECT_EQ(CountedImp::alive, 0);
}

TEST(Handles, SurviveFailuresOfTheirImplementation) {
    { const PelDOMNode node(new CountedImp(true)); }
    PelDOMNode target(new CountedImp);
    const PelDOMNode source(new CountedImp);
    const PelDOMNodeImp* const own = target.getNodeImp();
    CountedImp::failsToClone = true;
    EXPECT_THROW(target = source, std::bad_alloc);
    CountedImp::failsToClone = false;
    EXPECT_EQ(target.getNodeImp(), own);

    PelDOMNode throwing(new CountedImp(true));
    const PelDOMNode nothing;
    EXPECT_THROW(throwing = nothing,
                 std::runtime_error); // it has taken the other's place all the same
    EXPECT_EQ(answers({throwing, throwing.getErrorStatus(), CountedImp::alive}), "null no-imp 2");
}

template <class Handle>
constexpr bool isAHandle =
    std::is_nothrow_move_constructible_v<Handle>&& std::is_nothrow_move_assignable_v<Handle>&&
        std::is_constructible_v<bool, Handle> &&
    !std::is_convertible_v<Handle, bool>;

static_assert(isAHandle<PelDOMNode> && isAHandle<PelDOMDocument> && isAHandle<PelDOMElement> &&
              isAHandle<PelDOMText> && isAHandle<PelDOMNodeList>);

TEST(Handles, AreMovedWithoutANewImplementation) {
    PelDOMNode first(new CountedImp);
    const PelDOMNodeImp* const own = first.getNodeImp();
    PelDOMNode second(std::move(first));
    PelDOMNode third(new CountedImp(true)); // throws when it is let go of
    EXPECT_EQ(&(third = std::move(second)), &third);
    PelDOMNode& same = third;
    third = std::move(same);
    EXPECT_EQ(answers({first, second, second.getErrorStatus(), third.getErrorStatus()}),
              "null null no-imp ok");
    EXPECT_EQ(CountedImp::alive, 1);
    EXPECT_EQ(third.getNodeImp(), own);
    third = PelDOMNode();
    EXPECT_EQ(CountedImp::alive, 0);

    PelDOMElement element(rootOf("<r/>").getParentNode());
    PelDOMDocument document(std::move(element)), sameDocument(std::move(document));
    PelDOMText text(rootOf("<r>t</r>").getFirstChild()), sameText(std::move(text));
    const PelDOMElement root = sameDocument.getDocumentElement();
    document = root.getParentNode();
    text = std::move(sameText);
    EXPECT_EQ(answers({element, sameText, root, document, text}), "null null r #9(r) |t|");
}

TEST(Handles, AreEqualWhenTheyReferToTheSameNode) {
    const PelDOMElement root = rootOf("<r><a/></r>");
    const PelDOMNode a = root.getFirstChild(), again = a.getParentNode();
    EXPECT_TRUE(root && !PelDOMText() && root == again && !(root != again) && root != a);
    EXPECT_TRUE(root.isSameNode(again) && !root.isSameNode(a));
    const PelDOMNode counted(new CountedImp), other(counted);
    EXPECT_TRUE(counted == counted && counted != other);
}

TEST(Handles, WithoutAnElementLeaveVariablesAlone) {
    for (const PelDOMElement& element : {PelDOMElement(), PelDOMElement(parse("<r/>"))}) {
        long whole = 7;
        double real = 7;
        PelString value("old");
        expectEach("invalid", {element.getAttribute("a", whole), element.getAttribute("a", real)});
        EXPECT_TRUE(whole == 7 && real == 7);
        EXPECT_EQ(answers({element.getAttribute("a", value), value}), "ok ''");
    }
}

TEST(Handles, OfAKindAreAssignedFromANode) {
    PelDOMNode node = rootOf("<r k='v'>t</r>");
    const PelDOMNode text = childAt(node, 0);
    PelDOMElement element;
    PelDOMText sameText;
    PelDOMDocument document;
    EXPECT_TRUE(&(element = node) == &node && &(sameText = text) == &text &&
                &(document = node) == &node);
    element = static_cast<PelDOMNode&>(element);
    expectEach("r k=v(|t|)", {element, document});
    EXPECT_EQ(answers({sameText, document.getErrorStatus(), rootOf(document)}), "|t| ok null");
    element = sameText = PelDOMNode();
    EXPECT_EQ(answers({element, element.getErrorStatus(), sameText}), "null no-imp null");
}

TEST(Handles, ToNoNodeLackContents) {
    PelDOMNode nothing;
    const PelDOMDocument document = parse("<r/>");
    const LogWatch log;
    EXPECT_EQ(document.getParentNode(nothing), PelDOM::SUCCESS);
    const std::string failure = "PelXercesDOMNode::createContentImp(0) failed\n";
    EXPECT_EQ(log.text(), failure + failure);
}

TEST(Contents, WithoutTheirNodeSaySo) {
    PelDOMNodeList list;
    PelXercesDOMElement element;
    PelXercesDOMText text;
    PelXercesDOMDocument document;
    expectEach("internal", {element.removeAttribute("a"), element.setAttribute("a", "v"),
                            element.appendTextElement("a", "v"), text.setValue("v")});
    expectEach("invalid", {element.setAttribute("", "v"), text.setValue("")});
    expectEach("0", {element.getNumAttributes(), element.getElementsByTagName("a", list)});
    expectEach("''", {element.getTagName(), element.getAttribute("a"), text.getValue(),
                      element.getAttributeNameAt(0), element.getAttributeValueAt(0)});
    expectEach("null", {document.getDocumentElement(), document.createElement("a"),
                        document.createTextNode("a")});
}
