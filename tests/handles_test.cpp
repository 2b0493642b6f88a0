// SPDX-License-Identifier: MIT
#include "model/PelDOMNodeImp.h"
#include "support.h"
#include "xerces/PelXercesDOMDocument.h"
#include "xerces/PelXercesDOMElement.h"
#include "xerces/PelXercesDOMText.h"

/// An implementation without an engine, which counts its kind.
struct CountedImp : PelDOMNodeImp {
    static inline int alive = 0;
    static inline bool failsToClone = false;
    const bool throwsAtEnd;

    explicit CountedImp(bool throws = false) : PelDOMNodeImp(nullptr), throwsAtEnd(throws) { ++alive; }
    ~CountedImp() noexcept(false) override {
        --alive;
        if (throwsAtEnd) throw std::runtime_error("at the end");
    }
    PelDOM::Error getOwnerDocument(PelDOMDocument&) override { return PelDOM::SUCCESS; }
    PelDOM::Error appendChild(PelDOMNode&) override { return PelDOM::SUCCESS; }
    PelDOM::Error getParentNode(PelDOMNode&) override { return PelDOM::SUCCESS; }
    PelDOM::NodeType getNodeType() override { return PelDOM::COMMENT_NODE; }
    PelDOM::Error getChildNodes(PelDOMNodeList&) override { return PelDOM::SUCCESS; }
    PelDOMNodeImp* clone() override {
        if (failsToClone) throw std::bad_alloc();
        return new CountedImp;
    }
    PelDOMNodeContentImp* createContentImp(const PelDOM::NodeType&) override { return nullptr; }
};

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
    EXPECT_THROW(throwing = source, std::runtime_error);
    EXPECT_EQ(throwing.isNull(), 0); // it has taken the other's place all the same
    EXPECT_EQ(CountedImp::alive, 3);
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
    EXPECT_EQ(answers({first, first.getErrorStatus(), second, second.getErrorStatus(), CountedImp::alive}),
        "null no-imp #8 ok 1");
    PelDOMNode third(new CountedImp(true)); // throws when it is let go of
    EXPECT_EQ(&(third = std::move(second)), &third);
    third = std::move(*&third);
    EXPECT_EQ(answers({second, second.getErrorStatus(), third, third.getErrorStatus(), CountedImp::alive}),
        "null no-imp #8 ok 1");
    EXPECT_EQ(third.getNodeImp(), own);
    second = third = PelDOMNode();
    EXPECT_EQ(answers({second, third, third.getErrorStatus(), CountedImp::alive}), "null null no-imp 0");

    PelDOMElement element(rootOf("<r/>").getParentNode()), root;
    PelDOMDocument document(std::move(element)), sameDocument(std::move(document));
    root = sameDocument.getDocumentElement();
    PelDOMText text(rootOf("<r>t</r>").getFirstChild()), sameText(std::move(text));
    EXPECT_EQ(answers({element, document, sameDocument, root, text, sameText, sameText.getValue()}),
        "null null #9(r) r null |t| 't'");
    document = root.getParentNode();
    text = std::move(sameText);
    element = std::move(root);
    root = PelDOMNode();
    sameDocument = PelDOMDocument();
    EXPECT_EQ(answers({element, element.getTagName(), document, text, root, sameText, sameDocument}),
        "r 'r' #9(r) |t| null null null");
}

TEST(Handles, AreEqualWhenTheyReferToTheSameNode) {
    const PelDOMDocument document = parse("<r><a/><a/></r>");
    const PelDOMElement root = document.getDocumentElement();
    PelDOMNode nothing;
    document.getParentNode(nothing);
    const PelDOMNode distinct[] = {document, root, childAt(root, 0), childAt(root, 1), PelDOMNode()};
    const PelDOMNode again[] = {
        root.getParentNode(), document.getFirstChild(), root.getFirstChild(), root.getLastChild(), nothing};
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j) {
            EXPECT_EQ(distinct[i] == again[j], i == j) << i << j;
            EXPECT_EQ(distinct[i] != again[j], i != j) << i << j;
            EXPECT_EQ(distinct[i].isSameNode(again[j]), i == j) << i << j;
        }
    EXPECT_TRUE(
        root && nothing && !PelDOMText() && root == distinct[1] && document == root.getOwnerDocument());
    const PelDOMNode counted(new CountedImp), other(counted);
    EXPECT_TRUE(counted == counted && counted != other);
}

