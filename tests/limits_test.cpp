// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"
#include "read/PelXercesReader.h"
#include "read/scan/PelPlainScanner.h"
#include "support.h"
#include "xerces/engine/PelXercesFields.h"

#include <pthread.h>

static const PelXercesReadLimits::Bounds bounds;

using Name = std::function<std::string(std::size_t)>;

static std::string numbered(std::size_t number) {
    return std::to_string(number);
}

// Different names that the engine's hash does not tell apart.
static std::string alike(std::size_t number) {
    std::string name = "n";
    for (int i = 0; i < 10; ++i, number /= 3)
        name += std::string("AzBTC.").substr(number % 3 * 2, 2);
    return name;
}

// A piece so many times, with the repetition's number or name for $ in it, and the next one's for
// @.
static std::string repeat(std::size_t count, const std::string& piece,
                          const Name& name = numbered) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        for (const char c : piece)
            if (c == '$' || c == '@')
                all += name(c == '$' ? i : i + 1);
            else
                all += c;
    return all;
}

static std::string withSubset(const std::string& declarations,
                              const std::string& content = "<a/>") {
    return "<!DOCTYPE a [<!ELEMENT a ANY>" + declarations + "]>" + content;
}

static std::string choiceOf(std::size_t count) {
    return withSubset("<!ATTLIST a k (v" + repeat(count, "|v$") + ") #IMPLIED>");
}

static std::string modelOf(std::size_t nodes) {
    return withSubset("<!ELEMENT b (" + repeat(nodes - 1, "(") + "a?" + repeat(nodes - 1, ")?") +
                          ")>",
                      "<a><b/></a>");
}

static std::string namesOf(std::size_t count) {
    return "<r>" + repeat(count, "<a b$=''/>") + "</r>";
}

static std::string manyAlike(const std::string& piece) {
    return repeat(bounds.alikeNames + 1, piece, alike);
}

static std::string within(const std::string& content) {
    return "<a>" + content + "</a>";
}

// However slow the machine is.
static PelXercesReadLimits::Bounds unhurried() {
    PelXercesReadLimits::Bounds own;
    own.milliseconds = 1'000'000'000;
    return own;
}

// What a read by the engine says; nothing when it gives a document.
static std::string
refusal(const std::string& xml, const std::string& file = "",
        PelXercesReadLimits::Bounds own = unhurried(),
        PelXercesReadSettings::Method method = PelXercesReadSettings::Method::fastNodes) {
    PelXercesReadSettings settings;
    settings.method = method;
    settings.bounds = own;
    PelXercesReader reader(settings);
    const bool isRead(file.empty() ? reader.readText("text", xml.data(), xml.size())
                                   : reader.readFile(file.c_str()));
    const auto& messages = reader.getMessages();
    EXPECT_EQ(isRead, messages.empty() || !messages[0].isError);
    return isRead ? "" : messages.at(0).text.toUtf8();
}

static bool isScanned(const std::string& xml, const PelXercesReadLimits::Bounds& own) {
    return PelPlainScanner::read(xml.data(), xml.size(), PelPlainScanner::Encoding::utf8, u"Dummy",
                                 own)
               .document != nullptr;
}

