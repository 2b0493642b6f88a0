// SPDX-License-Identifier: MIT
#include "support.h"
#include "threads.h"

// The first appends of the process come from several threads, after nothing but the start.
TEST(Threads, ReadAndChangeTreesOfTheirOwn) {
    PelDOMUtilites& object = services();
    ASSERT_EQ(object.init(), PelDOM::SUCCESS);
    const PelString text("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r k CDATA #IMPLIED>]><r k='1'/>");
    std::vector<std::string> shown(4);
    inFourThreads([&](std::size_t number) {
        for (int round = 0; round < 50; ++round) {
            const PelDOMDocument document = round % 2 == 0 ? object.readDocument(QRNDOM_SAMPLE)
                                                           : object.readDocumentFromStringW(text);
            PelDOMElement root = rootOf(document);
            root.appendTextElement("added", PelString().format(u"%.2f", 0.25));
            long value = 0;
            root.getAttribute("k", value);
            PelDOMNodeList list;
            root.getElementsByTagName("*", list);
            EXPECT_LT(append(root, root), 0);
            shown[number] = show(document);
        }
    });
    for (const std::string& tree : shown)
        EXPECT_EQ(tree, "#9(#10 r k=1(added(|0.25|)))");
    object.terminate();
}
