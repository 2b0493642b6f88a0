// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"
#include "counted_imp.h"
#include "support.h"
#include "threads.h"

#include <fcntl.h>
#include <sys/stat.h>

static constexpr int mode = QRNDOM_LOG_MODE; // the program is built once for each
static constexpr bool recordsPlain = mode == 1 || mode == 3;

/// What this mode records of a message about an object, or about none.
static std::string line(const void* object, const std::string& message) {
    if (object == nullptr ? !recordsPlain : mode != 2 && mode != 3)
        return "";
    const std::string number = std::to_string(reinterpret_cast<std::uintptr_t>(object)) + ":";
    return (mode == 1 ? "" : number) + message + "\n";
}

static std::string line(const std::string& message) {
    return line(nullptr, message);
}

// What handles say of themselves.
static constexpr const char* made = "PelDOMNode()";
static constexpr const char* copied = "PelDOMNode(const PelDOMNode& orig)";
static constexpr const char* moved = "PelDOMNode(PelDOMNode&& orig)";
static constexpr const char* gone = "~PelDOMNode";
static constexpr const char* toNode = "PelDOMNodeoperator=(PelDOMNode& rhs)";
static constexpr const char* toDocument = "PelDOMDocument operator=(PelDOMText& rhs)";
static constexpr const char* toElement = "PelDOMElement operator=(PelDOMElement& rhs)";
static constexpr const char* toText = "PelDOMText operator=(PelDOMText& rhs)";

static bool logIsOpen() {
    std::error_code isNoFile;
    for (const auto& file : std::filesystem::directory_iterator("/proc/self/fd"))
        if (std::filesystem::equivalent(file, QRNDOM_LOG_FILE, isNoFile))
            return true;
    return false;
}

static void requireAtExit(bool isMet, const char* what) {
    if (isMet)
        return;
    std::fputs(what, stderr);
    std::_Exit(1);
}

// Stands before the log in the link.
static const struct LoadTimeObject {
    const bool foundLogOpen = logIsOpen();
    ~LoadTimeObject() { requireAtExit(logIsOpen(), "the log was closed too early\n"); }
} loadTimeObject;

// Runs after all destructors, and may still log.
[[gnu::constructor(101)]] static void watchTheVeryEnd() {
    std::atexit([] {
        PelDOM::error(u"the end", nullptr);
        const std::string text = bytesOf(QRNDOM_LOG_FILE);
        const std::string last = line(&PelDOMFiler::InvalidElement, gone) + line("the end");
        requireAtExit(text.size() >= last.size() && text.substr(text.size() - last.size()) == last,
                      "the log did not end after all else\n");
    });
}

#ifndef __clang__
#pragma GCC diagnostic ignored "-Wprio-ctor-dtor" // after the log is closed
#endif
[[gnu::destructor(100)]] static void logOnceMore() {
    const char* const path = QRNDOM_LOG_FILE ".other"; // has the number now that the log had
    const int other = open(path, O_RDWR | O_CREAT | O_TRUNC, 0600);
    PelDOM::error(u"too late", nullptr);
    PelDOM::error(u"too late", path);
    requireAtExit(lseek(other, 0, SEEK_END) == 0, "a line of the log went to another file\n");
    unlink(path);
}

TEST(Log, IsOpenBeforeAllElseIsMade) {
    EXPECT_TRUE(loadTimeObject.foundLogOpen);
    const std::string first = line(&PelDOMFiler::InvalidElement, made);
    EXPECT_EQ(bytesOf(QRNDOM_LOG_FILE).substr(0, first.size()), first);
}

TEST(Log, RecordsWhatItsModeSays) {
    const LogWatch log;
    PelDOM::error(u"abc", nullptr);
    PelDOM::error(u"\u00e9\U0001F600", &log);
    PelDOM::error(u"", nullptr);
    EXPECT_EQ(log.text(), line("abc") + line(&log, "\xC3\xA9\xF0\x9F\x98\x80") + line(""));
}

TEST(Log, TracesTheLifeOfHandles) {
    const PelDOMDocument document = parse("<a>x</a>");
    const LogWatch log;
    std::string expected;
    {
        PelDOMNode node(document);
        PelDOMDocument sameDocument;
        PelDOMElement element;
        PelDOMText text;
        node = *&node;
        sameDocument = document;
        element = *&element;
        text = *&text;
        expected = line(&node, copied) + line(&sameDocument, made) + line(&element, made) +
                   line(&text, made) + line(&node, toNode) + line(&sameDocument, toDocument) +
                   line(&element, toElement) + line(&text, toText) + line(&text, gone) +
                   line(&element, gone) + line(&sameDocument, gone) + line(&node, gone);
    }
    EXPECT_EQ(log.text(), expected);
}

TEST(Log, TracesHandlesBeforeItIsDone) {
    const LogWatch log;
    std::string expected;
    {
        PelDOMNode one(new CountedImp);
        PelDOMNode two(one);
        two = one;
        two = std::move(one);
        expected = line(&one, made) + line(&two, copied) + line("cloned") + line(&two, toNode) +
                   line("cloned") + line("gone") + line(&two, toNode) + line("gone") +
                   line(&two, gone) + line("gone") + line(&one, gone);
    }
    EXPECT_EQ(log.text(), expected);
}

