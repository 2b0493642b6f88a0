// SPDX-License-Identifier: MIT
#include "support.h"
#include "threads.h"

#include <sstream>

namespace {

using namespace std::string_literals;
using Reader = PelDOMReader;

/// In a folder of its own, with a file, an entity, a DTD and another folder in it.
class Reading : public testing::Test {
protected:
    Reading() {
        std::filesystem::create_directory(scratch.file("sub"));
        std::filesystem::current_path(folder);
        write("a.xml", "<a>\n <b></c></a>");
        write("inner.ent", "inner");
        write("sub/outer.ent", "(&e;)");
        write("a.dtd", "<!ELEMENT a ANY><!ENTITY f 'from the DTD'>");
        write("list.dtd", "<!ELEMENT a ANY><!ENTITY % p \"b CDATA '&x;'\"><!ATTLIST a %p;>");
        testing::internal::CaptureStderr();
    }

    ~Reading() override {
        std::filesystem::current_path("/");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }

    static void write(const char* name, const std::string& bytes) { std::ofstream(name) << bytes; }

    /// The document in one line, or "null", then each message.
    static std::string read(Reader& reader, const std::string& bytes) {
        return told(reader, reader.readBytes(bytes.data(), bytes.size(), "d"));
    }

    static std::string told(const Reader& reader, const PelDOMDocument& document) {
        std::string result = show(rootOf(document));
        for (const PelDOMMessage& message : reader.getMessages())
            result += (message.isError ? "; E " : "; W ") + message.toLine().toUtf8();
        return result;
    }