// What every operation answers on a handle that has no content of its kind.
static void expectEmptyAnswers(PelDOMDocument document, PelDOMElement element, PelDOMText text) {
    EXPECT_EQ("null null null no-imp internal '' null null null '' 0 0",
        answers({document.getDocumentElement(), document.createElement("a"), document.createTextNode("a"),
            document.getDocumentElement().getErrorStatus(), text.setValue("v"), text.getValue(),
            element.getChildElement(), element.getNextElement(), element.getPreviousElement(),
            element.getPrefix() + element.getLocalName() + element.lookupNamespaceURI("xml"),
            bool(document.getElementsByTagName("*")), bool(element.getElementsByTagName("*"))}));
    long whole = 7;
    double real = 7;
    PelString value("kept");
    PelDOMNodeList list;
    EXPECT_EQ("invalid null-node null-node 0 '' '' '' '' 0 invalid 7 invalid 7 invalid 'kept' ok ''",
        answers({element.removeAttribute("a"), element.setAttribute("a", "v"),
            element.appendTextElement("a", "v"), element.getNumAttributes(), element.getAttributeNameAt(0),
            element.getAttributeValueAt(0), element.getTagName(), element.getAttribute("a"),
            element.getElementsByTagName("a", list), element.getAttribute("a", whole), whole,
            element.getAttribute("a", real), static_cast<long>(real), element.getChildTextValue(value), value,
            element.getAttribute("a", value), value}));
}

// What every operation answers on a handle that has no node.
static void expectNoNode(PelDOMNode node) {
    PelDOMDocument owner = parse("<r/>");
    PelDOMNode kept = owner.getDocumentElement();
    PelDOMNodeList list;
    EXPECT_EQ("0 1 null-node null-node null-node null-node null-node 0 null-node #9(r) r",
        answers({node.getNodeType(), node.getContentImp() == nullptr, node.getOwnerDocument(owner),
            node.getParentNode(kept), node.getChildNodes(list), node.appendChild(kept),
            kept.appendChild(node), list.length(), list.item(0, kept), owner, kept}));
    EXPECT_EQ("null null null null null null 0 0",
        answers({node.getOwnerDocument(), node.getParentNode(), node.getFirstChild(), node.getLastChild(),
            node.getNextSibling(), node.getPreviousSibling(), node.hasChildNodes(),
            bool(node.getChildNodes())}));
    EXPECT_EQ("'' '' '' null-node null-node",
        answers({node.getNodeName(), node.getNodeValue(), node.getTextContent(), node.setNodeValue("v"),
            node.setTextContent("")}));
}

TEST(NullHandles, AnswerEveryOperation) {
    expectEmptyAnswers(PelDOMDocument(), PelDOMElement(), PelDOMText());
    expectNoNode(PelDOMNode());
}

TEST(Handles, OfAnotherKindHaveNoContent) {
    const PelDOMDocument document = parse("<r>t</r>");
    const PelDOMNode element = document.getDocumentElement();
    const PelDOMNode text = childAt(element, 0);
    expectEmptyAnswers(PelDOMDocument(element), PelDOMElement(text), PelDOMText(childAt(document, 0)));
    EXPECT_EQ(answers({PelDOMElement(text).isNull(), document}), "0 #9(r(|t|))");
}

TEST(Handles, OfAKindAreAssignedFromANode) {
    PelDOMNode node = rootOf("<r k='v'>t</r>");
    const PelDOMNode text = childAt(node, 0);
    PelDOMElement element;
    PelDOMText sameText;
    PelDOMDocument document;
    EXPECT_TRUE(&(element = node) == &node && &(sameText = text) == &text && &(document = node) == &node);
    EXPECT_EQ("'v' 't' r k=v(|t|) ok null", answers({element.getAttribute("k"), sameText.getValue(), document,
                                                document.getErrorStatus(), document.getDocumentElement()}));
    element = static_cast<PelDOMNode&>(element);
    EXPECT_EQ(show(element), "r k=v(|t|)");
    element = sameText = PelDOMNode();
    EXPECT_EQ(answers({element, element.getErrorStatus(), sameText}), "null no-imp null");
}

TEST(Handles, ToNoNodeAreSafe) {
    PelDOMDocument document = parse("<r><a/></r>");
    PelDOMNode nothing;
    PelDOMDocument owner;
    const LogWatch log;
    EXPECT_EQ(document.getParentNode(nothing), PelDOM::SUCCESS);
    const std::string failure = "PelXercesDOMNode::createContentImp(0) failed\n";
    EXPECT_EQ(log.text(), failure + failure);
    expectNoNode(nothing);
    EXPECT_EQ(answers({document.getOwnerDocument(owner), owner, owner.getDocumentElement()}), "ok #0 null");
    PelDOMElement holder = document.createElement("h");
    append(holder, document.getDocumentElement());
    const PelDOMElement root = document.getDocumentElement();
    EXPECT_EQ(answers({root, root.getTagName(), document, holder}), "#0 '' #9 h(r(a))");
}

TEST(Contents, WithoutTheirNodeSaySo) {
    PelDOMNodeList list;
    PelXercesDOMElement element;
    PelXercesDOMText text;
    PelXercesDOMDocument document;
    EXPECT_EQ("internal internal internal invalid 0 0 '' '' '' '' internal invalid '' null null null",
        answers({element.removeAttribute("a"), element.setAttribute("a", "v"),
            element.appendTextElement("a", "v"), element.setAttribute("", "v"), element.getNumAttributes(),
            element.getElementsByTagName("a", list), element.getTagName(), element.getAttribute("a"),
            element.getAttributeNameAt(0), element.getAttributeValueAt(0), text.setValue("v"),
            text.setValue(""), text.getValue(), document.getDocumentElement(), document.createElement("a"),
            document.createTextNode("a")}));
}
