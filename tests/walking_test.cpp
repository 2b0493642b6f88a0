// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/engine/PelXercesFields.h"

#include <algorithm>
#include <array>
#include <functional>

TEST(Namespaces, AreFoundByTheNamesAndAttributesAbove) {
    const PelDOMElement root = rootOf("<r xmlns='d' xmlns:p='1'/>");
    EXPECT_EQ(answers({root.lookupNamespaceURI(""), root.lookupNamespaceURI("p"),
                       root.lookupNamespaceURI("xml"), root.lookupNamespaceURI("xmlns")}),
              "'d' '1' 'http://www.w3.org/XML/1998/namespace' 'http://www.w3.org/2000/xmlns/'");
    PelDOMDocument document = root.getOwnerDocument();
    for (const auto& [name, prefix, local] : {std::array{"r", "", "r"},
                                              {"p:a", "p", "a"},
                                              {":a", "", ":a"},
                                              {"p:", "", "p:"},
                                              {"p:q:a", "", "p:q:a"}}) {
        const PelDOMElement made = document.createElement(name);
        EXPECT_EQ(answers({made.getPrefix(), made.getLocalName()}),
                  answers({PelString(prefix), PelString(local)}));
    }
}

// The names of a range's nodes, each with its attribute i.
template <class Range>
static std::string joined(const Range& range) {
    std::string all;
    for (const auto node : range) {
        all += node.getNodeName().toUtf8();
        if (node.getNodeType() == PelDOM::ELEMENT_NODE)
            all += PelDOMElement(node).getAttribute("i").toUtf8();
    }
    return all;
}

TEST(Ranges, GoThroughChildrenElementsAndAttributes) {
    const PelDOMDocument document = parse("<r z='1' b='2' n:a='3'>t<a i='1'><a "
                                          "i='2'/><b/></a><!--c--><b><a i='3'/></b><a i='4'/></r>");
    const PelDOMElement root = rootOf(document);
    const LogWatch log;
    EXPECT_EQ(joined(root.getChildNodes()), "#texta1#commentba4");
    for (const auto& [name, children, below] : {std::array{"a", "a1a4", "a1a2a3a4"},
                                                {"b", "b", "bb"},
                                                {"*", "a1ba4", "ra1a2bba3a4"},
                                                {"c", "", ""},
                                                {"", "", ""}}) {
        EXPECT_EQ(joined(root.getChildElements(name)), children) << name;
        EXPECT_EQ(joined(document.getElementsByTagName(name)), below) << name;
    }
    std::string attributes;
    for (const auto& [name, value] : root.getAttributes())
        attributes += (name + u"=" + value + u" ").toUtf8();
    EXPECT_EQ(attributes, PelXercesFields::areNumbered() ? "z=1 b=2 n:a=3 " : "b=2 n:a=3 z=1 ");
    EXPECT_EQ(log.text(), "");
    for (const PelDOMNode node : PelDOMNodeList())
        ADD_FAILURE() << show(node);
    for (const PelDOMElement element : PelDOMElement().getChildElements())
        ADD_FAILURE() << show(element);
    for (const PelDOMElement element : PelDOMElementRange())
        ADD_FAILURE() << show(element);
    EXPECT_TRUE(PelDOMElement().getAttributes().empty() && document.getFirstChild() == root);
}

// What each body sees of a loop over elements with names of one letter, and what it leaves of them.
using Body = std::function<void(PelDOMElement& root, PelDOMNode& node)>;

template <class Range>
static std::string visited(const Range& range, PelDOMElement root, const Body& body) {
    std::string seen;
    for (auto node : range) {
        if (seen.size() > 20)
            return seen + "...";
        seen += node.getNodeName().toUtf8();
        body(root, node);
    }
    return seen + " " + show(root);
}

static PelDOMNode named(const PelDOMElement& root, const char* name) {
    PelDOMNodeList found = root.getElementsByTagName(name);
    return itemOf(found, 0);
}

// Does it once, when the loop comes to the node with that name.
static Body at(char name, const std::function<void(PelDOMElement& root, PelDOMNode& node)>& body) {
    return [name, body](PelDOMElement& root, PelDOMNode& node) {
        if (node.getNodeName() == std::string(1, name))
            body(root, node);
    };
}

