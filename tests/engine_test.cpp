// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/engine/PelXercesFields.h"
#include "xerces/engine/PelXercesLayoutCheck.h"

#include <xercesc/util/XercesVersion.hpp>

#include <algorithm>
#include <cstring>
#include <functional>

namespace {

using Fields = PelXercesFields;
using Trial = PelXercesLayoutCheck;

struct Engine : testing::Test {
    static void SetUpTestSuite() { services().init(); }
    static void TearDownTestSuite() { services().terminate(); }
};

TEST_F(Engine, IsKnownWhereItWasTried) {
#ifdef QRNDOM_ENGINE_FIELDS
    EXPECT_EQ(Fields::areKnown(), Fields::isKnownRelease);
#else
    EXPECT_FALSE(Fields::areKnown());
#endif
    services().terminate(); // as a program that has not started it
    const PelString said = PelDOMUtilites::describeEngine();
    services().init();
    EXPECT_EQ(said.find("interface alone") < 0, Fields::areKnown()) << said;
    EXPECT_EQ(said.find("Xerces-C++ " XERCES_FULLVERSIONDOT ", "), 0) << said;
}

// Each is an engine that keeps something in another way.
TEST_F(Engine, IsFoundOutWhenItsNodesAreOthers) {
    if (!Fields::isKnownRelease)
        GTEST_SKIP() << "this release's nodes are not expected to be as they are tried";
    static xercesc::DOMNode* const wild = reinterpret_cast<xercesc::DOMNode*>(16);
    const auto aText = [](Trial& t) {
        return static_cast<xercesc::DOMTextImpl*>(t.document.createTextNode(u"four"));
    };
    const auto bufferOf = [](Trial& t) -> Fields::Buffer& {
        return *reinterpret_cast<Fields::Buffer*>(Fields::bufferOf(*t.comment));
    };
    const auto listOf = [](Trial& t) -> Fields::List& {
        return *reinterpret_cast<Fields::List*>(Fields::listOf(*Fields::attributesOf(*t.parent)));
    };
    const auto nameOf = [](Trial& t) -> Fields::Name& {
        return *const_cast<Fields::Name*>(reinterpret_cast<const Fields::Name*>(
            reinterpret_cast<const char*>(t.parent->getTagName()) - offsetof(Fields::Name, fString)));
    };
    const std::pair<const char*, std::function<void(Trial&)>> others[] = {
        // where nodes lie
        {"document", [](Trial& t) { t.owner.memory.blocks[0].size += 8; }},
        {"nodes' memory",
            [](Trial& t) {
                std::fill(t.owner.memory.blocks.begin() + 1, t.owner.memory.blocks.end(),
                    PelXercesZeroedDocument::Memory::Block());
            }},
        {"element's size", [](Trial& t) { t.element = t.parent; }},
        {"attribute's size",
            [](Trial& t) {
                t.attribute = static_cast<xercesc::DOMAttrImpl*>(t.document.createAttribute(u"n"));
            }},
        {"text's size", [=](Trial& t) { t.text = aText(t); }},
        {"defaults' place", [](Trial& t) { Fields::defaultsOf(*t.element) = Fields::defaultsOf(*t.parent); }},
        {"attributes' place",
            [](Trial& t) { Fields::attributesOf(*t.element) = Fields::attributesOf(*t.parent); }},
        {"text's buffer", [](Trial& t) { Fields::bufferOf(*t.text) = Fields::bufferOf(*t.comment); }},
        {"comment's buffer", [](Trial& t) { Fields::bufferOf(*t.comment) = nullptr; }},
        {"section's buffer", [](Trial& t) { Fields::bufferOf(*t.section) = nullptr; }},
        {"instruction's buffer", [](Trial& t) { Fields::bufferOf(*t.instruction) = nullptr; }},
        // links
        {"first child", [](Trial& t) { Fields::firstChildOf(*t.parent) = t.text; }},
        {"way to the last", [](Trial& t) { Fields::linksOf(*t.element).previousSibling = nullptr; }},
        {"way to the next", [](Trial& t) { Fields::linksOf(*t.text).nextSibling = wild; }},
        {"way back", [](Trial& t) { Fields::linksOf(*t.section).previousSibling = t.text; }},
        {"last", [](Trial& t) { Fields::linksOf(*t.instruction).nextSibling = t.element; }},
        {"owner", [](Trial& t) { Fields::ownerOf(Fields::nodeOf(*t.comment)) = wild; }},
        {"mark of a child", [](Trial& t) { Fields::nodeOf(*t.comment).isOwned(false); }},
        {"mark of the first", [](Trial& t) { Fields::nodeOf(*t.element).isFirstChild(false); }},
        {"mark of others", [](Trial& t) { Fields::nodeOf(*t.text).isFirstChild(true); }},
        {"owner of none's child", [](Trial& t) { Fields::ownerOf(Fields::nodeOf(*t.removed)) = nullptr; }},
        {"mark of none's child", [](Trial& t) { Fields::nodeOf(*t.removed).isOwned(true); }},
        {"links of none's child", [](Trial& t) { Fields::linksOf(*t.removed).nextSibling = t.text; }},
        // attributes
        {"map's owner", [](Trial& t) { Fields::ownerOf(*Fields::attributesOf(*t.parent)) = wild; }},
        {"map's mark", [](Trial& t) { Fields::attributesOf(*t.parent)->hasDefaults(true); }},
        {"map's list",
            [](Trial& t) {
                std::memcpy(&Fields::listOf(*Fields::attributesOf(*t.parent)), &wild, sizeof wild);
            }},
        {"defaults' list",
            [](Trial& t) {
                std::memcpy(&Fields::listOf(*Fields::defaultsOf(*t.parent)), &wild, sizeof wild);
            }},
        {"list's nodes", [=](Trial& t) { listOf(t).nodes = nullptr; }},
        {"list's node", [=](Trial& t) { listOf(t).nodes[0] = t.text; }},
        {"list's size", [=](Trial& t) { listOf(t).size = 2; }},
        {"list's capacity", [=](Trial& t) { listOf(t).capacity = 1U << 20U; }},
        {"attribute's owner", [](Trial& t) { Fields::ownerOf(Fields::nodeOf(*t.attribute)) = t.element; }},
        {"attribute's marks", [](Trial& t) { Fields::nodeOf(*t.attribute).isSpecified(false); }},
        {"attribute's value", [](Trial& t) { Fields::firstChildOf(*t.attribute) = t.comment; }},
        // data and names
        {"buffer's document", [=](Trial& t) { bufferOf(t).document = nullptr; }},
        {"data's document", [](Trial& t) { Fields::documentOf(*t.text) = nullptr; }},
        {"buffer's size", [=](Trial& t) { bufferOf(t).size = 3; }},
        {"buffer's capacity", [=](Trial& t) { bufferOf(t).capacity = 1U << 20U; }},
        {"buffer's least capacity", [=](Trial& t) { bufferOf(t).capacity = 3; }},
        {"target", [](Trial& t) { Fields::baseOf(*t.instruction) = u"b"; }},
        {"name", [](Trial& t) { Fields::nameOf(*t.element) = u"n"; }},
        {"attribute's name", [](Trial& t) { Fields::nameOf(*t.attribute) = u"n"; }},
        {"names' length", [=](Trial& t) { nameOf(t).fLength = 2; }},
        {"names' chain", [=](Trial& t) { nameOf(t).fNext = &nameOf(t); }},
        {"names' table", [](Trial& t) { std::memcpy(&Fields::namesOf(t.document), &wild, sizeof wild); }},
        {"names' places", [](Trial& t) { Fields::namePlacesOf(t.document) = 0; }},
        {"more places", [](Trial& t) { Fields::namePlacesOf(t.document) = 1U << 30U; }},
        {"hash", [](Trial& t) { Fields::namePlacesOf(t.document) = 64; }},
        // the document's memory
        {"free memory", [](Trial& t) { Fields::freeBeginOf(t.document) += 8; }},
        {"size of it", [](Trial& t) { Fields::freeSizeOf(t.document) -= 8; }},
        {"next block", [](Trial& t) { Fields::nextSizeOf(t.document) = 8; }},
    };
    EXPECT_TRUE(Trial().succeeds());
    for (const auto& [what, change] : others) {
        Trial trial;
        change(trial);
        EXPECT_FALSE(trial.succeeds()) << what;
    }
}

} // namespace