// The scanner of plain documents reads what is within the bounds, and leaves the rest to the
// engine.
TEST(Limits, HoldForPlainDocumentsToo) {
    services().init();
    if (!PelXercesFields::areKnown())
        GTEST_SKIP() << "nothing is scanned where the engine's fields are not known";
    using Bounds = PelXercesReadLimits::Bounds;
    constexpr std::size_t most = SIZE_MAX;
    const std::string three = "<a b=''>" + std::string(1000, 'x') + "&amp;<c/></a>";
    const std::string large = "<a " + repeat(300, "k$='' ") + ">" + repeat(100, "<b/>") + "</a>";
    const std::string larger = "<a " + repeat(10000, "k$='' ") + ">";
    using Which = std::vector<std::size_t Bounds::*>;
    const Which unused = {&Bounds::workPerByte,      &Bounds::expansion,  &Bounds::expansionPerByte,
                          &Bounds::entityExpansions, &Bounds::modelParts, &Bounds::listCharacters,
                          &Bounds::reportCharacters};
    Which every = unused;
    every.insert(every.end(),
                 {&Bounds::work, &Bounds::memory, &Bounds::memoryPerByte, &Bounds::milliseconds,
                  &Bounds::nanosecondsPerByte, &Bounds::references, &Bounds::names});
    using Method = PelXercesReadSettings::Method;
    const auto expect = [](bool isRead, const Which& which, std::size_t value,
                           std::initializer_list<std::string> documents) {
        Bounds own = which.empty() ? unhurried() : Bounds();
        for (std::size_t Bounds::*const bound : which)
            own.*bound = value;
        for (const std::string& xml : documents) {
            EXPECT_EQ(isScanned(xml, own), isRead) << value << xml.substr(0, 80);
            EXPECT_EQ(refusal(xml, "", own, Method::plainScanner), refusal(xml, "", own))
                << value << xml.substr(0, 80);
        }
    };
    expect(false, {}, 0,
           {namesOf(bounds.names), within(manyAlike("<$/>")), within(manyAlike("<b $=''/>")),
            larger + repeat(bounds.work / 5000 + 1, "<b/>") + "</a>"});
    expect(true, {}, 0,
           {namesOf(bounds.names - 2), within(repeat(bounds.alikeNames - 1, "<$/>", alike)),
            within(repeat(20000, "<a$ b$=''/>")),
            larger + repeat(bounds.work / 5000 - 1, "<b/>") + "</a>"});
    expect(true, {&Bounds::names}, most, {namesOf(bounds.names)});
    expect(true, every, most, {three});
    expect(true, unused, 0, {three});
    const struct {
        std::size_t Bounds::*bound;
        std::size_t enough, tooLittle;
        std::string xml, refused;
    } rows[] = {{&Bounds::names, 3, 2, three, three},
                {&Bounds::work, 15150, 14849, large, large},
                {&Bounds::references, 1, 0, three, three},
                {&Bounds::memory, 3 << 20, 1 << 20, three, three},
                {&Bounds::memoryPerByte, 0, 0, three, within(std::string(300000, 'x'))},
                {&Bounds::milliseconds, 200, 199, three, within("")},
                {&Bounds::nanosecondsPerByte, 0, 0, three, within(std::string(4000000, 'x'))}};
    for (const auto& row : rows) {
        expect(true, {row.bound}, row.enough, {row.xml});
        expect(false, {row.bound}, row.tooLittle, {row.refused});
    }
}

