// SPDX-License-Identifier: MIT
#include "failing_memory.h"
#include "support.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <iostream>
#include <set>
#include <sys/stat.h>

// How `use` does in a process of its own: 0 as it should, 1 wrong, 2 over; 255 when the engine
// ended that.
static int inAChild(const std::function<bool()>& use) {
    return WEXITSTATUS(statusOfProcess([&] {
        if (!use())
            _exit(testing::Test::HasFailure() ? 1 : 2);
    }));
}

TEST(AStartWithoutMemory, IsTriedAgainWhereThatIsSafeAndNeverThrowsThere) {
    // What is left of a start whose allocation `n` failed; false when there is no such allocation.
    const auto start = [](long n, bool isSafe) {
        PelDOMUtilites& object = services();
        PelDOM::Error code = PelDOM::SUCCESS; // the engine's own failure is thrown
        const auto init = [&] { code = object.init(); };
        if (!FailingMemory::failsAt(n, init, true))
            return false;
        EXPECT_EQ(code, isSafe ? PelDOM::INITIALIZATION_FAILED : PelDOM::SUCCESS) << n;
        EXPECT_EQ(answers({object.init(), object.createDocument("a"), parse("<a/>"),
                           object.terminate(), object.getErrorStatus()}),
                  isSafe ? "ok #9(#13 a) #9(a) ok not-started"
                         : "start-failed null null ok not-started")
            << n;
        return true;
    };
    long n = 0;
    int end = 0;
    for (; end == 0; ++n)
        end = inAChild([&] { return start(n, n == 0); });
    EXPECT_GT(n, 100);
    EXPECT_EQ(end, 255); // the engine itself ends the process late in its start
    for (n = 0, end = 0; end == 0; ++n)
        end = inAChild([&] {
            xercesc::XMLPlatformUtils::Initialize(); // what comes after the engine's own start
            if (!start(n, true))
                return false;
            EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
            xercesc::XMLPlatformUtils::Terminate();
            EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
            return true;
        });
    EXPECT_EQ(end, 2);
    EXPECT_GT(n, 3);
}

TEST(AUseWithoutMemory, IsDoneOrNotDoneAndLosesNothing) {
    const ScratchFolder folder;
    const std::string dtd =
        "<!ELEMENT a (#PCDATA|b)*><!ATTLIST a d CDATA 'default'><!ENTITY e '&#38;amp;'>";
    const std::string file = folder.write("in.xml", "<!DOCTYPE a SYSTEM 'a.dtd'><a>x &e;</a>");
    const PelString text(("<!DOCTYPE a [" + dtd + "]><a>x &e;</a>").c_str());
    const PelString value(std::string(9999, 'x').c_str()), tree("<r old='1'><a b='2'/>text</r>");
    folder.write("a.dtd", dtd);
    const auto keep = [](PelDOMDocument& document, const PelDOMDocument& read) {
        read.isNull() == 0 ? void(document = read) : void(std::cerr << "null");
    };
    const std::function<void(PelDOMDocument&)> uses[] = {
        [&](auto& document) { keep(document, parse(text)); },
        [&](auto& document) { keep(document, services().readDocumentFromStringA(text)); },
        [&](auto& document) { keep(document, readFile(file)); },
        [&](auto& document) { document = services().createDocument("created"); },
        [&](auto& document) { show(document); },
        [&](auto& document) { rootOf(document).setAttribute("old", value); },
        [&](auto& document) { rootOf(document).setAttribute("new", value); },
        [&](auto& document) { rootOf(document).putAttribute("old", value); },
        [&](auto& document) { rootOf(document).setAttribute("new", 12345678901234567.0); },
        [&](auto& document) { rootOf(document).removeAttribute("old"); },
        [&](auto& document) { PelDOMText(childAt(rootOf(document), 1)).setValue(value); },
        [&](auto& document) { append(rootOf(document), childAt(rootOf(document), 0)); },
        [&](auto& document) { PelDOMFiler(document).appendElement("n", 1.5, "%999.2f"); },
        [&](auto& document) { rootOf(document).setTextContent(value); },
        [&](auto& document) { rootOf(document).getLastChild().setTextContent(value); },
        [&](auto& document) {
            for (const PelDOMNode child : rootOf(document).getChildNodes())
                child.getTextContent();
            for (const PelDOMElement child : rootOf(document).getChildElements("a"))
                child.getAttributes();
            for (const PelDOMNode node : document.getElementsByTagName("a"))
                node.getPreviousSibling();
        },
        [&](auto& document) { document.dump(1); },
        [&](auto& document) {
            services().writeDocument(document, PelString(value) += "", 0, 1, 0);
        },
        [&](auto& document) {
            services().writeDocument(document, folder.file("out.xml").c_str());
        }};
    EXPECT_EQ(show(readFile(folder.file("absent.xml"))), "null"); // makes room for a message
    for (const auto& use : uses) {
        std::set<std::string> states{show(parse(tree))};
        std::string state(9999, ' '); // in the heap, before and after
        bool hasFailed = true;
        for (long n = 0; hasFailed; ++n) {
            const long before = FailingMemory::alive;
            {
                PelDOMDocument document = parse(tree);
                testing::internal::CaptureStderr();
                hasFailed = FailingMemory::failsAt(n, [&] { use(document); });
                state.assign(show(document).c_str()); // into its own memory
                const std::string said = testing::internal::GetCapturedStderr();
                EXPECT_TRUE(said.empty() ||
                            (hasFailed && (said == "An error occured during parsing\n \nnull" ||
                                           said == "null")))
                    << said;
            }
            EXPECT_TRUE(FailingMemory::alive == before || FailingMemory::hasMetLossyEngine)
                << n << state;
            states.insert(state);
        }
        EXPECT_LE(states.size(), 2U) << &use - uses << testing::PrintToString(states);
    }
}

