// SPDX-License-Identifier: MIT
#include "failing_memory.h"
#include "support.h"
#include "xerces/engine/PelXercesFields.h"

static PelString valueOf(int number) {
    return PelString(
        std::string(static_cast<std::size_t>(1 + number % 50 * 277 % 600), 'v').c_str());
}

// Enough of them for several collections.
static void makeGarbage(PelDOMDocument& document) {
    for (int i = 0; i < 3000; ++i) {
        document.createElement("garbage").setAttribute("k", "v");
        document.createTextNode("garbage");
        document.createComment("garbage");
    }
}

static PelDOMDocument typed() {
    return parse(
        "<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT b ANY><!ELEMENT c ANY>"
        "<!ATTLIST b d CDATA 'default' i ID #IMPLIED><!ATTLIST c d CDATA 'other' e CDATA 'e'>]>"
        "<r><b i='i1'><c>t<!--m--><?p d?></c></b><c/></r>");
}

TEST(NodesWithoutParentAndHandle, GiveTheirMemoryBack) {
    const PelDOMDocument other = typed();
    if (!PelXercesFields::areKnown())
        GTEST_SKIP() << "nodes keep their memory where the engine's fields are not known";
    PelDOMNode kept;
    using Round = std::function<void(PelDOMDocument&, PelDOMElement&, int)>;
    const auto comeAndGo = [](PelDOMElement& root, const PelDOMNode& node) {
        root.insertBefore(node, childAt(root, 0));
        root.removeChild(node);
    };
    const Round rounds[] = {
        [&](auto& document, auto&, int) { document.createElement("never").setAttribute("k", "v"); },
        [&](auto& document, auto& root, int i) {
            PelDOMElement element = document.createElement("e");
            for (const char* name : {"k", "l", "m"})
                element.setAttribute(name, valueOf(i));
            element.setAttribute("k", valueOf(i + 1));
            element.removeAttribute("l");
            comeAndGo(root, element);
        },
        [&](auto& document, auto& root, int i) {
            PelDOMText text = document.createTextNode(valueOf(i));
            text.setValue(valueOf(i + 1));
            comeAndGo(root, text);
        },
        [&](auto& document, auto& root, int i) {
            comeAndGo(root, document.createComment(valueOf(i)));
            comeAndGo(root, document.createCDATASection(valueOf(i + 1)));
            comeAndGo(root,
                      document.createProcessingInstruction(i % 2 == 0 ? "p" : "q", valueOf(i + 2)));
        },
        [&](auto&, auto& root, int i) {
            root.appendTextElement("t", valueOf(i));
            root.removeChild(root.getLastChild());
        },
        [&](auto&, auto& root, int) {
            root.replaceChild(root.getFirstChild().cloneNode(true), root.getFirstChild());
        },
        [&](auto& document, auto& root, int) {
            comeAndGo(root, document.importNode(rootOf(other), true));
        },
        [&](auto& document, auto& root, int) {
            const PelDOMNode whole = document.importNode(rootOf(other), true);
            comeAndGo(root, whole);
            kept = childAt(childAt(whole, 0), 0);
        },
        [&](auto& document, auto& root, int i) {
            PelDOMElement element = document.createElement("b");
            element.setAttribute("d", valueOf(i));
            element.removeAttribute("d");
            element.setTagName("c");
            element.setAttribute("d", valueOf(i)); // b has a default for it
            element.setTagName(i % 2 == 0 ? "r" : "b");
            comeAndGo(root, element);
        },
    };
    for (const Round& round : rounds) {
        PelDOMDocument document = typed();
        PelDOMElement root = rootOf(document);
        const std::string before = show(document);
        long alive = 0;
        for (int i = 0; i < 22000; ++i) {
            if (i == 6000)
                alive = FailingMemory::alive;
            round(document, root, i);
        }
        kept = PelDOMNode();
        EXPECT_LE(FailingMemory::alive, alive) << &round - rounds; // blocks of 512 KiB and less
        EXPECT_EQ(show(document), before) << &round - rounds;
    }
}

