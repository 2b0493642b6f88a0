// SPDX-License-Identifier: MIT
#include "reading/PelXercesReader.h"
#include "support.h"

#include <xercesc/dom/DOM.hpp>

namespace {

using Road = PelXercesTreeBuilder::Road;
using xercesc::DOMNode;

std::u16string_view viewOf(const XMLCh* text) {
    return text != nullptr ? std::u16string_view(text) : std::u16string_view(u"(null)");
}

bool areSameAttributes(const DOMNode& one, const DOMNode& two) {
    const xercesc::DOMNamedNodeMap* const left = one.getAttributes();
    const xercesc::DOMNamedNodeMap* const right = two.getAttributes();
    if (left == nullptr || right == nullptr) return left == right;
    bool same = left->getLength() == right->getLength();
    for (XMLSize_t i = 0; same && i < left->getLength(); ++i) {
        const auto& a = static_cast<const xercesc::DOMAttr&>(*left->item(i));
        const auto& b = static_cast<const xercesc::DOMAttr&>(*right->item(i));
        same = viewOf(a.getName()) == viewOf(b.getName()) && viewOf(a.getValue()) == viewOf(b.getValue()) &&
               a.isId() == b.isId() && a.getSpecified() == b.getSpecified() && a.getOwnerElement() == &one &&
               b.getOwnerElement() == &two;
    }
    return same;
}

bool areSameNode(const DOMNode& one, const DOMNode& two) {
    return one.getNodeType() == two.getNodeType() && viewOf(one.getNodeName()) == viewOf(two.getNodeName()) &&
           viewOf(one.getNodeValue()) == viewOf(two.getNodeValue()) && areSameAttributes(one, two);
}

// Walks both trees at once by every kind of link and gives the number of nodes, or -1.
long compare(const DOMNode* one, const DOMNode* two) {
    const DOMNode* const top = one;
    for (long count = 1;; ++count) {
        if (!areSameNode(*one, *two)) return -1;
        const DOMNode* nextOne = one->getFirstChild();
        const DOMNode* nextTwo = two->getFirstChild();
        while (nextOne == nullptr && nextTwo == nullptr && one != top) {
            nextOne = one->getNextSibling();
            nextTwo = two->getNextSibling();
            if (nextOne != nullptr && nextTwo != nullptr &&
                (nextOne->getPreviousSibling() != one || nextTwo->getPreviousSibling() != two))
                return -1;
            if (nextOne == nullptr && nextTwo == nullptr) {
                const DOMNode* const last = one;
                one = one->getParentNode();
                two = two->getParentNode();
                if (one->getLastChild() != last) return -1;
            }
        }
        if ((nextOne == nullptr) != (nextTwo == nullptr)) return -1;
        if (nextOne == nullptr) return count;
        one = nextOne;
        two = nextTwo;
    }
}

// Both verdicts and both trees must be the same; gives the number of nodes, 0 for a refusal.
long bothRoads(const std::string& bytes, const std::string& file) {
    PelXercesReader engineReader(Road::engine);
    PelXercesReader fastReader(Road::fast);
    const PelXercesNodeRef one = file.empty() ? engineReader.readText(bytes.data(), bytes.size())
                                              : engineReader.readFile(file.c_str());
    const PelXercesNodeRef two =
        file.empty() ? fastReader.readText(bytes.data(), bytes.size()) : fastReader.readFile(file.c_str());
    if (!one || !two) {
        EXPECT_EQ(!one, !two) << bytes << file;
        return 0;
    }
    const long count = compare(one.getNode(), two.getNode());
    EXPECT_GT(count, 0) << bytes << file;
    return count;
}

struct BothRoads : testing::Test {
    static void SetUpTestSuite() { services().init(); }
    static void TearDownTestSuite() { services().terminate(); }
};

TEST_F(BothRoads, GiveTheSameTree) {
    const std::string dtd =
        "<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY><!ELEMENT b (c*)><!ELEMENT c ANY>"
        "<!ATTLIST a d CDATA 'def' f CDATA #FIXED 'fix' i ID #IMPLIED n NMTOKENS ' x  y '>"
        "<!ATTLIST c i ID #IMPLIED><!ENTITY e 'v'><!ENTITY t 'x<a/>y<c>z</c>'>]>";
    for (const std::string& text : {
             std::string("<r/>"),
             std::string("<r>t</r>"),
             std::string("<r><a/><a></a>t<a>u</a>v<!--c-->w<?p i?>x<![CDATA[y]]>z&lt;&#65;</r>"),
             std::string("<r><!--first--><a z='1' y='2' x=''/><![CDATA[c]]><a/><!--c--><a/></r>"),
             std::string("<!--before--><?p?><r a='1'><b><c d='x&#10;y'/>\r\n</b></r><!--after-->"),
             dtd + "<r><a/><a i='i1' d='own'>&t;</a><b> <c i='i2'/> <c/> </b>1&e;2</r>",
             dtd + "<r><b> text </b></r>",
             std::string("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY>]><r>&#x1F600;<a>a</a><a/></r>"),
             std::string("<r><a></r>"),
             std::string("<r></r></r>"),
             std::string("<r/>text<r/>"),
         })
        bothRoads(text, "");
    EXPECT_EQ(bothRoads("<r><a b='1'>t</a><!--c-->u</r>", ""), 6);
    std::string wide = "<r>";
    for (int i = 0; i < 3000; ++i)
        wide += "<e a='" + std::to_string(i) + "' b='x'>" +
                std::string(static_cast<std::size_t>(i % 50), 'x') + "&amp;</e>\n<f/>";
    wide += "<l>" + std::string(40000, 'y') + "&amp;z<!--c-->w&lt;" + std::string(99, 'v') + "</l>";
    EXPECT_EQ(bothRoads(wide + "</r>", ""), 2 + 4 * 3000 + 4);
}

TEST_F(BothRoads, AgreeOnTheXmlOfThisMachine) {
    namespace fs = std::filesystem;
    long files = 0;
    long nodes = 0;
    for (auto entry =
             fs::recursive_directory_iterator("/usr/share", fs::directory_options::skip_permission_denied);
         entry != fs::recursive_directory_iterator(); ++entry) {
        const fs::path& path = entry->path();
        const bool isXml = path.extension() == ".xml" || path.extension() == ".svg" ||
                           path.extension() == ".xsl" || path.extension() == ".ui";
        if (!isXml || !entry->is_regular_file() || entry->file_size() > 5000000) continue;
        ++files;
        nodes += bothRoads("", path.string());
    }
    std::cout << files << " files, " << nodes << " nodes\n";
    EXPECT_GT(nodes, 0);
}

} // namespace
