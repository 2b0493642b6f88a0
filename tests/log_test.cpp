// SPDX-License-Identifier: MIT
//
// Built once for each log mode.

#include "core/PelPlatform.h"
#include "support.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int mode = QRNDOM_LOG_MODE;
constexpr bool recordsPlain = mode == 1 || mode == 3;
constexpr bool recordsObjects = mode == 2 || mode == 3;

std::string addressOf(const void* object) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(object));
}

/// Lines as this mode would record them.
class Expected {
public:
    Expected& plain(const std::string& message) {
        if (recordsPlain)
            lines.push_back((mode == 3 ? "0:" : "") + message);
        return *this;
    }
    Expected& object(const void* object, const std::string& message) {
        if (recordsObjects)
            lines.push_back(addressOf(object) + ":" + message);
        return *this;
    }
    std::vector<std::string> lines;
};

TEST(Log, RecordsWhatItsModeSays) {
    const LogWatch log;
    const int object = 0;
    PelDOM::error(u"abc", nullptr);
    PelDOM::error(u"\u00e9\U0001F600", &object);
    PelDOM::error(u"", nullptr);
    EXPECT_EQ(log.lines(),
              Expected().plain("abc").object(&object, "\xC3\xA9\xF0\x9F\x98\x80").plain("").lines);
}

TEST(Log, TracesTheLifeOfHandles) {
    const PelDOMDocument document = parse("<a>x</a>");
    const LogWatch log;
    Expected expected;
    {
        PelDOMNode node;
        PelDOMNode copy(node);
        PelDOMDocument sameDocument;
        PelDOMElement element;
        PelDOMText text;
        node = copy;
        node = *&node;
        sameDocument = document;
        element = *&element;
        text = *&text;
        expected.object(&node, "PelDOMNode()")
            .object(&copy, "PelDOMNode(const PelDOMNode& orig)")
            .object(&sameDocument, "PelDOMNode()")
            .object(&element, "PelDOMNode()")
            .object(&text, "PelDOMNode()")
            .object(&node, "PelDOMNodeoperator=(PelDOMNode& rhs)")
            .object(&node, "PelDOMNodeoperator=(PelDOMNode& rhs)")
            .object(&sameDocument, "PelDOMDocument operator=(PelDOMText& rhs)")
            .object(&element, "PelDOMElement operator=(PelDOMElement& rhs)")
            .object(&text, "PelDOMText operator=(PelDOMText& rhs)")
            .object(&text, "~PelDOMNode")
            .object(&element, "~PelDOMNode")
            .object(&sameDocument, "~PelDOMNode")
            .object(&copy, "~PelDOMNode")
            .object(&node, "~PelDOMNode");
    }
    EXPECT_EQ(log.lines(), expected.lines);
}

TEST(Log, TracesTheServices) {
    PelDOMUtilites::releaseUtilities();
    const LogWatch log;
    PelDOMUtilites* const object = &services();
    object->init();
    {
        PelString target("d");
        PelDOMDocument none = object->readDocument("");
        object->readDocumentFromStringA("");
        object->writeDocument(none, target, 0, 0, 0);
    }
    PelDOMUtilites::releaseUtilities();
    PelDOMUtilites::releaseUtilities();
    Expected expected;
    expected.plain("PelDOMUtilites::getUtilities(PelDOM::Platform p)")
        .object(object, "PelXercesDOMUtilities::init()")
        .object(object, "PelXercesDOMUtilities::readDocument()")
        .object(object, "PelXercesDOMUtilities::readDocument()")
        .object(object, "PelXercesDOMUtilities::writeDocument()")
        .plain("PelDOMUtilites::releaseUtilities()")
        .object(object, "PelXercesDOMUtilities::terminate()")
        .plain("PelDOMUtilites::releaseUtilities()");
    std::vector<std::string> lines = log.lines();
    lines.erase(std::remove_if(lines.begin(), lines.end(), // the two null documents' own
                               [](const auto& l) { return l.find("PelDOMNode") != l.npos; }),
                lines.end());
    EXPECT_EQ(lines, expected.lines);
}

TEST(Log, SaysWhenANodeHasNoContent) {
    const PelDOMDocument document = parse("<a><!--c--></a>");
    const LogWatch log;
    { const PelDOMNode comment = childAt(document.getDocumentElement(), 0); }
    const auto lines = log.lines();
    const std::string line = "PelXercesDOMNode::createContentImp(8) failed";
    EXPECT_EQ(std::count(lines.begin(), lines.end(), (mode == 3 ? "0:" : "") + line),
              recordsPlain ? 2 : 0); // the node that item makes, and its clone in the handle
}

TEST(Log, NeverMixesTheLinesOfThreads) {
    const LogWatch log;
    std::vector<std::thread> threads;
    for (char letter = 'a'; letter < 'e'; ++letter)
        threads.emplace_back([letter] {
            const PelString message(std::string(300, letter).c_str());
            for (int i = 0; i < 200; ++i)
                PelDOM::error(message, nullptr);
        });
    for (std::thread& thread : threads)
        thread.join();
    const std::vector<std::string> lines = log.lines();
    EXPECT_EQ(lines.size(), recordsPlain ? 800U : 0U);
    for (const std::string& line : lines)
        EXPECT_EQ(line.substr(line.size() - 300), std::string(300, line.back()));
}

#if QRNDOM_LOG_MODE == 1

TEST(LogFile, OpensOnlyARegularFileOfItsOwn) {
    const ScratchFolder folder;
    const std::string victim = folder.write("victim", "precious");
    std::filesystem::create_symlink(victim, folder.file("link"));
    std::filesystem::create_hard_link(victim, folder.file("second name"));
    ASSERT_EQ(mkfifo(folder.file("fifo").c_str(), 0600), 0);
    for (const char* name : {"link", "second name", "fifo", "", "missing/log"})
        EXPECT_EQ(PelPlatform::openLog(folder.file(name).c_str()), PelPlatform::noLog) << name;
    EXPECT_EQ(PelPlatform::openLog("/dev/null"), PelPlatform::noLog);
    EXPECT_EQ(bytesOf(victim), "precious");
    if (geteuid() == 0) {
        const std::string foreign = folder.write("foreign", "theirs");
        ASSERT_EQ(chown(foreign.c_str(), 12345, 12345), 0);
        EXPECT_EQ(PelPlatform::openLog(foreign.c_str()), PelPlatform::noLog);
        EXPECT_EQ(bytesOf(foreign), "theirs");
    }
}

TEST(LogFile, IsEmptiedPrivateAppendedToAndClosedOnExec) {
    const ScratchFolder folder;
    const std::string path = folder.write("log", "earlier");
    std::filesystem::permissions(path, std::filesystem::perms::all);
    const int log = PelPlatform::openLog(path.c_str());
    ASSERT_NE(log, PelPlatform::noLog);
    EXPECT_TRUE(PelPlatform::appendToLog(log, "one\n"));
    const int other =
        PelPlatform::openLog(path.c_str()); // as another process that loads the library
    EXPECT_TRUE(PelPlatform::appendToLog(log, "two\n"));
    EXPECT_TRUE(PelPlatform::appendToLog(other, "three\n"));
    EXPECT_EQ(bytesOf(path), "two\nthree\n");
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_NE(fcntl(log, F_GETFD) & FD_CLOEXEC, 0);
    PelPlatform::closeLog(other);
    PelPlatform::closeLog(log);
    EXPECT_FALSE(PelPlatform::appendToLog(log, "lost\n"));
}

#endif

} // namespace
