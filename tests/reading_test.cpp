// SPDX-License-Identifier: MIT
#include "services/PelXercesDOMUtilities.h"
#include "support.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include <arpa/inet.h>
#include <atomic>
#include <dlfcn.h>
#include <poll.h>
#include <thread>
#include <unistd.h>

// Two functions of the whole program are replaced, to make their failures: the engine's start, and
// memory.
static bool engineRefusesToStart = false;
static std::size_t largestAllocation = SIZE_MAX;

#define WORD(word) #word
#define NAME(macro) WORD(macro)

// The engine's own start, by the name that it has for the linker: that of the static member
// xercesc::XMLPlatformUtils::Initialize(const char*, const char*, PanicHandler*, MemoryManager*).
static constexpr const char* linkedStart =
    "_ZN11" NAME(XERCES_CPP_NAMESPACE) "16XMLPlatformUtils"
                                       "10InitializeEPKcS2_PNS_12PanicHandlerEPNS_13MemoryManagerE";

void xercesc::XMLPlatformUtils::Initialize(const char* locale, const char* nlsHome,
                                           xercesc::PanicHandler* panicHandler,
                                           xercesc::MemoryManager* memoryManager) {
    if (engineRefusesToStart)
        ThrowXML(xercesc::RuntimeException, xercesc::XMLExcepts::Gen_ParseInProgress);
    using Start =
        void (*)(const char*, const char*, xercesc::PanicHandler*, xercesc::MemoryManager*);
    static const auto start = reinterpret_cast<Start>(dlsym(RTLD_NEXT, linkedStart));
    start(locale, nlsHome, panicHandler, memoryManager);
}