// The services' reads throw nothing, those of a reader nothing of the engine's.
TEST(AReadWithoutMemory, GivesADocumentOrSaysWhyNot) {
    const ScratchFolder folder;
    const std::string type = "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e 'x'>]>";
    PelDOMUtilites& object = services();
    PelDOMReader reader;
    for (const PelString name :
         {folder.write("plain.xml", "<a>x</a>"), folder.write("typed.xml", type + "<a>&e;</a>")}) {
        long nulls = 0;
        bool hasFailed = true;
        for (long n = 0; hasFailed; ++n) {
            PelDOMDocument document, own;
            bool isOver = false, isOwnOver = false;
            testing::internal::CaptureStderr();
            hasFailed = FailingMemory::failsAt(
                n, [&] { document = object.readDocument(name), isOver = true; });
            hasFailed |=
                FailingMemory::failsAt(n, [&] { own = reader.readFile(name), isOwnOver = true; });
            testing::internal::GetCapturedStderr();
            EXPECT_TRUE(isOver) << n;
            const std::string message = PelDOMUtilites::getLastReadMessage().toUtf8();
            EXPECT_EQ(message.substr(message.rfind(':') + 1), document ? "" : " not enough memory")
                << n;
            EXPECT_EQ(isOwnOver && !own, !reader.getMessages().empty()) << n;
            nulls += document ? 0 : 1;
        }
        EXPECT_GT(nulls, 1) << name;
    }
}

