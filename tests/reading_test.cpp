// SPDX-License-Identifier: MIT
#include "services/PelXercesDOMUtilities.h"
#include "support.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include <cstdlib>
#include <dlfcn.h>
#include <new>

namespace {

bool engineRefusesToStart = false;
std::size_t largestAllocation = SIZE_MAX;

} // namespace

// Stands before the engine's own start.
void xercesc::XMLPlatformUtils::Initialize(const char* locale, const char* nlsHome,
                                           xercesc::PanicHandler* panicHandler,
                                           xercesc::MemoryManager* memoryManager) {
    using Start =
        void (*)(const char*, const char*, xercesc::PanicHandler*, xercesc::MemoryManager*);
    static const auto start = reinterpret_cast<Start>(dlsym(
        RTLD_NEXT, "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_"
                   "13MemoryManagerE"));
    if (engineRefusesToStart)
        throw xercesc::RuntimeException(__FILE__, __LINE__,
                                        xercesc::XMLExcepts::Gen_ParseInProgress,
                                        xercesc::XMLPlatformUtils::fgMemoryManager);
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

namespace {

/// What a read printed on the standard error stream.
template <class Read>
std::string printedBy(Read read) {
    testing::internal::CaptureStderr();
    read();
    return testing::internal::GetCapturedStderr();
}

TEST(Reading, StartsTheEngineEvenForNothing) {
    using Read = PelDOMDocument (*)(PelDOMUtilites&);
    for (const Read read : {Read([](PelDOMUtilites& s) { return s.readDocument(""); }),
                            Read([](PelDOMUtilites& s) { return s.readDocumentFromStringA(""); }),
                            Read([](PelDOMUtilites& s) { return s.readDocumentFromStringW(""); }),
                            Read([](PelDOMUtilites& s) { return s.createDocument(""); })}) {
        PelDOMUtilites::releaseUtilities();
        EXPECT_EQ(services().getErrorStatus(), PelDOM::NOT_INITIALIZED);
        EXPECT_EQ(read(services()).getErrorStatus(), PelDOM::NO_IMPLEMENTATION);
        EXPECT_EQ(services().getErrorStatus(), PelDOM::SUCCESS);
    }
}

TEST(Reading, GivesNoDocumentWhenTheEngineDoesNotStart) {
    PelDOMUtilites::releaseUtilities();
    services().init(); // the engine itself is up, so that it can throw
    PelXercesDOMUtilities refused;
    engineRefusesToStart = true;
    EXPECT_EQ(refused.readDocument(QRNDOM_SAMPLE).isNull(), 1);
    EXPECT_EQ(refused.getErrorStatus(), PelDOM::INITIALIZATION_FAILED);
    EXPECT_EQ(refused.readDocumentFromStringA("<a/>").isNull(), 1);
    EXPECT_EQ(refused.readDocumentFromStringW("<a/>").isNull(), 1);
    EXPECT_EQ(refused.createDocument("a").isNull(), 1);
    EXPECT_EQ(refused.init(), PelDOM::INITIALIZATION_FAILED);
    engineRefusesToStart = false;
    EXPECT_EQ(show(refused.readDocumentFromStringW("<a/>")), "#9(a)"); // the next call tries again
}

TEST(Reading, RefusesSilentlyWhatHasErrors) {
    const ScratchFolder folder;
    std::string nested = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 10; ++i) {
        nested += "<!ENTITY e" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j)
            nested += "&e" + std::to_string(i - 1) + ";";
        nested += "'>";
    }
    const std::string texts[] = {
        "<a>",
        "<a></b>",
        "text",
        "<a b='1' b='2'/>",
        "<a>&undeclared;</a>",
        "<a>\x01</a>",
        "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b/></a>",
        "<!DOCTYPE a [<!ENTITY e 'no element is declared'>]><a>&e;</a>",
        nested + "]><a>&e9;</a>",
        "<!DOCTYPE a SYSTEM 'http://127.0.0.1:9/a.dtd'><a/>",
        "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM 'https://127.0.0.1:9/e'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM 'ftp://127.0.0.1:9/e'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM 'file://127.0.0.1/etc/passwd'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY % e SYSTEM 'http://127.0.0.1:9/e'>%e;]><a/>",
        "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM 'missing.txt'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>",
    };
    const std::string printed = printedBy([&] {
        for (const std::string& text : texts) {
            EXPECT_EQ(services().readDocument(folder.write("f.xml", text).c_str()).isNull(), 1)
                << text;
            EXPECT_EQ(parse(text.c_str()).isNull(), 1) << text;
        }
        for (const char* narrow :
             {"<a>\xFF</a>", "<?xml version='1.0' encoding='no-such-encoding'?><a/>"})
            EXPECT_EQ(services().readDocument(folder.write("f.xml", narrow).c_str()).isNull(), 1);
        EXPECT_EQ(services().readDocument(folder.file("absent.xml").c_str()).isNull(), 1);
        EXPECT_EQ(services().readDocument(folder.file("").c_str()).isNull(), 1); // a folder
        EXPECT_EQ(services().readDocumentFromStringA(u"<a>\u0416</a>").isNull(), 1);
    });
    EXPECT_EQ(printed, "");
    EXPECT_EQ(services().getErrorStatus(), PelDOM::SUCCESS);
}

