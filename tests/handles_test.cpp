// SPDX-License-Identifier: MIT
#include "model/PelDOMNodeImp.h"
#include "support.h"
#include "xerces/PelXercesDOMDocument.h"
#include "xerces/PelXercesDOMElement.h"
#include "xerces/PelXercesDOMNode.h"
#include "xerces/PelXercesDOMText.h"

#include <stdexcept>

namespace {

/// An implementation without an engine, which counts its kind.
class CountedImp : public PelDOMNodeImp {
public:
    static inline int alive = 0;
    static inline bool failsToClone = false;

    explicit CountedImp(bool throwingEnd = false)
        : PelDOMNodeImp(nullptr), throwsAtEnd(throwingEnd) {
        ++alive;
    }
    ~CountedImp() noexcept(false) override {
        --alive;
        if (throwsAtEnd)
            throw std::runtime_error("at the end");
    }
    PelDOM::Error getOwnerDocument(PelDOMDocument&) override { return PelDOM::SUCCESS; }
    PelDOM::Error appendChild(PelDOMNode&) override { return PelDOM::SUCCESS; }
    PelDOM::Error getParentNode(PelDOMNode&) override { return PelDOM::SUCCESS; }
    PelDOM::NodeType getNodeType() override { return PelDOM::COMMENT_NODE; }
    PelDOM::Error getChildNodes(PelDOMNodeList&) override { return PelDOM::SUCCESS; }
    PelDOMNodeImp* clone() override {
        if (failsToClone)
            throw std::bad_alloc();
        return new CountedImp;
    }
    PelDOMNodeContentImp* createContentImp(const PelDOM::NodeType&) override { return nullptr; }

private:
    bool throwsAtEnd;
};

TEST(Handles, OwnOneImplementationEach) {
    {
        PelDOMNode first(new CountedImp);
        PelDOMNode second(first);
        EXPECT_EQ(CountedImp::alive, 2);
        EXPECT_NE(first.getNodeImp(), second.getNodeImp());
        PelDOMNode third;
        EXPECT_EQ(&(third = first), &first); // the right-hand operand
        EXPECT_EQ(CountedImp::alive, 3);
        const PelDOMNodeImp* const own = third.getNodeImp();
        third = *&third;
        EXPECT_EQ(third.getNodeImp(), own);
        third = PelDOMNode();
        EXPECT_EQ(third.isNull(), 1);
        EXPECT_EQ(third.getErrorStatus(), PelDOM::NO_IMPLEMENTATION);
        EXPECT_EQ(CountedImp::alive, 2);
        third = second = first;
        EXPECT_EQ(third.getErrorStatus(), PelDOM::SUCCESS);
    }
    EXPECT_EQ(CountedImp::alive, 0);
}

TEST(Handles, SurviveFailuresOfTheirImplementation) {
    { const PelDOMNode node(new CountedImp(true)); }
    EXPECT_EQ(CountedImp::alive, 0);

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

// What every operation answers on a handle that has no content of its kind.
void expectEmptyAnswers(PelDOMDocument& document, PelDOMElement& element, PelDOMText& text) {
    EXPECT_EQ(document.getDocumentElement().getErrorStatus(), PelDOM::NO_IMPLEMENTATION);
    EXPECT_EQ(document.createElement("a").isNull(), 1);
    EXPECT_EQ(document.createTextNode("a").isNull(), 1);

    EXPECT_EQ(text.setValue("v"), PelDOM::INTERNAL_ERROR);
    EXPECT_EQ(text.getValue(), "");

    long whole = 7;
    double real = 7;
    PelString value("kept");
    PelDOMNodeList list;
    EXPECT_EQ(element.removeAttribute("a"), PelDOM::INVALID_VALUE);
    EXPECT_EQ(element.setAttribute("a", "v"), PelDOM::NULL_NODE);
    EXPECT_EQ(element.appendTextElement("a", "v"), PelDOM::NULL_NODE);
    EXPECT_EQ(element.getNumAttributes(), 0);
    EXPECT_EQ(element.getAttributeNameAt(0) + element.getAttributeValueAt(0), "");
    EXPECT_EQ(element.getTagName() + element.getAttribute("a"), "");
    EXPECT_EQ(element.getAttribute("a", whole), PelDOM::INVALID_VALUE);
    EXPECT_EQ(element.getAttribute("a", real), PelDOM::INVALID_VALUE);
    EXPECT_EQ(whole, 7);
    EXPECT_EQ(real, 7);
    EXPECT_EQ(element.getElementsByTagName("a", list), 0);
    EXPECT_EQ(element.getChildTextValue(value), PelDOM::INVALID_VALUE);
    EXPECT_EQ(value, "kept");
    EXPECT_EQ(element.getAttribute("a", value), PelDOM::SUCCESS);
    EXPECT_EQ(value, "");
}

TEST(NullHandles, AnswerEveryOperation) {
    PelDOMDocument document;
    PelDOMElement element;
    PelDOMText text;
    expectEmptyAnswers(document, element, text);

    const PelDOMDocument real = parse("<r/>");
    PelDOMDocument keptDocument = real;
    PelDOMNode kept = real.getDocumentElement();
    PelDOMNode node;
    PelDOMNodeList list;
    EXPECT_EQ(node.isNull(), 1);
    EXPECT_EQ(node.getErrorStatus(), PelDOM::NO_IMPLEMENTATION);
    EXPECT_EQ(node.getNodeType(), PelDOM::NO_NODE);
    EXPECT_EQ(node.getContentImp(), nullptr);
    EXPECT_EQ(node.getOwnerDocument(keptDocument), PelDOM::NULL_NODE);
    EXPECT_EQ(node.getParentNode(kept), PelDOM::NULL_NODE);
    EXPECT_EQ(node.getChildNodes(list), PelDOM::NULL_NODE);
    EXPECT_EQ(node.appendChild(kept), PelDOM::NULL_NODE);
    EXPECT_EQ(kept.appendChild(node), PelDOM::NULL_NODE);
    EXPECT_EQ(list.length(), 0);
    EXPECT_EQ(list.item(0, kept), PelDOM::NULL_NODE);
    EXPECT_EQ(show(keptDocument) + show(kept), "#9(r)r");
}

TEST(Handles, OfAnotherKindHaveNoContent) {
    PelDOMDocument document = parse("<r>t</r>");
    PelDOMNode element = document.getDocumentElement();
    PelDOMNode text = childAt(element, 0);
    PelDOMDocument notADocument(element);
    PelDOMElement notAnElement(text);
    PelDOMText notAText(static_cast<const PelDOMNode&>(document));
    EXPECT_EQ(notAnElement.isNull(), 0);
    expectEmptyAnswers(notADocument, notAnElement, notAText);
    EXPECT_EQ(PelDOMElement(element).getTagName(), "r");
    EXPECT_EQ(show(document), "#9(r(|t|))");
}

TEST(Handles, ToNoNodeAreSafe) {
    PelDOMDocument document = parse("<r><a/></r>");
    PelDOMNode nothing;
    PelDOMDocument owner = document;
    PelDOMNodeList list;
    PelDOMNode root = document.getDocumentElement();
    const LogWatch log;
    EXPECT_EQ(document.getParentNode(nothing), PelDOM::SUCCESS);
    EXPECT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(nothing.isNull(), 0);
    EXPECT_EQ(nothing.getNodeType(), PelDOM::NO_NODE);
    EXPECT_EQ(nothing.getContentImp(), nullptr);
    EXPECT_EQ(nothing.getOwnerDocument(owner), PelDOM::NULL_NODE);
    EXPECT_EQ(nothing.getParentNode(root), PelDOM::NULL_NODE);
    EXPECT_EQ(nothing.getChildNodes(list), PelDOM::NULL_NODE);
    EXPECT_EQ(nothing.appendChild(root), PelDOM::NULL_NODE);
    EXPECT_EQ(root.appendChild(nothing), PelDOM::NULL_NODE);
    EXPECT_EQ(show(owner), "#9(r(a))");

    EXPECT_EQ(document.getOwnerDocument(owner), PelDOM::SUCCESS); // a document belongs to none
    EXPECT_EQ(owner.getNodeType(), PelDOM::NO_NODE);
    EXPECT_EQ(owner.getDocumentElement().isNull(), 1);
    PelDOMElement holder = document.createElement("h");
    holder.appendChild(root);
    EXPECT_EQ(document.getDocumentElement().getNodeType(), PelDOM::NO_NODE);
    EXPECT_EQ(document.getDocumentElement().getTagName(), "");
    EXPECT_EQ(show(document) + show(holder), "#9h(r(a))");
}

TEST(Contents, WithoutTheirNodeSaySo) {
    PelDOMNodeList list;
    PelXercesDOMElement element;
    EXPECT_EQ(element.removeAttribute("a"), PelDOM::INTERNAL_ERROR);
    EXPECT_EQ(element.setAttribute("a", "v"), PelDOM::INTERNAL_ERROR);
    EXPECT_EQ(element.appendTextElement("a", "v"), PelDOM::INTERNAL_ERROR);
    EXPECT_EQ(element.setAttribute("", "v"), PelDOM::INVALID_VALUE);
    EXPECT_EQ(element.getNumAttributes() + element.getElementsByTagName("a", list), 0);
    EXPECT_EQ(element.getTagName() + element.getAttribute("a") + element.getAttributeNameAt(0) +
                  element.getAttributeValueAt(0),
              "");
    PelXercesDOMText text;
    EXPECT_EQ(text.setValue("v"), PelDOM::INTERNAL_ERROR);
    EXPECT_EQ(text.setValue(""), PelDOM::INVALID_VALUE);
    EXPECT_EQ(text.getValue(), "");
    PelXercesDOMDocument document;
    EXPECT_EQ(document.getDocumentElement().isNull() + document.createElement("a").isNull() +
                  document.createTextNode("a").isNull(),
              3);
}

TEST(Names, CheckStringLooksAtEmptinessOnly) {
    for (const int kind : {0, 1}) {
        EXPECT_EQ(PelDOM::checkString("", kind), PelDOM::INVALID_VALUE);
        EXPECT_EQ(PelDOM::checkString(" ", kind), PelDOM::SUCCESS);
    }
}

} // namespace