TEST(Ranges, GoOnWithWhatFollowedWhateverTheirBodiesDo) {
    const auto make = [](const PelDOMElement& root, const char* name) {
        return root.getOwnerDocument().createElement(name);
    };
    const std::pair<Body, const char*> bodies[] = {
        {[](auto& root, auto& node) { root.removeChild(node); }, "abcdef r"},
        {[](auto& root, auto& node) { root.getParentNode().insertBefore(node, root); }, "abcdef r"},
        {[](auto& root, auto& node) { root.appendChild(node); }, "abcdef r(a b c d e f)"},
        {[](auto&, auto& node) { remove(node.getNextSibling()), remove(node); }, "ace r"},
        {[](auto& root, auto&) { root.setTextContent(""); }, "a r"},
        {[](auto& root, auto&) { remove(root.getLastChild()); }, "abc r(a b c)"},
        {[&](auto& root, auto& node) { root.insertBefore(make(root, "x"), node.getNextSibling()); },
         "abcdef r(a x b x c x d x e x f x)"},
        {[&](auto& root, auto&) { root.appendChild(make(root, "x")); },
         "abcdef r(a b c d e f x x x x x x)"},
        {at('a', [&](auto& root, auto&) { root.insertBefore(make(root, "x"), named(root, "f")); }),
         "abcdexf r(a b c d e x f)"},
        {at('a', [&](auto& root, auto&) { root.replaceChild(make(root, "x"), named(root, "b")); }),
         "acdef r(a x c d e f)"},
        {at('c', [](auto& root, auto&) { root.insertBefore(named(root, "f"), named(root, "a")); }),
         "abcde r(f a b c d e)"},
        {at('b', [](auto& root, auto&) { PelDOMElement(named(root, "d")).setTagName("z"); }),
         "abczef r(a b c z e f)"}};
    for (const auto& [body, expected] : bodies)
        for (int kind = 0; kind < 3; ++kind) {
            const PelDOMDocument document = parse("<o><r><a/><b/><c/><d/><e/><f/></r></o>");
            const PelDOMElement root = rootOf(document).getChildElement();
            const std::string seen = kind == 0 ? visited(root.getChildNodes(), root, body)
                                     : kind == 1
                                         ? visited(root.getChildElements(), root, body)
                                         : visited(root.getElementsByTagName("*"), root, body);
            EXPECT_EQ(seen, expected) << kind;
        }
}

TEST(Ranges, OfAllElementsBelowGoOnBehindWhatIsRemoved) {
    const auto removes = [](std::initializer_list<const char*> names) {
        return [names = std::vector(names)](auto& root, auto&) {
            for (const char* name : names)
                remove(named(root, name));
        };
    };
    const std::pair<Body, const char*> bodies[] = {
        {[](auto&, auto& node) { remove(node); }, "adh r(#8)"},
        {at('f', removes({"d"})), "abcdefh r(a(b c) #8 h)"},
        {at('c', removes({"d", "h"})), "abc r(a(b c) #8)"},
        {at('a', removes({"h", "g", "f"})), "abcde r(a(b c) #8 d(e))"},
        {at('b', removes({"a"})), "abdefgh r(#8 d(e(f) g) h)"},
        {at('d', [](auto& root, auto& node) { root.appendChild(node); }),
         "abcdh r(a(b c) #8 h d(e(f) g))"},
        {at('b', [](auto& root, auto&) { remove(root); }), "abcdefgh r(a(b c) #8 d(e(f) g) h)"}};
    for (const auto& [body, expected] : bodies) {
        const PelDOMElement root =
            rootOf("<o><r><a><b/><c/></a><!----><d><e><f/></e><g/></d><h/></r><z/></o>")
                .getChildElement();
        EXPECT_EQ(visited(root.getElementsByTagName("*"), root, body), expected);
    }
}

// A loop that climbed to its root for each removal would not get through this.
TEST(Ranges, OfNestedElementsGoOnWhileTextsAreRemoved) {
    constexpr int depth = 100000;
    const PelDOMDocument document = parse(repeated("<e>t", depth) + repeated("t</e>", depth));
    int seen = 0;
    for (PelDOMNode node : document.getElementsByTagName("*")) {
        ASSERT_EQ(node.removeChild(node.getFirstChild()), PelDOM::SUCCESS);
        ASSERT_EQ(node.removeChild(node.getLastChild()),
                  ++seen < depth ? PelDOM::SUCCESS : PelDOM::NULL_NODE);
    }
    EXPECT_EQ(seen, depth);
}

TEST(Ranges, MayBeManyAtOnceAndEndInAnyOrder) {
    const PelDOMElement root = rootOf("<r><a/><b/><c/><d/></r>");
    std::vector<PelDOMIterator<PelDOMNode>> loops;
    for (int i = 0; i < 4; ++i)
        loops.push_back(root.getChildNodes().begin());
    std::string seen;
    for (const auto& [name, ended] :
         {std::pair{"b", 1}, {"c", 2}, {"d", 0}}) { // in the middle, the ends
        loops.erase(loops.begin() + ended);
        remove(named(root, name));
        for (auto& loop : loops) {
            seen += show(*loop);
            seen += ++loop == PelDOMIterator<PelDOMNode>() ? "." : "+";
        }
    }
    EXPECT_EQ(seen, "a+a+a+c+c+d.");
}

TEST(Ranges, KeepTheirTreeAndAreInputRanges) {
    std::string seen;
    for (const PelDOMElement child : rootOf("<r><a/><b/></r>").getChildElements())
        seen += show(child);
    EXPECT_EQ(seen, "ab");
    const PelDOMNodeList list = rootOf("<r><a/><b/><c/></r>").getChildNodes();
    EXPECT_EQ(std::distance(list.begin(), list.end()), 3);
    const auto isB = [](const PelDOMNode& node) { return node.getNodeName() == "b"; };
    auto found = std::find_if(list.begin(), list.end(), isB);
    const auto copy = found;
    EXPECT_TRUE(found == copy && found != list.end() && found != list.begin() && isB(*found) &&
                isB(*copy));
    found++;
    EXPECT_EQ(answers({*found, *copy}), "c c"); // the place is shared
    EXPECT_TRUE(++found == list.end() && !*found && ++found == list.end() && !*copy);
}