// A refusal is silent but for its message; what is just within a bound is read.
TEST(Limits, NameWhatGrowsOutOfProportion) {
    const std::string block(20000, 'x');
    const std::string entity = "<!ENTITY e '" + block + "'>";
    const std::string defaults = "<!ATTLIST a b CDATA '" + block + "'>";
    const std::string many = "<!ATTLIST a" + repeat(10000, " k$ CDATA #IMPLIED") + ">";
    const std::string choice = "<!ATTLIST a k (v" + repeat(9000, "|v$") + ") #IMPLIED>";
    const std::string mixed =
        "<!ELEMENT b (#PCDATA" + repeat(3000, "|v$") + ")*><!ELEMENT v9 EMPTY>";
    const std::size_t most = bounds.expansion / block.size();
    const std::string text = "too much text from entities, default attributes or files read again";
    const std::string names = "too many names that the parser can hardly tell apart";
    const std::string references = "too many references to entities";
    const ScratchFolder folder;
    folder.write("part.txt", std::string(2000000, 'x'));
    for (int i = 0; i < 30; ++i) // one file by many names
        std::filesystem::create_symlink("part.txt", folder.file("part" + std::to_string(i)));
    const auto parts = [&](std::size_t count) {
        const std::string subset = repeat(count, "<!ENTITY e$ SYSTEM 'part$'>");
        return folder.write("f.xml", withSubset(subset, within(repeat(count, "&e$;"))));
    };
    const std::pair<std::string, std::vector<std::string>> rows[] = {
        {references,
         {withSubset("<!ENTITY % e0 ' '>" + repeat(18, "<!ENTITY % e@ '&#37;e$;&#37;e$;'>") +
                     "%e18;"),
          withSubset("<!ENTITY e0 ' '>" + repeat(18, "<!ENTITY e@ '&e$;&e$;'>") +
                     "<!ATTLIST a k CDATA '&e18;'>")}},
        {"too much memory",
         {withSubset(repeat(40000, "<!ENTITY e$ '&e@;'>") + "<!ENTITY e40000 ''>", within("&e0;")),
          withSubset("<!ENTITY e '" + repeat(500, "<a/>") + "'>", within(repeat(3300, "&e;"))),
          withSubset("<!ELEMENT b ((v|w)*,v," + repeat(20, "(v|w),") + "v)>", within("<b/>"))}},
        {text,
         {withSubset(entity, within(repeat(most * 2, "&e;"))),
          withSubset(entity + "<!ENTITY f ''><!ATTLIST a k CDATA ''>",
                     "<a k='" + repeat(most * 2, "&e;") + "'/>"),
          withSubset(defaults, within(repeat(most * 2, "<a/>")))}},
        {"",
         {withSubset(entity, within(repeat(most / 2, "&e;"))),
          withSubset(defaults, within(repeat(most / 2, "<a/>"))), namesOf(bounds.names - 2),
          choiceOf(bounds.listCharacters / 8), modelOf(bounds.modelParts - 1),
          within(repeat(bounds.alikeNames, "<$/>", alike)),
          withSubset("<!ATTLIST a k ID #IMPLIED l IDREFS #IMPLIED>",
                     within("<a l='" + repeat(1500, "x ") + "'/>" + repeat(1500, "<a l='x'/>") +
                            "<a k='x'/>")),
          withSubset(many, within(repeat(900, "<a/>"))),
          withSubset("<!ATTLIST a" + repeat(10000, " k$ CDATA ''") + ">"),
          withSubset(choice, within(repeat(2000, "<a k='v8999'/>"))),
          withSubset(mixed, within("<b>" + repeat(10000, "<v9/>") + "</b>")),
          withSubset("<!ELEMENT b (a?" + repeat(600, ",v$?") + ")>", within("<b/>"))}},
        {"too many declarations",
         {withSubset(repeat(bounds.names + 1, "<!NOTATION n$ SYSTEM 'n'>"))}},
        {"too many different names", {namesOf(bounds.names)}},
        {"too many values for an attribute", {choiceOf(bounds.listCharacters / 4)}},
        {"too large a content model", {modelOf(bounds.modelParts + 1), modelOf(1000000)}},
        {names,
         {within(manyAlike("<$/>")), within(manyAlike("<b $=''/>")),
          "<a " + manyAlike("$='' ") + "/>", withSubset(manyAlike("<!ELEMENT $ ANY>")),
          withSubset("<!ELEMENT b (a" + manyAlike("|$") + ")>"),
          withSubset(manyAlike("<!ENTITY $ ''>")), withSubset(manyAlike("<!ENTITY % $ ''>")),
          withSubset(manyAlike("<!NOTATION $ SYSTEM ''>")),
          withSubset("<!ATTLIST a" + manyAlike(" $ CDATA ''") + ">"),
          withSubset("<!ATTLIST a" + manyAlike(" $ CDATA #IMPLIED") + ">"),
          withSubset("<!ATTLIST a k ID #IMPLIED>", within(manyAlike("<a k='$'/>"))),
          withSubset("<!ATTLIST a k IDREFS #IMPLIED>", "<a k='" + manyAlike("$ ") + "'/>")}},
        {"too much work for the attributes of elements",
         {withSubset(many, within(repeat(9000, "<a/>"))),
          within("<b " + repeat(40000, "k$='' ") + "/>" + repeat(150000, "<b c=''/>"))}},
        {"too much work for declarations",
         {withSubset("<!ATTLIST a" + repeat(60000, " k$ CDATA ''") + ">")}},
        {"too much work for checking attribute values",
         {withSubset(choice, within(repeat(20000, "<a k='v8999'/>"))),
          withSubset(choice, "<a k='" + repeat(20000, "v8999 ") + "'/>"),
          withSubset(repeat(10, "<!ATTLIST b$ k (v" + repeat(7000, "|w$") + ") #IMPLIED>"))}},
        {"too much work for checking content",
         {withSubset(mixed, within("<b>" + repeat(150000, "<v9/>") + "</b>"))}},
        {"too much work for content models",
         {withSubset("<!ELEMENT b (a?" + repeat(3300, ",v$?") + ")>", within("<b/>")),
          withSubset("<!ELEMENT b (" + repeat(3200, "(") + "v" + repeat(3200, "|v$") +
                         repeat(3200, ")*") + ")>",
                     within("<b/>")),
          withSubset("<!ELEMENT b " + repeat(3200, "(") + "x*" + repeat(3200, ",x*)") + ">",
                     within("<b/>")),
          withSubset("<!ELEMENT b (x" + repeat(3000, "|n$" + std::string(999, 'x')) + ")>",
                     within("<b/>"))}},
        {"too much work for finding files",
         {withSubset("<!ENTITY e SYSTEM '" + repeat(10000, "b/../") + "'>", within("&e;")),
          withSubset("<!ENTITY e SYSTEM '" + repeat(20000, "%41") + "'>", within("&e;"))}},
        {"too many errors", {withSubset(repeat(90000, "<!ATTLIST a k CDATA ''>"))}},
    };
    testing::internal::CaptureStderr();
    for (const auto& [says, documents] : rows)
        for (const std::string& xml : documents)
            EXPECT_EQ(refusal(xml), says) << &xml - documents.data() << xml.substr(0, 80);
    EXPECT_EQ(refusal("", parts(30)), text);
    EXPECT_EQ(refusal("", parts(10)), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Limits, EndReadsThatTakeTooLongFromWhereverTheyAre) {
    PelXercesReadLimits::Bounds own;
    own.milliseconds = 5;
    own.nanosecondsPerByte = 0;
    for (const std::string& text :
         {within(repeat(1000000, "<b/>")), within(repeat(1000000, "x<!---->")),
          "<a " + repeat(200000, "b$='' ") + "/>", withSubset(repeat(90000, "<!ELEMENT e$ ANY>")),
          withSubset("<!ELEMENT b (a" + repeat(3000, ",x$?") + ")>", within("<b/>"))})
        EXPECT_EQ(refusal(text, "", own), "too much processor time") << text.substr(0, 40);
    const std::string large = within(repeat(500000, "<b/>"));
    const double begin = PelPlatform::processorTime();
    EXPECT_EQ(refusal(large), "");
    own.milliseconds = static_cast<std::size_t>(4000 * (PelPlatform::processorTime() - begin));
    EXPECT_EQ(refusal(large, "", own), "") << "within four times as long";
}

// The engine takes memory where it clears up, and a failure there would end the process.
TEST(Limits, NeverEndAReadWhereTheEngineClearsUp) {
    const std::string models =
        withSubset(repeat(60000, "<!ELEMENT e (a,b)>") + repeat(3000, "<!ELEMENT e$ (a,b)>"));
    PelXercesReadSettings settings;
    settings.validation = PelDOMReader::NEVER;
    settings.bounds.nanosecondsPerByte = settings.bounds.memoryPerByte = 0;
    for (std::size_t step = 1; step <= 20; ++step) {
        const bool isTime = step % 2 == 0;
        settings.bounds.milliseconds = isTime ? 4 * step : 1'000'000;
        settings.bounds.memory = isTime ? 1'000'000'000 : 200'000 * step + step;
        PelXercesReader reader(settings);
        const bool isRead(reader.readText("text", models.data(), models.size()));
        const PelString says = isRead ? PelString() : reader.getMessages().at(0).text;
        const char* const refused = isTime ? "too much processor time" : "too much memory";
        EXPECT_EQ(says, isRead ? "" : refused) << step;
    }
}

// The engine recurses over a model where it can be large enough to overflow a small stack, and over
// groups in groups while it reads them. Whatever is allowed, none overflows.
TEST(Limits, KeepModelsWithinTheStackOfTheirThread) {
    const std::string groups =
        withSubset("<!ELEMENT b (a" + repeat(400, ",(a") + std::string(401, ')') + ">");
    const std::string few =
        withSubset("<!ELEMENT b (a" + repeat(40, ",(a") + std::string(41, ')') + ">");
    const std::string tooLarge = "too large a content model for the stack of this thread";
    const struct {
        std::size_t stack, parts;
        std::string xml, says;
    } rows[] = {// small stacks first: larger ones may be taken for them
                {64, bounds.modelParts, groups, tooLarge},
                {64, SIZE_MAX, few, ""},
                {2048, bounds.modelParts, modelOf(1000), ""},
                {2048, bounds.modelParts, modelOf(bounds.modelParts - 1), tooLarge},
                {2048, SIZE_MAX, modelOf(60000), tooLarge},
                {16384, SIZE_MAX - 1, modelOf(15000), ""}};
    for (const auto& row : rows) {
        std::string says;
        std::function<void()> work = [&] {
            PelXercesReadLimits::Bounds own = unhurried();
            own.modelParts = row.parts;
            says = refusal(row.xml, "", own);
        };
        const auto run = [](void* given) -> void* {
            (*static_cast<std::function<void()>*>(given))();
            return nullptr;
        };
        pthread_attr_t small;
        pthread_t thread;
        pthread_attr_init(&small);
        ASSERT_EQ(pthread_attr_setstacksize(&small, row.stack * 1024), 0);
        ASSERT_EQ(pthread_create(&thread, &small, run, &work), 0);
        pthread_join(thread, nullptr);
        EXPECT_EQ(says, row.says) << &row - rows;
    }
}

TEST(Limits, LetLargeDocumentsThrough) {
    const std::string large(20000000, 'x');
    for (const std::string& text :
         {"<a>" + large + "</a>", "<a b='" + large + "'/>", "<" + large + "/>",
          "<a><!--" + large + "--><?p " + large + "?></a>", "<a " + repeat(10000, "b$='' ") + "/>",
          "<a>" + repeat(1000000, "<b/>") + "</a>",
          repeat(1000000, "<a>") + repeat(1000000, "</a>")})
        EXPECT_EQ(services().readDocumentFromStringA(text.c_str()).isNull(), 0)
            << text.substr(0, 20);
}

// One of ICU's converters goes through the engine's array of places twice as fast as it should.
TEST(Encodings, CannotOverrunWhatTheEngineHasForThem) {
    const ScratchFolder folder;
    const std::string text = "<?xml version='1.0' encoding='gsm-03.38-2009'?><a>\x1b<" +
                             std::string(60000, 'a') + "</a>";
    const std::string words = "[" + std::string(60000, 'a');
    folder.write("part.xml", text);
    EXPECT_EQ(show(readFile(folder.file("part.xml"))), "#9(a(|" + words + "|))");
    const std::string entity = withSubset("<!ENTITY e SYSTEM 'part.xml'>", within("&e;"));
    EXPECT_EQ(show(readFile(folder.write("whole.xml", entity))), "#9(#10 a(a(|" + words + "|)))");
}