TEST(NodesWithoutParent, MayBeManyAndHeld) {
    PelDOMDocument document = parse("<r/>");
    PelDOMElement root = rootOf(document);
    std::vector<PelDOMElement> elements;
    for (int i = 0; i < 30000; ++i) {
        elements.push_back(document.createElement("e"));
        if (i % 3 == 0)
            elements.back().appendTextElement("t", PelString().format(u"%d", i));
    }
    makeGarbage(document);
    for (std::size_t i = 0; i < elements.size(); ++i)
        EXPECT_EQ(show(elements[i]), i % 3 == 0 ? "e(t(|" + std::to_string(i) + "|))" : "e");
    for (const PelDOMElement& element : elements)
        root.insertBefore(element, PelDOMNode());
    elements.clear();
    makeGarbage(document);
    EXPECT_EQ(childrenOf(root).length(), 30000);
    EXPECT_EQ(show(root.getLastChild().getPreviousSibling().getPreviousSibling()), "e(t(|29997|))");
}

// A list that was not asked for long has forgotten the places of nodes that are gone.
TEST(NodesWithoutParent, AreGoneFromLists) {
    PelDOMDocument document = parse("<r><a/><b/><c/><d/></r>");
    PelDOMElement root = rootOf(document);
    for (const int changes : {1, 10, 40}) {
        const PelDOMNodeList children = childrenOf(root), elements = root.getElementsByTagName("*");
        expectEach("b", {itemOf(children, 1), itemOf(elements, 1)});
        root.removeChild(childAt(root, 1));
        for (int i = 1; i < changes; ++i) {
            root.insertBefore(document.createElement("x"), childAt(root, 1));
            root.removeChild(childAt(root, 1));
        }
        makeGarbage(document);
        for (const PelDOMNodeList& list : {children, elements})
            EXPECT_EQ(answers({list.length(), itemOf(list, 1)}), "3 c");
        root.insertBefore(document.createElement("b"), childAt(root, 1));
        for (const PelDOMNodeList& list : {children, elements})
            EXPECT_EQ(answers({list.length(), itemOf(list, 1)}), "4 b");
    }
}

TEST(NodesUsedAgain, AreAsNew) {
    PelDOMDocument document = typed();
    PelDOMElement root = rootOf(document);
    for (int i = 0; i < 3000; ++i) {
        PelDOMElement element = document.createElement(i % 2 == 0 ? "b" : "n");
        EXPECT_EQ(show(element), i % 2 == 0 ? "b d=default" : "n");
        PelDOMNode text = document.createTextNode("t"), comment = document.createComment("");
        EXPECT_EQ(show(text), "|t|");
        expectEach("null", {element.getParentNode(), element.getNextSibling(),
                            element.getFirstChild(), element.getPreviousSibling(),
                            text.getPreviousSibling(), comment.getNextSibling()});
        for (const PelDOMNode& node : {text, comment, PelDOMNode(document.createElement("m"))})
            element.insertBefore(node, element.getFirstChild());
        element.setAttribute("d", "own");
        element.removeAttribute("d");
        EXPECT_EQ(element.getAttribute("d"), i % 2 == 0 ? "default" : "");
        element.setAttribute("k", "v");
        root.insertBefore(element, PelDOMNode());
        root.removeChild(element);
    }
}

// Each way to bring a name into a document. Chains of names stay short, however many there are.
TEST(NamesThatAreMade, HavePlacesEnough) {
    if (!PelXercesFields::areKnown())
        GTEST_SKIP()
            << "the table of names is as the engine makes it where its fields are not known";
    constexpr int count = 3000;
    using Make = std::function<void(PelDOMDocument&, PelDOMElement&, const PelString&)>;
    const Make ways[] = {
        [](auto& document, auto&, auto& name) { document.createElement(name); },
        [](auto&, auto& root, auto& name) { root.appendTextElement(name, "t"); },
        [](auto&, auto& root, auto& name) { root.putAttribute(name, ""); },
        [](auto&, auto& root, auto& name) { root.setTagName(name); },
        [](auto& document, auto&, auto& name) { document.createProcessingInstruction(name, ""); },
        [](auto& document, auto&, auto& name) {
            document.importNode(rootOf("<" + name + "/>"), true);
        },
        [](auto& document, auto&, auto& name) { PelDOMFiler(document).appendElement(name, "t"); },
    };
    for (const Make& make : ways) {
        PelDOMDocument document = services().createDocument("r");
        PelDOMElement root = rootOf(document);
        for (int i = 0; i < count; ++i)
            make(document, root, ("n" + std::to_string(i)).c_str());
        auto& engine = static_cast<xercesc::DOMDocumentImpl&>(engineOf(document));
        EXPECT_EQ(PelXercesFields::countNames(engine) / count, 1u) << "way " << &make - ways;
        EXPECT_GE(PelXercesFields::namePlacesOf(engine), count / 2) << "way " << &make - ways;
    }
}