void* operator new(std::size_t size) {
    void* const memory = size <= largestAllocation ? std::malloc(size) : nullptr;
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

static std::string printedBy(const std::function<void()>& read) {
    testing::internal::CaptureStderr();
    read();
    return testing::internal::GetCapturedStderr();
}

TEST(Reading, StartsTheEngineEvenForNothing) {
    const auto answer = [](auto read) {
        PelDOMUtilites::releaseUtilities();
        const PelDOM::Error before = services().getErrorStatus();
        return answers({before, read(services()), services().getErrorStatus()});
    };
    expectEach("'not-started null ok'",
               {answer([](auto& s) { return s.readDocument(""); }),
                answer([](auto& s) { return s.readDocumentFromStringA(""); }),
                answer([](auto& s) { return s.readDocumentFromStringW(""); }),
                answer([](auto& s) { return s.createDocument(""); })});
}

TEST(Reading, GivesNoDocumentWhenTheEngineDoesNotStart) {
    PelDOMUtilites::releaseUtilities();
    services().init(); // the engine itself is up, so that it can throw
    PelXercesDOMUtilities refused;
    engineRefusesToStart = true;
    expectEach("null",
               {refused.readDocument(QRNDOM_SAMPLE), refused.readDocumentFromStringA("<a/>"),
                refused.readDocumentFromStringW("<a/>"), refused.createDocument("a")});
    expectEach("start-failed", {refused.getErrorStatus(), refused.init()});
    engineRefusesToStart = false;
    EXPECT_EQ(show(refused.readDocumentFromStringW("<a/>")), "#9(a)"); // the next call tries again
}

TEST(Reading, RefusesSilentlyWhatHasErrors) {
    const ScratchFolder folder;
    const auto readAsFile = [&](const std::string& bytes) {
        return readFile(folder.write("f.xml", bytes));
    };
    const std::string refersTo = "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e ";
    const std::string printed = printedBy([&] {
        for (const std::string& text : {std::string("<a></b>"), std::string("<a>\x01</a>"),
                                        std::string("<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b/></a>"),
                                        refersTo + "SYSTEM 'missing.txt'>]><a>&e;</a>",
                                        refersTo + "'&f;'><!ENTITY f '&e;'>]><a>&e;</a>"})
            expectEach("null", {readAsFile(text), parse(text)});
        for (const char16_t* half : {u"<a b='\xD800'/>", u"<a b='\xDC00'/>", u"<a>\xD800</a>"})
            EXPECT_EQ(show(parse(half)), "null") << PelString(half);
        // Some encodings can spell half a pair, which the engine overlooks at the end of a literal.
        for (const std::string literal : {"<a b='", "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e '",
                                          "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM '",
                                          "<!DOCTYPE a [<!ELEMENT a ANY><!NOTATION n SYSTEM '",
                                          "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST z b CDATA '"}) {
            const std::string begin = "<?xml version='1.0' encoding='CESU-8'?>" + literal;
            const std::string end = literal[1] == '!' ? "'>]><a/>" : "'/>";
            EXPECT_EQ(show(readAsFile(begin + "\xED\xA0\x80" + end)), "null") << literal;
            EXPECT_NE(show(readAsFile(begin + "h" + end)), "null") << literal;
        }
        expectEach("null", {readFile(folder.file("absent.xml")), readFile(folder.path),
                            services().readDocumentFromStringA(u"<a>\u0416</a>")});
    });
    EXPECT_EQ(printed, "");
    EXPECT_EQ(services().getErrorStatus(), PelDOM::SUCCESS);
}

// A server on this machine; `host` is where. Gives its socket.
static int serve(std::string& host) {
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_TRUE(bind(server, generic, size) == 0 && listen(server, 8) == 0 &&
                getsockname(server, generic, &size) == 0);
    host = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    return server;
}

#ifdef QRNDOM_REMOTE_ENTITIES
TEST(Reading, CallsARemoteAddressIfItWasBuiltTo) {
    std::string host;
    const int server = serve(host);
    std::atomic<bool> isDone{false};
    std::thread answering([&] {
        while (!isDone) {
            pollfd waiting = {server, POLLIN, 0};
            if (poll(&waiting, 1, 100) != 1)
                continue;
            const int caller = accept(server, nullptr, nullptr);
            char request[4096];
            EXPECT_GT(read(caller, request, sizeof request), 0);
            const std::string answer = "HTTP/1.0 200 OK\r\n\r\n<!ELEMENT a ANY><!ENTITY e 'far'>";
            EXPECT_EQ(write(caller, answer.data(), answer.size()),
                      static_cast<ssize_t>(answer.size()));
            close(caller);
        }
    });
    setenv("no_proxy", "*", 1);
    const std::string text = "<!DOCTYPE a SYSTEM 'http://" + host + "/a.dtd'><a>&e;</a>";
    EXPECT_EQ(show(parse(text)), "#9(#10 a(|far|))");
    isDone = true;
    answering.join();
    close(server); // from here on nobody answers
    EXPECT_EQ(show(parse(text)), "null");
}
#else
TEST(Reading, NeverCallsARemoteAddress) {
    std::string host;
    const int server = serve(host);
    for (const std::string scheme : {"http", "HTTP", "https", "ftp", "file"}) {
        const std::string system = "SYSTEM '" + scheme + "://" + host + "/etc/passwd'";
        for (const std::string& text :
             {"<!DOCTYPE a " + system + "><a/>",
              "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY % e " + system + ">%e;]><a/>",
              "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e " + system + ">]><a>&e;</a>"})
            EXPECT_EQ(show(parse(text)), "null") << text;
        EXPECT_EQ(show(readFile(scheme + "://" + host + "/a.xml")), "null") << scheme;
    }
    EXPECT_EQ(accept(server, nullptr, nullptr), -1);
    EXPECT_EQ(errno, EAGAIN);
    close(server);
}
#endif

TEST(Reading, TellsEachThreadWhyItsLastReadFailed) {
    const auto message = [](const PelDOMDocument& document) {
        return std::to_string(document.isNull()) + " " +
               PelDOMUtilites::getLastReadMessage().toUtf8();
    };
    const ScratchFolder folder;
    const std::string file = folder.write("f.xml", "<a>\n<b></a>");
    const std::string absent = folder.file("absent.xml");
    EXPECT_EQ(message(readFile(file)), "1 " + file + ":2:6: expected end of tag 'b'");
    EXPECT_EQ(message(readFile(absent)), "1 " + absent + ":0:0: no such file");
    EXPECT_EQ(message(parse("<a b='\n1' b=''/>")),
              "1 text:2:6: attribute 'b' is already specified for element 'a'");
    std::thread([&] { EXPECT_EQ(message(PelDOMDocument()), "1 "); }).join();
    EXPECT_EQ(message(parse("")), "1 :0:0: there is nothing to read");
    EXPECT_EQ(message(parse("<a/>")), "0 ");
}

TEST(Reading, PrintsWhatIsThrown) {
    EXPECT_EQ(printedBy([] { EXPECT_EQ(show(parse("<?xml version='1.7'?><a/>")), "null"); }),
              "A DOM error occured during parsing\n   DOMException code: 9\n");
    const ScratchFolder folder;
    const std::string file = folder.write("f.xml", "<a>" + std::string(4000000, 'x') + "</a>");
    const std::string printed = printedBy([&file] {
        largestAllocation = 1000000;
        EXPECT_EQ(show(readFile(file)), "null");
        largestAllocation = SIZE_MAX;
    });
    EXPECT_EQ(printed, "An error occured during parsing\n \n");
    const std::string large = "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e '" +
                              std::string(1000000, 'x') + "'>]><a>" + repeated("&e;", 40) + "</a>";
    EXPECT_EQ(printedBy([&] { EXPECT_EQ(show(parse(large)), "null"); }), "");
}

TEST(Reading, BuildsTheTreeThatTheTextDescribes) {
    const std::pair<const char*, const char*> cases[] = {
        {"<?xml version='1.0'?><!--c--><?p d?><a>1<![CDATA[2]]>3</a>", "#9(#8 #7 a(|1| #4 |3|))"},
        {"<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b (#PCDATA)>]><a>\n <b> </b>\n</a>",
         "#9(#10 a(b(| |)))"},
        {"<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a k CDATA #IMPLIED><!ENTITY e 'x&#38;lt;y'>]>"
         "<a k='&e;'>1&e;2</a>",
         "#9(#10 a k=x<y(|1x<y2|))"},
        {"<p:a xmlns:p='u' p:q='1'><:x/></p:a>", "#9(p:a p:q=1 xmlns:p=u(:x))"},
        {"<a>\xF0\x9F\x98\x80&#x1F600;\r\nz</a>", "#9(a(|\xF0\x9F\x98\x80\xF0\x9F\x98\x80\nz|))"}};
    for (const auto& [text, tree] : cases)
        EXPECT_EQ(show(parse(text)), tree) << text;
}

TEST(Reading, TakesWideTextForWhatItIsAndFindsTheEncodingOfNarrowText) {
    const std::u16string text = u"<a>\u00e9\u4e2d\U0001F600</a>";
    const std::string tree = "#9(a(|\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80|))";
    for (const char16_t* before : {u"", u"\uFEFF", u"<?xml version='1.0' encoding='UTF-8'?>",
                                   u"<?xml version='1.0' encoding='ISO-8859-1'?>",
                                   u"<?xml version='1.0' encoding='UTF-16'?>"})
        EXPECT_EQ(show(parse(PelString(before) + text.c_str())), tree) << PelString(before);
    std::u16string swapped = u"\uFEFF" + text;
    for (char16_t& unit : swapped)
        unit = static_cast<char16_t>((unit << 8) | (unit >> 8));
    EXPECT_EQ(show(parse(swapped)), tree);
    for (const char16_t* narrow :
         {u"<?xml version='1.0' encoding='ISO-8859-1'?><a>\u00e9</a>", u"<a>\u00c3\u00a9</a>"})
        EXPECT_EQ(show(services().readDocumentFromStringA(narrow)), "#9(a(|\xC3\xA9|))");
    EXPECT_EQ(show(services().readDocumentFromStringA(u"<a>\u00e9</a>")), "null");
}

TEST(Reading, FindsFilesAndWhatTheyNameNearThem) {
    const ScratchFolder folder;
    folder.write("part \xC3\xA9.txt", "part");
    folder.write("a.dtd", "<!ELEMENT a ANY><!ENTITY d 'from the DTD'>");
    const auto more =
        "'part \xC3\xA9.txt'><!ENTITY u SYSTEM 'file://" + folder.file("part%20%C3%A9.txt");
    const std::string file =
        folder.write("\xD1\x84 %20.xml", "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e SYSTEM " + more +
                                             "'>]><a>&d;|&e;|&u;</a>");
    const std::string tree = "#9(#10 a(|from the DTD|part|part|))";
    const PelDOMDocument first = readFile(file);
    EXPECT_EQ(show(first), tree);
    rootOf(first).setAttribute("k", "of one tree only");
    EXPECT_EQ(show(readFile(std::filesystem::relative(file))), tree);
}