    const ScratchFolder scratch;
    const std::string& folder = scratch.path;
};

TEST_F(Reading, TellsEachFaultAtItsPlaceInLinesAndCharacters) {
    const std::string smile = "\xF0\x9F\x98\x80";
    const struct {
        std::string bytes, message;
    } rows[] = {
        {"<a>\n " + smile + smile + "<b>x</c></a>", "2:10: expected end of tag 'b'"},
        {"<a>" + smile + "\r<b>x</c></a>", "2:7: expected end of tag 'b'"},
        {utf16Bytes(u"\uFEFF<a>\r\n\U0001F600<b>\U0001F600</c></a>"),
         "2:8: expected end of tag 'b'"},
        {"<?xml version='1.0' encoding='GB18030'?>\n<a>\x94\x39\xDA\x33<b></c></a>",
         "2:10: expected end of tag 'b'"},
        {"", "1:1: this is not XML: a document begins with a declaration or an element"},
        {"<a>\n" + repeated("<row>some text</row>\n", 5000) + smile + "\xC3(</a>",
         "5002:2: code point 0xC3 is invalid for 'UTF-8' encoding"},
        {"<a>" + repeated("x\n", 100000) + "</a>\xE2\x82", "100001:5: invalid multi-byte sequence"},
        {"\xFF\xFE<\0a\0>\0\n\0\0\xDC"s,
         "2:1: code point 0xDC00 is invalid for 'UTF-16LE' encoding"},
        {"<?xml version='1.0' encoding='Shift_JIS'?>\n<a>\x82\xA0\x82</a>",
         "2:5: code point 0x82 is invalid for 'Shift_JIS' encoding"},
        {"<a/>\n\0x"s, "2:1: code point 0x0 is invalid for 'UTF-8' encoding"},
        {"<?xml version='1.7'?><a/>", "1:22: only the versions 1.0 and 1.1 of XML are read"},
        {"<?xml version='1.0' encoding='nope-8'?><a/>",
         "1:39: the encoding 'nope-8' is unknown or not that of the bytes"},
        {"<!DOCTYPE a SYSTEM 'gone.dtd'>\n<a/>", "1:31: gone.dtd: no such file"},
        {"<!DOCTYPE a SYSTEM 'no\tsuch\nfile'>\n<a/>", "2:7: no such file: no such file"},
        {"<!DOCTYPE a SYSTEM 'sub'>\n<a/>", "1:26: sub: is a folder"},
        {"<!DOCTYPE a SYSTEM '/dev/null'>\n<a/>", "1:32: /dev/null: is no regular file"},
        {"<!DOCTYPE a SYSTEM 'http://x.test/a.dtd'>\n<a/>",
         "1:42: http://x.test/a.dtd: an address on the network is not read"},
        {"<!DOCTYPE a SYSTEM 'urn:x:a.dtd'>\n<a/>",
         "1:34: urn:x:a.dtd: an address of this kind is not read"},
        {"<!DOCTYPE a SYSTEM 'file:///%00'>\n<a/>", "1:34: file:///%00: no file has such a name"},
        {"<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e 'e'>]>\n<a>\n" + repeated("&e;", 50'001) + "</a>",
         "3:150004: parser has encountered more than '50000' entity expansions in the document; "
         "this is the limit imposed by the application"},
    };
    for (const auto& row : rows) {
        if (areRemoteRead && row.bytes.find("http:") != std::string::npos)
            continue;
        Reader reader;
        reader.setLimit(Reader::TIME, SIZE_MAX); // however slow the machine is
        EXPECT_EQ(read(reader, row.bytes), "null; E d:" + row.message) << row.bytes.substr(0, 80);
    }
}

TEST_F(Reading, NamesFilesAsTheCallerAndTheDocumentNameThem) {
    write("sub/d.xml", "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM 'e.ent'>]>\n<a>&e;</a>");
    write("sub/e.ent", "\n\xF0\x9F\x98\x80&x;");
    Reader reader;
    const auto file = [&](const char* name) { return told(reader, reader.readFile(name)); };
    EXPECT_EQ(file("a.xml"), "null; E a.xml:2:7: expected end of tag 'b'");
    EXPECT_EQ(file("./sub/../a.xml"), "null; E ./sub/../a.xml:2:7: expected end of tag 'b'");
    EXPECT_EQ(file("sub/d.xml"), "null; E sub/e.ent:2:5: entity 'x' not found");
    for (const std::string& name : {folder + "/sub/e.ent", "file://" + folder + "/sub/e.ent"}) {
        write("sub/d.xml",
              "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM '" + name + "'>]>\n<a>&e;</a>");
        EXPECT_EQ(file("sub/d.xml"), "null; E " + name + ":2:5: entity 'x' not found");
    }
    for (const std::string name : {"part:1", "1:1", ":"}) { // no address if there is such a file
        write(("sub/" + name).c_str(), "&x;");
        write("sub/d.xml",
              "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM '" + name + "'>]>\n<a>&e;</a>");
        EXPECT_EQ(file("sub/d.xml"), "null; E sub/" + name + ":1:4: entity 'x' not found");
    }
    EXPECT_EQ(file("gone.xml"), "null; E gone.xml:0:0: no such file");
    EXPECT_EQ(file("sub"), "null; E sub:0:0: is a folder");
    EXPECT_EQ(file(""), "null; E :0:0: there is nothing to read");

    reader.setBase("sub/other.xml");
    EXPECT_EQ(read(reader, "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>"),
              "null; E sub/e.ent:2:5: entity 'x' not found");
    EXPECT_EQ(PelDOMUtilites::getLastReadMessage(), PelString()); // the services' own
}

// Places in files are told in characters as well, and of what lies behind them nothing is read.
TEST_F(Reading, LooksForPlacesNoFurtherThanItHasTo) {
    const auto bytesRead = [] {
        std::size_t count = 0;
        std::ifstream("/proc/self/io").ignore(std::numeric_limits<std::streamsize>::max(), ' ') >>
            count;
        return count;
    };
    Reader reader;
    write("large", "<!e" + repeated("x", 8'000'000));
    const std::size_t before = bytesRead();
    EXPECT_EQ(read(reader, "<!DOCTYPE a SYSTEM 'large'><a/>"),
              "null; E large:1:3: markup declaration expected");
    EXPECT_LT(bytesRead() - before, 1'000'000u);

    const std::string smile = "\xF0\x9F\x98\x80", line = repeated(smile, 3'000) + "x\n",
                      lines = repeated(line, 9);
    write("e", lines + repeated(smile, 3'000) + "<e/>&f;" + lines + smile + "<e/>");
    write("f", lines + smile + "<f/>");
    const std::string f = "; E f:10:4: no declaration found for element 'f'";
    const std::string e = "; E e:10:3003: no declaration found for element 'e'" + f +
                          "; E e:19:4: no declaration found for element 'e'";
    const std::string told =
        read(reader, "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM 'e'><!ENTITY f SYSTEM 'f'>]>"
                     "<a>&e;&f;&e;</a>");
    EXPECT_EQ(told, "null" + e + f + e);
}

TEST_F(Reading, ReadsAsItIsSet) {
    const auto none = [](Reader&) {};
    const auto never = [](Reader& reader) { reader.setValidation(Reader::NEVER); };
    const auto always = [](Reader& reader) { reader.setValidation(Reader::ALWAYS); };
    const auto noDTD = [=](Reader& reader) { never(reader), reader.setExternalDTD(false); };
    const auto noEntities = [=](Reader& reader) {
        never(reader), reader.setExternalEntities(false);
    };
    const auto refuse = [](Reader& reader) { reader.setDocumentType(Reader::REFUSE); };
    const auto spaces = [](Reader& reader) { reader.setKeepIgnorableWhitespace(true); };
    const auto one = [](Reader& reader) { reader.setMaxMessages(1); };
    const auto two = [](Reader& reader) { reader.setMaxMessages(2); };
    const auto quiet = [](Reader& reader) { reader.setMaxMessages(0); };
    const std::string entities = "<!DOCTYPE a [<!ENTITY e SYSTEM 'inner.ent'>]><a>&e;</a>";
    const std::string page = "<!DOCTYPE a PUBLIC 'p' 'http://x.test/a.dtd'><a/>";
    const std::string outside =
        "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e SYSTEM 'inner.ent'>]><a>&f;</a>";
    const std::string model = "<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b EMPTY>]><a> <b/> </a>";
    const std::string wrong =
        "<!DOCTYPE a [<!ELEMENT a EMPTY><!ATTLIST a b CDATA #REQUIRED>]><a><c/><d/></a>";
    const std::string gone = "null; W d:1:31: gone.dtd is left out, since it cannot be read";
    const std::string missing = "; E d:1:67: missing required attribute 'b'";
    const std::string unknown = "; E d:1:69: no declaration found for element 'c'";
    const struct {
        std::function<void(Reader&)> set;
        std::string bytes, told;
    } rows[] = {
        {none, entities, "null; E d:1:48: no declaration found for element 'a'"},
        {never, entities, "a(|inner|)"},
        {noDTD, entities, "a; W d:1:52: inner.ent is not read, as it was set"},
        {noEntities, entities, "a; W d:1:52: inner.ent is not read, as it was set"},
        {never, outside, "a(|from the DTD|)"},
        {noDTD, "<!DOCTYPE a SYSTEM 'a.dtd'><a/>", "a; W d:1:28: a.dtd is not read, as it was set"},
        {noEntities, outside,
         "null; W d:1:61: a.dtd is not read, as it was set; E d:1:67: entity 'f' not found"},
        {never, "<!DOCTYPE a [<!ENTITY e 'e'>]><a>&x;</a>", "null; E d:1:37: entity 'x' not found"},
        {never, "<!DOCTYPE a SYSTEM 'gone.dtd'><a/>",
         "a; W d:1:31: gone.dtd is left out, since it cannot be read"},
        {never, "<!DOCTYPE a [<!ENTITY e SYSTEM 'gone.ent'>]><a>&e;</a>",
         "null; E d:1:51: gone.ent: no such file"},
        {never, "<!DOCTYPE a SYSTEM 'urn:x:a.dtd'><a/>",
         "a; W d:1:34: urn:x:a.dtd is left out, since it cannot be read"},
        {never, "<!DOCTYPE a SYSTEM 'gone.dtd'><a b='5&nbsp;&euro;'/>",
         gone + "; E d:1:44: entity 'nbsp' not found"},
        {never, "<!DOCTYPE a [%p;]><a b='&x;'/>", "null; E d:1:28: entity 'x' not found"},
        {never,
         "<!DOCTYPE a SYSTEM 'gone.dtd' [<!ENTITY e 'e'><!ATTLIST a b CDATA '&e;&lt;'>]><a "
         "c='&e;'/>",
         "a b=e< c=e; W d:1:79: gone.dtd is left out, since it cannot be read"},
        {never, "<!DOCTYPE a SYSTEM 'gone.dtd' [<!ATTLIST a b CDATA 'd&nbsp;e'>]><a/>",
         "null; E d:1:60: entity 'nbsp' not found"},
        {none, "<!DOCTYPE a SYSTEM 'a.dtd' [<!ATTLIST a b CDATA 'd&nbsp;e'>]><a/>",
         "null; E d:1:57: entity 'nbsp' not found"},
        {never, "<!DOCTYPE a SYSTEM 'list.dtd'><a/>",
         "null; E list.dtd:1:61: entity 'x' not found"},
        {none, "<!DOCTYPE a SYSTEM 'a.dtd' [<!ATTLIST a b CDATA ''>]><a>&x;&y;</a>",
         "null; E d:1:60: entity 'x' not found; E d:1:63: entity 'y' not found"},
        {always, "<a/>", "null; E d:1:3: no declaration found for element 'a'"},
        {spaces, model, "a(| | b | |)"},
        {refuse, "<a/>", "a"},
        {refuse, page, "null; E d:1:45: documents with a document type are refused, as it was set"},
        {refuse, utf16Bytes(u"\uFEFF<!DOCTYPE a><a/>"),
         "null; E d:1:13: documents with a document type are refused, as it was set"},
        {none, wrong,
         "null" + missing + unknown + "; E d:1:73: no declaration found for element 'd'" +
             "; E d:1:79: element 'c' is not allowed for content model 'EMPTY'"},
        {two, wrong, "null" + missing + unknown},
        {quiet, wrong, "null"},
        {one, "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a b CDATA '' b CDATA ''>]><a/><a/>",
         "null; E d:1:70: only comments and processing instructions may follow the root element"},
        {none, "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a b CDATA ''><!ATTLIST a b CDATA ''>]><a/>",
         "a b=; W d:1:66: attribute 'b' has already been declared for element 'a'"},
    };
    for (const auto& row : rows) {
        if (areRemoteRead && row.bytes.find("http:") != std::string::npos)
            continue;
        Reader reader, assigned;
        row.set(reader);
        EXPECT_EQ(read(reader, row.bytes), row.told) << row.bytes;
        read(assigned, "<");
        assigned = reader;
        assigned = *&assigned;
        Reader copy(reader);
        for (Reader* const other : {&copy, &assigned}) {
            EXPECT_EQ(told(*other, PelDOMDocument()), "null") << "messages are not copied";
            EXPECT_EQ(read(*other, row.bytes), row.told) << row.bytes;
        }
    }
}

TEST_F(Reading, KeepsToEachLimitThatIsSet) {
    const std::string dtd =
        "<!DOCTYPE a [<!ELEMENT a ANY><!ELEMENT b (a,a?)><!ATTLIST a k (one|two) 'one'>"
        "<!ENTITY f 'longer than e'><!ENTITY e 'eeeeeeeeee'>]><a>&e;&e;<a/></a>";
    const struct {
        Reader::Limit limit, other;
        std::size_t least; // with which the document is read, where that is known
        std::string bytes, message;
    } rows[] = {
        {Reader::WORK, Reader::WORK_PER_BYTE, 0, dtd, "too much work for"},
        {Reader::MEMORY, Reader::MEMORY_PER_BYTE, 0, dtd, "too much memory"},
        {Reader::TIME, Reader::TIME_PER_BYTE, 0, "<a>" + repeated("<a/>", 500'000) + "</a>",
         "too much processor time"},
        {Reader::EXPANSION, Reader::EXPANSION_PER_BYTE, 26, dtd,
         "too much text from entities, default attributes or files read again"},
        {Reader::ENTITY_EXPANSIONS, Reader::ENTITY_EXPANSIONS, 2, dtd,
         "parser has encountered more than '1'"},
        {Reader::REFERENCES, Reader::REFERENCES, 3, dtd, "too many references to entities"},
        {Reader::NAMES, Reader::NAMES, 3,
         "<?xml version='1.0' encoding='ISO-8859-1'?><a a='' b=''><b/><c/></a>",
         "too many different names"},
        {Reader::NAMES, Reader::NAMES, 2, "<a b=''/>", "too many different names"},
        {Reader::NAMES, Reader::NAMES, 2, "<!DOCTYPE a [<!ELEMENT a ANY><!ELEMENT b ANY>]><a/>",
         "too many declarations"},
        {Reader::MODEL_PARTS, Reader::MODEL_PARTS, 4, dtd, "too large a content model"},
        {Reader::LIST_CHARACTERS, Reader::LIST_CHARACTERS, 7, dtd,
         "too many values for an attribute"},
        {Reader::MESSAGE_CHARACTERS, Reader::MESSAGE_CHARACTERS, 0, dtd + "<", "too many errors"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        Reader reader;
        const std::size_t first = row.least > 0 ? row.least - 1 : 1;
        EXPECT_GT(reader.getLimit(row.limit), 1u);
        reader.setLimit(row.other, 0);
        reader.setLimit(row.limit, first);
        EXPECT_EQ(reader.getLimit(row.limit), first);
        const std::string refused = read(reader, row.bytes);
        EXPECT_EQ(refused.substr(0, 4), "null");
        EXPECT_PRED2(contains, refused, row.message) << refused;
        if (row.least > 0) {
            reader.setLimit(row.limit, row.least);
            EXPECT_EQ(read(reader, row.bytes).find(row.message), std::string::npos);
        }
        reader.setLimit(row.other, SIZE_MAX);
        reader.setLimit(row.limit, SIZE_MAX);
        EXPECT_EQ(read(reader, row.bytes).find(row.message), std::string::npos);
    }
}

TEST_F(Reading, ReadsStreamsToTheirEnd) {
    const std::string bytes =
        "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9" + repeated("x", 200'000) + "</a>";
    Reader reader;
    std::istringstream stream(bytes);
    const PelDOMDocument document = reader.readStream(stream, "s");
    EXPECT_EQ(rootOf(document).getTextContent().toUtf8(), "\xC3\xA9" + repeated("x", 200'000));
    EXPECT_EQ(told(reader, reader.readStream(stream, "s")),
              "null; E s:0:0: the stream cannot be read");

    struct Broken : std::streambuf {
        int_type underflow() override { throw std::runtime_error("cut off"); }
    } broken;
    std::istream cutOff(&broken);
    EXPECT_EQ(told(reader, reader.readStream(cutOff, "c")),
              "null; E c:0:0: the stream cannot be read");
    std::istringstream strict("<a/>");
    strict.exceptions(std::ios_base::eofbit);
    EXPECT_EQ(told(reader, reader.readStream(strict, "s")), "a");
}

TEST_F(Reading, WorksInSeveralThreadsAndBesideTheServices) {
    inFourThreads([](std::size_t) {
        Reader reader;
        for (int round = 0; round < 50; ++round) {
            EXPECT_EQ(read(reader, "<!DOCTYPE a SYSTEM 'a.dtd'><a>&f;</a>"), "a(|from the DTD|)");
            EXPECT_EQ(read(reader, "<a>"),
                      "null; E d:1:4: input ended before all started tags were ended; "
                      "last tag started is 'a'");
        }
    });
    Reader reader;
    PelDOMDocument document = reader.readBytes("<a/>", 4, "d");
    services().init();
    services().terminate();
    EXPECT_EQ(read(reader, "<b/>"), "b");
    EXPECT_EQ(show(rootOf(document)), "a");
}

} // namespace
