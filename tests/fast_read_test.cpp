// SPDX-License-Identifier: MIT
#include "../fuzz/same_tree.h"
#include "reading/PelPlainNodes.h"
#include "reading/PelXercesReader.h"
#include "support.h"

namespace {

using Road = PelXercesTreeBuilder::Road;

PelXercesNodeRef readOn(Road road, const std::string& bytes, const std::string& file, const XMLCh* encoding,
    std::string& message) {
    PelXercesReadSettings settings;
    settings.road = road;
    PelXercesReader reader(settings);
    const PelXercesNodeRef node = file.empty() ? reader.readText("text", bytes.data(), bytes.size(), encoding)
                                               : reader.readFile(file.c_str());
    message = node ? "" : reader.getMessages().at(0).toLine().toUtf8();
    return node;
}

// All verdicts, messages and trees must be the same; gives the number of nodes, 0 for a refusal.
long bothRoads(const std::string& bytes, const std::string& file, const XMLCh* encoding = nullptr) {
    std::string message, other;
    const PelXercesNodeRef one = readOn(Road::engine, bytes, file, encoding, message);
    long count = 0;
    for (const Road road : {Road::fast, Road::plain}) {
        const PelXercesNodeRef two = readOn(road, bytes, file, encoding, other);
        EXPECT_EQ(other, message) << bytes << file;
        if (!one || !two) {
            EXPECT_EQ(!one, !two) << bytes << file;
            continue;
        }
        count = compareDocuments(*one.getNode(), *two.getNode());
        EXPECT_GT(count, 0) << bytes << file;
    }
    return count;
}

struct BothRoads : testing::Test {
    static void SetUpTestSuite() { services().init(); }
    static void TearDownTestSuite() { services().terminate(); }
};

TEST_F(BothRoads, KnowTheEnginesNodes) { EXPECT_TRUE(PelPlainNodes::areKnown()); }

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
