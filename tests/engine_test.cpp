// SPDX-License-Identifier: MIT
#include "support.h"
#include "xerces/engine/PelXercesAllocations.h"
#include "xerces/engine/PelXercesFields.h"
#include "xerces/engine/PelXercesLayoutCheck.h"

#include <xercesc/dom/impl/DOMNamedNodeMapImpl.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/internal/XMLReader.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/XercesVersion.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {

namespace Allocations = PelXercesAllocations;
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

// Every byte of the nodes that have prototypes, and of the buffers of texts.
TEST_F(Engine, IsFoundOutByEachByteOfItsNodes) {
    EXPECT_TRUE(Check().succeeds());
    for (std::size_t part = 0;; ++part) {
        std::size_t size = 1;
        for (std::size_t i = 0; i < size; ++i) {
            Check check;
            std::vector<Bytes> parts({bytesOf(check.element),
                                      bytesOf(Fields::attributesOf(*check.element)),
                                      bytesOf(Fields::defaultsOf(*check.element)),
                                      bytesOf(check.attribute), bytesOf(check.text)});
            for (auto* const buffer :
                 {Fields::bufferOf(*check.text), Fields::bufferOf(*check.comment),
                  Fields::bufferOf(*check.section), Fields::bufferOf(*check.instruction)})
                parts.push_back({buffer, sizeof(Fields::Buffer)});
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
    const auto nameOf = [](Check& c) -> Fields::Name& {
        return *Fields::namesOf(
            c.document)[xercesc::XMLString::hash(u"n", Fields::namePlacesOf(c.document))];
    };
    const std::pair<const char*, std::function<void(Check&)>> others[] = {
        {"document", [](Check& c) { c.owner.memory.blocks[0].size += 8; }},
        {"nodes' memory",
         [](Check& c) {
             std::fill(c.owner.memory.blocks.begin() + 1, c.owner.memory.blocks.end(),
                       PelXercesZeroedDocument::Memory::Block());
         }},
        {"parent", [](Check& c) { std::memcpy(&c.parent, &wild, sizeof wild); }},
        {"element", [](Check& c) { std::memcpy(&c.element, &wild, sizeof wild); }},
        {"comment's buffer",
         [](Check& c) { std::memcpy(&Fields::bufferOf(*c.comment), &wild, sizeof wild); }},
        {"comment's document", [](Check& c) { Fields::documentOf(*c.comment) = nullptr; }},
        {"type", [](Check& c) { std::memcpy(&c.type, &wild, sizeof wild); }},
        {"target", [](Check& c) { Fields::targetOf(*c.instruction) = nullptr; }},
        {"previous", change<previous>},
        {"next", change<next>},
        {"parent", change<parent>},
        {"copied marks", change<copying>},
        {"marks", change<marks>},
        {"number", change<number>},
        {"first child", [](Check& c) { Fields::firstChildOf(*c.parent) = c.type; }},
        {"names' length", [=](Check& c) { nameOf(c).fLength = 2; }},
        {"names' chain", [=](Check& c) { std::memcpy(&nameOf(c).fNext, &wild, sizeof wild); }},
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

// The sizes of what an engine's parser takes of its memory manager.
struct Sizes final : xercesc::MemoryManager {
    MemoryManager* getExceptionMemoryManager() override { return this; }
    void* allocate(XMLSize_t size) override {
        sizes.push_back(size);
        return ::operator new(size);
    }
    void deallocate(void* memory) override { ::operator delete(memory); }

    template <class Object>
    auto countOf() const {
        return std::count_if(sizes.begin(), sizes.end(), &Allocations::isFor<Object>);
    }
    auto countOf(std::size_t size) const { return std::count(sizes.begin(), sizes.end(), size); }

    std::vector<std::size_t> sizes;
};

TEST_F(Engine, TakesMemoryInTheSizesThatAreKnown) {
    const std::string xml =
        "<?xml version='1.0' encoding='KOI8-R'?><!DOCTYPE r [<!ENTITY e 'x'>"
        "<!ELEMENT r (#PCDATA|q)*><!ATTLIST r a ID #IMPLIED>]><r a='a' b='b'>&e;&e;</r>";
    Sizes memory;
    xercesc::XercesDOMParser parser(nullptr, &memory);
    parser.parse(
        xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "x"));
    EXPECT_EQ(memory.countOf<xercesc::XMLReader>(), 3); // of the document and two references
    EXPECT_GE(memory.countOf<xercesc::ContentSpecNode>(), 3);
    EXPECT_GE(memory.countOf<xercesc::XMLAttr>(), 2);
    EXPECT_EQ(memory.countOf(Allocations::converterPlaces), 1);
    for (const Allocations::Table& table :
         {Allocations::undeclaredElements, Allocations::declarations,
          Allocations::declaredAttributes, Allocations::ids, Allocations::tagAttributes})
        EXPECT_GE(memory.countOf(table.places * sizeof(void*)), 1) << table.places;
    auto& document = static_cast<xercesc::DOMDocumentImpl&>(*parser.getDocument());
    EXPECT_EQ(Fields::namePlacesOf(document), Allocations::treeNames.places);
    EXPECT_EQ(sizeof(xercesc::DOMNamedNodeMapImpl),
              (Allocations::treeDeclarations.places + 2) * sizeof(void*));
}

} // namespace