TEST(Reading, PrintsWhatIsThrown) {
    EXPECT_EQ(printedBy([] { EXPECT_EQ(parse("<?xml version='1.7'?><a/>").isNull(), 1); }),
              "A DOM error occured during parsing\n   DOMException code: 9\n");
    const PelString large(("<a>" + std::string(4000000, 'x') + "</a>").c_str());
    EXPECT_EQ(printedBy([&] {
                  PelString text = large;
                  PelXercesReader reader;
                  const xercesc::MemBufInputSource source(
                      reinterpret_cast<const XMLByte*>(text.getStringA()),
                      static_cast<XMLSize_t>(text.length()), "large");
                  largestAllocation = 1000000;
                  EXPECT_FALSE(reader.readSource(source));
                  largestAllocation = SIZE_MAX;
              }),
              "An error occured during parsing\n \n");
}

TEST(Reading, BuildsTheTreeThatTheTextDescribes) {
    const struct {
        const char* text;
        const char* tree;
    } cases[] = {
        {"<?xml version='1.0'?><!--c--><?p d?><a>1<![CDATA[2]]>3</a>", "#9(#8 #7 a(|1| #4 |3|))"},
        {"<a>\n <b/>\n</a>", "#9(a(|\n | b |\n|))"},
        {"<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b (#PCDATA)>]><a>\n <b> </b>\n</a>",
         "#9(#10 a(b(| |)))"},
        {"<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a k CDATA #IMPLIED><!ENTITY e 'x&#38;lt;y'>]><a "
         "k='&e;'>1&e;2</a>",
         "#9(#10 a k=x<y(|1x<y2|))"},
        {"<p:a xmlns:p='u' p:q='1'><:x/></p:a>", "#9(p:a p:q=1 xmlns:p=u(:x))"},
        // a second declaration of an attribute is only a warning
        {"<!DOCTYPE a [<!ELEMENT a EMPTY><!ATTLIST a k CDATA #IMPLIED><!ATTLIST a k CDATA "
         "#IMPLIED>]>"
         "<a/>",
         "#9(#10 a)"},
        {"<a>\xF0\x9F\x98\x80&#x1F600;\r\nz</a>", "#9(a(|\xF0\x9F\x98\x80\xF0\x9F\x98\x80\nz|))"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(show(parse(c.text)), c.tree) << c.text;
}

TEST(Reading, FindsTheEncodingOfNarrowText) {
    const char16_t latin[] = u"<?xml version='1.0' encoding='ISO-8859-1'?><a>\u00e9</a>";
    EXPECT_EQ(show(services().readDocumentFromStringA(latin)), "#9(a(|\xC3\xA9|))");
    EXPECT_EQ(show(services().readDocumentFromStringA(u"<a>\u00c3\u00a9</a>")),
              "#9(a(|\xC3\xA9|))");
    EXPECT_EQ(services().readDocumentFromStringA(u"<a>\u00e9</a>").isNull(), 1);
}

TEST(Reading, TakesWideTextForWhatItIs) {
    const std::u16string text = u"<a>\u00e9\u4e2d\U0001F600</a>";
    const std::string tree = "#9(a(|\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80|))";
    for (const char16_t* before : {u"", u"\uFEFF", u"<?xml version='1.0' encoding='UTF-8'?>",
                                   u"<?xml version='1.0' encoding='ISO-8859-1'?>",
                                   u"<?xml version='1.0' encoding='UTF-16'?>"})
        EXPECT_EQ(show(parse(PelString(before + text))), tree) << PelString(before);
    std::u16string swapped = u"\uFEFF" + text;
    for (char16_t& unit : swapped)
        unit = static_cast<char16_t>((unit << 8) | (unit >> 8));
    EXPECT_EQ(show(parse(PelString(swapped))), tree);
    EXPECT_EQ(parse(u"<a>\xD800</a>").isNull(), 1);
}

TEST(Reading, FindsFilesAndWhatTheyNameNearThem) {
    const ScratchFolder folder;
    folder.write("part \xC3\xA9.txt", "part");
    folder.write("a.dtd", "<!ELEMENT a ANY><!ENTITY d 'from the DTD'>");
    const std::string file = folder.write(
        "\xD1\x84 %20.xml", "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e SYSTEM 'part \xC3\xA9.txt'>"
                            "<!ENTITY u SYSTEM 'file://" +
                                folder.file("part%20%C3%A9.txt") + "'>]><a>&d;|&e;|&u;</a>");
    const std::string tree = "#9(#10 a(|from the DTD|part|part|))";
    EXPECT_EQ(show(services().readDocument(file.c_str())), tree);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.file(""));
    EXPECT_EQ(show(services().readDocument(u"\u0444 %20.xml")), tree);
    std::filesystem::current_path(before);
}

TEST(Reading, GivesIndependentTrees) {
    const PelDOMDocument first = services().readDocument(QRNDOM_SAMPLE);
    const PelDOMDocument second = services().readDocument(QRNDOM_SAMPLE);
    const std::string tree = show(second);
    first.getDocumentElement().setAttribute("name", "changed");
    EXPECT_NE(show(first), tree);
    EXPECT_EQ(show(second), tree);
}

TEST(Reading, AndWalkingAndDroppingADeepDocumentTakesNoStack) {
    constexpr std::size_t depth = 1000000;
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
        text += "<a>";
    for (std::size_t i = 0; i < depth; ++i)
        text += "</a>";
    PelDOMNode node = parse(text.c_str());
    std::size_t levels = 0;
    for (PelDOMNodeList children; node.getChildNodes(children), children.length() == 1; ++levels)
        children.item(0, node);
    EXPECT_EQ(levels, depth);
}

TEST(Reading, ManagesBigRealFiles) {
    const struct {
        const char* file;
        const char* name;
        int count;
    } cases[] = {{"/usr/share/mime/packages/freedesktop.org.xml", "mime-type", 500},
                 {"/usr/share/xml/iso-codes/iso_639_3.xml", "iso_639_3_entry", 7000}};
    for (const auto& c : cases) {
        if (!std::filesystem::exists(c.file))
            GTEST_SKIP() << c.file << " is not installed";
        PelDOMNodeList list;
        const PelDOMDocument document = services().readDocument(c.file);
        EXPECT_GT(document.getDocumentElement().getElementsByTagName(c.name, list), c.count);
    }
}

} // namespace