// What a change has made by the time that it fails goes back, and nothing of the tree has changed.
TEST(AChangeWithoutMemory, LeavesTheTreeAsItWas) {
    const std::string large(9999, 'x'); // whatever holds it needs a block of its own
    const PelString text(
        ("<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT a ANY><!ELEMENT c ANY><!ATTLIST a b CDATA "
         "#IMPLIED d CDATA '" +
         large + "'><!ATTLIST c b CDATA '" + large + "' d CDATA 'c' e CDATA '" + large +
         "'>]><r><a b='" + large + "' d='own'>" + large + "</a><a b='2'/><c/></r>")
            .c_str());
    const PelDOMDocument other = parse(text);
    const auto at = [](const PelDOMDocument& document, long index) {
        return childAt(rootOf(document), index);
    };
    const auto insert = [&](PelDOMDocument& document, const PelDOMNode& node) {
        rootOf(document).insertBefore(node, at(document, 1));
    };
    const auto replace = [&](PelDOMDocument& document, const PelDOMNode& node) {
        rootOf(document).replaceChild(node, at(document, 1));
    };
    const std::function<void(PelDOMDocument&)> changes[] = {
        [&](auto& document) { rootOf(document).removeChild(at(document, 0)); },
        [&](auto& document) { insert(document, document.createElement("n")); },
        [&](auto& document) { insert(document, document.createElement("c")); },
        [&](auto& document) { insert(document, document.createComment(large)); },
        [&](auto& document) { insert(document, document.createProcessingInstruction("p", large)); },
        [&](auto& document) { insert(document, document.importNode(rootOf(other), true)); },
        [&](auto& document) { replace(document, at(document, 0).cloneNode(true)); },
        [&](auto& document) { replace(document, document.importNode(at(other, 0), true)); },
        [&](auto& document) { PelDOMElement(at(document, 0)).setTagName("c"); },
        [&](auto& document) { PelDOMElement(at(document, 2)).setTagName("a"); },
        [&](auto& document) { PelDOMElement(at(document, 0)).removeAttribute("d"); },
        [&](auto& document) { PelDOMElement(at(document, 2)).removeAttribute("b"); },
        [&](auto& document) { rootOf(document).appendTextElement("c", large); },
        [&](auto& document) { rootOf(document).setTextContent(large); }};
    for (const auto& change : changes) {
        std::set<std::string> states{show(parse(text))};
        bool hasFailed = true;
        long n = 0;
        for (; hasFailed; ++n) {
            PelDOMDocument document = parse(text);
            const PelDOMNodeList elements = rootOf(document).getElementsByTagName("*");
            hasFailed = FailingMemory::failsAt(n, [&] { change(document); });
            states.insert(show(document));
            EXPECT_EQ(elements.length(), rootOf(document).getElementsByTagName("*").length());
            // What was taken back is whole, and what was not is still in the tree.
            const PelDOMNode copy = rootOf(document).cloneNode(true);
            EXPECT_EQ(show(copy), show(rootOf(document)));
            for (int i = 0; i < 600; ++i)
                document.createElement("a").insertBefore(document.createTextNode("t"),
                                                         PelDOMNode());
            EXPECT_EQ(show(copy), show(rootOf(document)));
        }
        EXPECT_LE(states.size(), 2U) << &change - changes;
        EXPECT_GT(n, 2) << &change - changes;
    }
}

// Bytes and file are the old ones or all of the new ones, and nothing stands beside the file.
TEST(AWriteWithoutMemory, IsWholeOrNotDone) {
    const ScratchFolder folder;
    const PelDOMDocument document =
        parse("<!DOCTYPE a [<!ENTITY e 'v'><!ELEMENT a ANY><!ATTLIST a b CDATA "
              "#IMPLIED>]><a b='2'>\u20AC<!--c--><a>&e;</a></a>");
    for (const char* const encoding : {"UTF-8", "ISO-8859-1", "ISO-2022-JP"}) {
        PelDOMWriter writer;
        writer.setEncoding(encoding);
        writer.setIndent(2);
        std::string whole;
        ASSERT_EQ(writer.writeBytes(document, whole), PelDOM::SUCCESS) << writer.getMessage();
        long n = 0;
        for (bool hasFailed = true; hasFailed; ++n) {
            std::string bytes = "old";
            const std::string file = folder.write("out.xml", bytes);
            PelDOM::Error codes[] = {PelDOM::INTERNAL_ERROR,
                                     PelDOM::INTERNAL_ERROR}; // if it throws
            hasFailed =
                FailingMemory::failsAt(n, [&] { codes[0] = writer.writeBytes(document, bytes); });
            hasFailed |=
                FailingMemory::failsAt(n, [&] { codes[1] = writer.writeFile(document, file); });
            EXPECT_EQ(bytes, codes[0] == PelDOM::SUCCESS ? whole : "old") << n;
            EXPECT_EQ(bytesOf(file), codes[1] == PelDOM::SUCCESS ? whole : "old") << n;
            using Entries = std::filesystem::directory_iterator;
            EXPECT_EQ(std::distance(Entries(folder.path), Entries()), 1) << n;
        }
        EXPECT_GT(n, 3) << encoding;
    }
}

TEST(AFileThatFails, IsAnsweredAndSpoilsNothing) {
    const ScratchFolder folder;
    const std::string whole = "<!DOCTYPE a [<!ENTITY e 'v'><!ELEMENT a ANY>]><a>&e;</a>";
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(show(readFile(folder.write("cut.xml", whole.substr(0, length)))), "null")
            << length;
    const std::string fifo = folder.file("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    expectEach("null", {readFile(fifo), readFile("/dev/zero")});
    const std::string unreadable = folder.write("unreadable.xml", whole);
    EXPECT_EQ(readFile(unreadable).isNull(), 0);
    std::filesystem::permissions(unreadable, std::filesystem::perms::none);
    EXPECT_EQ(readFile(unreadable).isNull(),
              access(unreadable.c_str(), R_OK) == 0 ? 0 : 1); // root reads all
}
