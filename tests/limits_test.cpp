// SPDX-License-Identifier: MIT
#include "reading/PelXercesReadLimits.h"
#include "support.h"

using Limits = PelXercesReadLimits;

// A piece so many times, with the number of the repetition for $ in it, and the next one's for @.
static std::string repeat(std::size_t count, const std::string& piece) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        for (const char c : piece)
            if (c == '$' || c == '@')
                all += std::to_string(c == '$' ? i : i + 1);
            else
                all += c;
    return all;
}

static std::string withSubset(const std::string& subset, const std::string& content = "<a/>") {
    return "<!DOCTYPE a [<!ELEMENT a ANY>" + subset + "]>" + content;
}

static std::string choiceOf(std::size_t count) {
    return withSubset("<!ATTLIST a k (v" + repeat(count, "|v$") + ") #IMPLIED>");
}

static std::string modelOf(std::size_t nodes) {
    return withSubset("<!ELEMENT b (" + repeat(nodes - 1, "(") + "a?" + repeat(nodes - 1, ")?") + ")>");
}

static std::string namesOf(std::size_t count) { return "<r>" + repeat(count, "<a b$=''/>") + "</r>"; }

// A refusal is silent; what is just within a bound is read.
TEST(Limits, RefuseWhatGrowsOutOfProportion) {
    const std::string block(20000, 'x');
    const std::string entity = "<!ENTITY e '" + block + "'>";
    const std::string defaults = "<!ATTLIST a b CDATA '" + block + "'>";
    const std::size_t most = Limits::freeExpansion / block.size();
    const ScratchFolder folder;
    for (const char* const name : {"part.txt", "again.txt"}) folder.write(name, std::string(2000000, 'x'));
    const auto readParts = [&](std::size_t count) {
        const std::string text = withSubset("<!ENTITY p SYSTEM 'part.txt'><!ENTITY q SYSTEM './again.txt'>",
            "<a>&q;" + repeat(count, "&p;") + "</a>");
        return readFile(folder.write("f.xml", text)).isNull();
    };
    testing::internal::CaptureStderr();
    for (const std::string& text :
        {withSubset("<!ENTITY % e0 ' '>" + repeat(18, "<!ENTITY % e@ '&#37;e$;&#37;e$;'>") + "%e18;"),
            withSubset(
                "<!ENTITY e0 ' '>" + repeat(18, "<!ENTITY e@ '&e$;&e$;'>") + "<!ATTLIST a k CDATA '&e18;'>"),
            withSubset(repeat(40000, "<!ENTITY e$ '&e@;'>") + "<!ENTITY e40000 ''>", "<a>&e0;</a>"),
            withSubset(entity, "<a>" + repeat(most * 2, "&e;") + "</a>"),
            withSubset(entity + "<!ATTLIST a k CDATA ''>", "<a k='" + repeat(most * 2, "&e;") + "'/>"),
            withSubset(defaults, "<a>" + repeat(most * 2, "<a/>") + "</a>"),
            withSubset(repeat(20000, "<!ATTLIST a k$ CDATA ''>")),
            "<!DOCTYPE a [<!ELEMENT a ((a|b)*,a," + repeat(20, "(a|b),") + "a)><!ELEMENT b ANY>]><a><a/></a>",
            withSubset(repeat(Limits::maxNames + 1, "<!NOTATION n$ SYSTEM 'n'>")), namesOf(Limits::maxNames),
            choiceOf(Limits::maxChoice / 4), modelOf(Limits::maxModelNodes + 1), modelOf(1000000)})
        EXPECT_EQ(parse(text.c_str()).isNull(), 1) << text.substr(0, 80);
    EXPECT_EQ(readParts(30), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    for (const std::string& text : {withSubset(entity, "<a>" + repeat(most / 2, "&e;") + "</a>"),
             withSubset(defaults, "<a>" + repeat(most / 2, "<a/>") + "</a>"), namesOf(Limits::maxNames / 2),
             choiceOf(Limits::maxChoice / 8), modelOf(Limits::maxModelNodes - 1)})
        EXPECT_EQ(parse(text.c_str()).isNull(), 0) << text.substr(0, 80);
    EXPECT_EQ(readParts(10), 0);
}

TEST(Limits, LetLargeDocumentsThrough) {
    const std::string large(20000000, 'x');
    for (const std::string& text : {"<a>" + large + "</a>", "<a b='" + large + "'/>", "<" + large + "/>",
             "<a><!--" + large + "--><?p " + large + "?></a>", "<a " + repeat(10000, "b$='' ") + "/>",
             "<a>" + repeat(1000000, "<b/>") + "</a>", repeat(1000000, "<a>") + repeat(1000000, "</a>")})
        EXPECT_EQ(services().readDocumentFromStringA(text.c_str()).isNull(), 0) << text.substr(0, 20);
}