TEST(Log, ShowsThatConvertingAssignmentsMakeNoTemporaries) {
    PelDOMDocument document = parse("<a>x</a>");
    PelDOMNode element = rootOf(document);
    PelDOMNode text = childAt(element, 0);
    PelDOMDocument sameDocument;
    PelDOMText sameText;
    PelDOMFiler filer(document);
    const LogWatch log;
    sameDocument = std::as_const(element);
    sameText = text;
    filer.setCurrentNode(element);
    filer.setCurrentNode(text);
    const PelDOMNodeImp* const own = filer.currentElement().getNodeImp();
    filer.setCurrentNode(filer.currentElement());
    EXPECT_EQ(filer.currentElement().getNodeImp(), own);
    const void* const node = &filer.currentNode();
    const void* const current = &filer.currentElement();
    EXPECT_EQ(log.text(), line(&sameDocument, toDocument) + line(&sameText, toText) +
                              line(node, toNode) + line(current, toElement) + line(node, toNode) +
                              line(node, toNode) + line(current, toElement));
}

TEST(Log, ShowsNoMoreThanTheHandlesThatWalkingMakes) {
    const PelDOMNode root = childAt(parse("<a><!--c--><?p i?></a>"), 0);
    const LogWatch log;
    std::string expected;
    {
        PelDOMNode first = root.getFirstChild();
        const PelDOMNode last =
            root.getChildNodes().operator bool() ? first.getNextSibling() : first;
        PelDOMNode second(std::move(first));
        const PelDOMElement element(std::move(second));
        expected =
            line(&first, made) + line(&last, made) + line(&second, moved) + line(&element, moved);
        EXPECT_TRUE(element.getNextSibling().isSameNode(last));
    }
    EXPECT_EQ(log.text().substr(0, expected.size()), expected);
    EXPECT_EQ(log.text().find("failed"), std::string::npos);
}

// Which temporary handle a line is about does not always matter.
static std::string withoutObjects(const std::string& lines) {
    std::string kept;
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = lines.find_first_not_of("0123456789", at);
        if (end != at && end != lines.npos && lines[end] == ':')
            at = end + 1;
        else
            kept += lines[at++];
    }
    return kept;
}

// The same lines as when a handle was made and then copied into the caller's.
TEST(Log, ShowsWhatResultsPassThroughOnTheirWayIntoHandles) {
    const PelDOMElement root = rootOf("<a><b>x</b><!--c--></a>");
    const PelDOMElement b = root.getChildElement();
    const PelDOMNodeList children = root.getChildNodes();
    PelDOMNode node;
    PelString text;
    const LogWatch log;
    children.item(1, node);
    b.getChildTextValue(text);
    const char* const missing = "PelXercesDOMNode::createContentImp(8) failed";
    const std::string expected = line(missing) + line(&node, made) + line(&node, toNode) +
                                 line(missing) + line(&node, gone) + line(&node, made) +
                                 line(&node, made) + line(&node, toNode) + line(&node, gone) +
                                 line(&node, copied) + line(&node, gone) + line(&node, gone);
    EXPECT_EQ(withoutObjects(log.text()), withoutObjects(expected));
    EXPECT_EQ(text, u"x");
}

// Makes a handle to that comment, of which two lines tell, that many times.
static void meetComment(const PelDOMNode& parent, int times) {
    const PelDOMNodeList children = parent.getChildNodes();
    PelDOMNode node;
    for (int i = 0; i < times; ++i)
        children.item(0, node);
}

static std::string linesOfComments(int times) {
    std::string lines;
    for (int i = 0; recordsPlain && i < 2 * times; ++i)
        lines += "PelXercesDOMNode::createContentImp(8) failed\n";
    return lines;
}

TEST(Log, WritesLinesOfNodesWithoutContentManyAtATimeAndInTheirOrder) {
    if (mode > 1)
        GTEST_SKIP() << "each trace takes along what waits";
    const PelDOMElement root = rootOf("<r><!--c--></r>");
    const LogWatch log;
    std::string expected;
    const auto hasWritten = [&](const std::string& more) {
        expected += recordsPlain ? more : "";
        return bytesOf(QRNDOM_LOG_FILE).substr(log.before) == expected;
    };
    meetComment(root, 20);
    EXPECT_TRUE(hasWritten(""));
    PelDOM::error(u"own", nullptr);
    EXPECT_TRUE(hasWritten(linesOfComments(20) + "own\n"));
    meetComment(root, 1000);
    const std::string soFar = bytesOf(QRNDOM_LOG_FILE);
    EXPECT_GT(soFar.size() + 4096, log.before + expected.size() + linesOfComments(1000).size());
    root.dump(0);
    EXPECT_TRUE(hasWritten(linesOfComments(1000) + "Element(r)\n(\n" + linesOfComments(1) +
                           "Node(type=8)\n)\n"));
    meetComment(root, 1);
    const std::string large(5000, 'x'); // more than may wait
    PelDOM::error(large.c_str(), nullptr);
    EXPECT_TRUE(hasWritten(linesOfComments(1) + large + "\n"));
}

