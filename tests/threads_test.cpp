// SPDX-License-Identifier: MIT
#include "support.h"

#include <xercesc/dom/DOMException.hpp>

#include <thread>

namespace {

// The first appends of the process come from several threads, after nothing but the start.
TEST(Threads, ReadAndChangeTreesOfTheirOwn) {
    PelDOMUtilites& object = services();
    ASSERT_EQ(object.init(), PelDOM::SUCCESS);
    std::vector<std::thread> threads;
    std::vector<std::string> shown(4);
    for (std::size_t number = 0; number < shown.size(); ++number)
        threads.emplace_back([&object, &shown, number] {
            for (int round = 0; round < 50; ++round) {
                PelDOMDocument document =
                    round % 2 == 0
                        ? object.readDocument(QRNDOM_SAMPLE)
                        : object.readDocumentFromStringW("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r "
                                                         "k CDATA #IMPLIED>]><r k='1'/>");
                PelDOMElement root = document.getDocumentElement();
                root.appendTextElement("added", PelString().format(u"%.2f", 0.25));
                long value = 0;
                root.getAttribute("k", value);
                PelDOMNodeList list;
                root.getElementsByTagName("*", list);
                const PelDOMNode last = childAt(root, 0);
                EXPECT_THROW(root.appendChild(root), xercesc::DOMException);
                shown[number] = show(document);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& tree : shown)
        EXPECT_EQ(tree, "#9(#10 r k=1(added(|0.25|)))");
    object.terminate();
}

} // namespace
