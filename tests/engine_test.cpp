// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/engine/PelXercesFields.h"
#include "xerces/engine/PelXercesLayoutCheck.h"

#include <xercesc/util/XercesVersion.hpp>

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>

namespace {

using Check = PelXercesLayoutCheck;
using Fields = PelXercesFields;
using xercesc::DOMNode;

struct Engine : testing::Test {
    static void SetUpTestSuite() { services().init(); }
    static void TearDownTestSuite() { services().terminate(); }
    void SetUp() override {
        if (!Fields::isKnownRelease)
            GTEST_SKIP() << "this release's nodes are not expected to be known";
    }
};

TEST(EngineRelease, IsKnownWhereItWasTried) {
    services().init();
#ifdef QRNDOM_ENGINE_FIELDS
    EXPECT_EQ(Fields::areKnown(), Fields::isKnownRelease);
#else
    EXPECT_FALSE(Fields::areKnown());
#endif
    services().terminate(); // as a program that has not started it
    const PelString said = PelDOMUtilites::describeEngine();
    EXPECT_EQ(said.find("interface alone") < 0, Fields::areKnown()) << said;
    EXPECT_EQ(said.find("Xerces-C++ " XERCES_FULLVERSIONDOT ", "), 0) << said;
}

struct Bytes {
    void* place;
    std::size_t size;
};

template <class Object>
Bytes bytesOf(Object* object) {
    return {object, sizeof(Object)};
}

// Every byte of what the engine makes, the last of it what it makes for the data of texts.
TEST_F(Engine, IsFoundOutByEachByteOfItsNodes) {
    EXPECT_TRUE(Check().succeeds());
    for (std::size_t part = 0;; ++part) {
        std::size_t size = 1;
        for (std::size_t i = 0; i < size; ++i) {
            Check check;
            const Bytes parts[] = {bytesOf(check.element),
                                   bytesOf(Fields::attributesOf(*check.element)),
                                   bytesOf(Fields::defaultsOf(*check.element)),
                                   bytesOf(check.attribute),
                                   bytesOf(check.text),
                                   {Fields::bufferOf(*check.text), sizeof(Fields::Buffer)},
                                   {Fields::bufferOf(*check.comment), sizeof(Fields::Buffer)},
                                   {Fields::bufferOf(*check.section), sizeof(Fields::Buffer)},
                                   {Fields::bufferOf(*check.instruction), sizeof(Fields::Buffer)}};
            if (part == std::size(parts))
                return;
            size = parts[part].size;
            static_cast<unsigned char*>(parts[part].place)[i] ^= 0xFF;
            EXPECT_FALSE(check.succeeds()) << "byte " << i << " of part " << part;
        }
    }
}

// Comments that answer one question otherwise.
enum Question { none, previous, next, parent, copying, marks, number };
template <Question question>
struct OtherComment : xercesc::DOMCommentImpl {
    using DOMCommentImpl::DOMCommentImpl;
    DOMNode* getPreviousSibling() const override {
        return question == previous ? nullptr : DOMCommentImpl::getPreviousSibling();
    }
    DOMNode* getNextSibling() const override {
        return question == next ? getPreviousSibling() : DOMCommentImpl::getNextSibling();
    }
    DOMNode* getParentNode() const override {
        return question == parent ? getOwnerDocument() : DOMCommentImpl::getParentNode();
    }
    DOMNode* cloneNode(bool deep) const override {
        DOMNode* const copy = DOMCommentImpl::cloneNode(deep);
        xercesc::DOMNodeImpl& own = Fields::nodeOf(const_cast<OtherComment&>(*this));
        if (question == copying)
            Fields::marksOf(Fields::nodeOf(*copy)) = 1;
        if (question == number && Fields::hasNumbers())
            Fields::numberOf(own) = 1;
        if (question == marks || (question == number && !Fields::hasNumbers()))
            Fields::marksOf(own) = 1;
        return copy;
    }
};

template <Question question>
void change(Check& check) {
    static_assert(sizeof(OtherComment<question>) == sizeof(xercesc::DOMCommentImpl));
    xercesc::DOMBuffer* const buffer = Fields::bufferOf(*check.comment);
    new (static_cast<void*>(check.comment)) OtherComment<question>(&check.document, u"");
    Fields::bufferOf(*check.comment) = buffer;
}

// Each is an engine that keeps something in another way.
TEST_F(Engine, IsFoundOutWhenItKeepsThingsElsewhere) {
    static DOMNode* const wild = reinterpret_cast<DOMNode*>(16);
    const std::pair<const char*, std::function<void(Check&)>> others[] = {
        {"document", [](Check& c) { c.owner.memory.blocks[0].size += 8; }},
        {"nodes' memory",
         [](Check& c) {
             std::fill(c.owner.memory.blocks.begin() + 1, c.owner.memory.blocks.end(),
                       PelXercesZeroedDocument::Memory::Block());
         }},
        {"element's size", [](Check& c) { c.element = c.parent; }},
        {"comment's buffer",
         [](Check& c) { std::memcpy(&Fields::bufferOf(*c.comment), &wild, sizeof wild); }},
        {"comment's document", [](Check& c) { Fields::documentOf(*c.comment) = nullptr; }},
        {"type", [](Check& c) { c.type = reinterpret_cast<xercesc::DOMDocumentTypeImpl*>(wild); }},
        {"target", [](Check& c) { Fields::targetOf(*c.instruction) = nullptr; }},
        {"previous", change<previous>},
        {"next", change<next>},
        {"parent", change<parent>},
        {"copied marks", change<copying>},
        {"marks", change<marks>},
        {"number", change<number>},
        {"first child", [](Check& c) { Fields::firstChildOf(*c.parent) = c.type; }},
        {"names' length",
         [](Check& c) {
             const_cast<Fields::Name*>(
                 Fields::namesOf(
                     c.document)[xercesc::XMLString::hash(u"n", Fields::namePlacesOf(c.document))])
                 ->fLength = 2;
         }},
        {"names' table",
         [](Check& c) { std::memcpy(&Fields::namesOf(c.document), &wild, sizeof wild); }},
        {"names' places", [](Check& c) { Fields::namePlacesOf(c.document) = 0; }},
        {"more places", [](Check& c) { Fields::namePlacesOf(c.document) = 1U << 30U; }},
        {"hash", [](Check& c) { Fields::namePlacesOf(c.document) = 64; }},
        {"free memory", [](Check& c) { Fields::freeBeginOf(c.document) += 8; }},
        {"size of it", [](Check& c) { Fields::freeSizeOf(c.document) -= 8; }},
        {"next block", [](Check& c) { Fields::nextSizeOf(c.document) = 8; }},
    };
    for (const auto& [what, change] : others) {
        Check check;
        change(check);
        EXPECT_FALSE(check.succeeds()) << what;
    }
    Check check;
    change<none>(check);
    EXPECT_TRUE(check.succeeds());
}

} // namespace