TEST(Log, LosesNoLineAndRepeatsNoneWhenProcessesEnd) {
    if (mode > 1)
        GTEST_SKIP() << "each trace takes along what waits";
    const PelDOMElement root = rootOf("<r><!--c--></r>");
    const std::string end = line("the end");
    const std::pair<void (*)(int), std::string> ends[] = {{&std::exit, end},
                                                          {&std::quick_exit, ""}};
    for (const auto& [leave, last] : ends) {
        const LogWatch log;
        meetComment(root, 1); // what waits here is none of the child's
        const int status = statusOfProcess([&, way = leave] {
            meetComment(root, 2);
            way(0);
        });
        EXPECT_EQ(status, 0);
        EXPECT_EQ(log.text(), linesOfComments(2) + last + linesOfComments(1));
    }
}

TEST(Log, TracesTheServices) {
    PelDOMUtilites::releaseUtilities();
    PelString target("d");
    const LogWatch log;
    PelDOMUtilites* const object = &services();
    object->init();
    const PelDOMDocument read = object->readDocument("");
    const PelDOMDocument text = object->readDocumentFromStringA("");
    object->writeDocument(read, target, 0, 0, 0);
    PelDOMUtilites::releaseUtilities();
    PelDOMUtilites::releaseUtilities();
    EXPECT_EQ(log.text(),
              line("PelDOMUtilites::getUtilities(PelDOM::Platform p)") +
                  line(object, "PelXercesDOMUtilities::init()") +
                  line(object, "PelXercesDOMUtilities::readDocument()") + line(&read, made) +
                  line(object, "PelXercesDOMUtilities::readDocument()") + line(&text, made) +
                  line(object, "PelXercesDOMUtilities::writeDocument()") +
                  line("PelDOMUtilites::releaseUtilities()") +
                  line(object, "PelXercesDOMUtilities::terminate()") +
                  line("PelDOMUtilites::releaseUtilities()"));
}

TEST(Log, NeverMixesTheLinesOfThreads) {
    const LogWatch log;
    inFourThreads([](std::size_t number) {
        const PelString message(std::string(300, "abcd"[number]).c_str());
        for (int i = 0; i < 200; ++i)
            PelDOM::error(message, nullptr);
    });
    std::istringstream lines(log.text());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_EQ(line.substr(line.size() - 300), std::string(300, line.back()));
    EXPECT_EQ(count, recordsPlain ? 800 : 0);
}

#if QRNDOM_LOG_MODE == 1

TEST(LogFile, OpensOnlyARegularFileOfItsOwn) {
    const ScratchFolder folder;
    const std::string victim = folder.write("victim", "precious");
    std::filesystem::create_symlink(folder.write("aim", "aimed at"), folder.file("link"));
    std::filesystem::create_hard_link(victim, folder.file("second name"));
    ASSERT_EQ(mkfifo(folder.file("fifo").c_str(), 0600), 0);
    const std::string foreign = folder.write("foreign", "theirs");
    std::vector<std::string> refused{folder.file("link"),        folder.file("second name"),
                                     folder.file("fifo"),        folder.file(""),
                                     folder.file("missing/log"), "/dev/null"};
    if (chown(foreign.c_str(), 12345, 12345) == 0)
        refused.push_back(foreign);
    for (auto& path : refused)
        EXPECT_EQ(PelPlatform::openLog(path.c_str()), PelPlatform::noLog) << path;
    EXPECT_EQ(bytesOf(victim) + bytesOf(folder.file("aim")) + bytesOf(foreign),
              "preciousaimed attheirs");
}

TEST(LogFile, IsEmptiedPrivateAppendedToAndClosedOnExec) {
    const ScratchFolder folder;
    const std::string path = folder.write("log", "earlier");
    std::filesystem::permissions(path, std::filesystem::perms::all);
    const int input = dup(0); // of a program that has closed its own, the log takes the number
    close(0);
    const int log = PelPlatform::openLog(path.c_str());
    EXPECT_EQ(log, 0);
    int second = PelPlatform::noLog; // as of another process that loads the library
    EXPECT_EQ(answers({PelPlatform::appendToLog(log, "one\n"), bytesOf(path),
                       (second = PelPlatform::openLog(path.c_str())) != PelPlatform::noLog,
                       bytesOf(path), PelPlatform::appendToLog(log, "two\n"),
                       PelPlatform::appendToLog(second, "three\n"), bytesOf(path)}),
              "1 'one\n' 1 '' 1 1 'two\nthree\n'");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
    EXPECT_NE(fcntl(second, F_GETFD) & FD_CLOEXEC, 0);
    PelPlatform::closeLog(second);
    PelPlatform::closeLog(log);
    EXPECT_FALSE(PelPlatform::appendToLog(log, "lost\n"));
    dup2(input, 0);
    close(input);
}

#endif
