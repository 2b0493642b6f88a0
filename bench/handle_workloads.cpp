// SPDX-License-Identifier: MIT
//
// Single operations through handles against the engine calls that do the same.

#include "handle_workloads.h"

#include "libraries.h"
#include "tree_cache.h"

#include <xercesc/util/XMLString.hpp>

#include <benchmark/benchmark.h>
#include <optional>
#include <vector>

namespace {

constexpr int filledElements = 100'000;

// Matches by index, asking for the length before each step as such loops do.

void loopTags(benchmark::State& state, const Document& document, long count) {
    const PelDOMElement root = cachedTree<Qrndom>(document).getDocumentElement();
    const PelString tag = "item";
    for ([[maybe_unused]] auto step : state) {
        PelDOMNodeList matches;
        root.getElementsByTagName(tag, matches);
        long seen = 0;
        for (long i = 0; i < matches.length(); ++i) {
            PelDOMNode node;
            matches.item(i, node);
            benchmark::DoNotOptimize(node);
            ++seen;
        }
        if (seen != count)
            state.SkipWithError("another number of matches");
    }
}

// With the length asked once: the engine goes on from its last match then.
void loopEngineTags(benchmark::State& state, const Document& document, long count) {
    const xercesc::DOMElement* const root = cachedTree<Engine>(document)->getDocumentElement();
    for ([[maybe_unused]] auto step : state) {
        const xercesc::DOMNodeList* const matches = root->getElementsByTagName(u"item");
        const XMLSize_t length = matches->getLength();
        for (XMLSize_t i = 0; i < length; ++i)
            benchmark::DoNotOptimize(matches->item(i));
        if (static_cast<long>(length) != count)
            state.SkipWithError("another number of matches");
    }
}

// Attributes of elements that are at hand.

std::vector<PelDOMElement> elementsOf(const Document& document, const char* tag) {
    PelDOMNodeList matches;
    cachedTree<Qrndom>(document).getDocumentElement().getElementsByTagName(tag, matches);
    std::vector<PelDOMElement> elements;
    for (long i = 0; i < matches.length(); ++i) {
        PelDOMNode match;
        matches.item(i, match);
        elements.emplace_back(match);
    }
    return elements;
}

std::vector<const xercesc::DOMElement*> engineElementsOf(const Document& document,
                                                         const XMLCh* tag) {
    const xercesc::DOMNodeList* const matches =
        cachedTree<Engine>(document)->getElementsByTagName(tag);
    std::vector<const xercesc::DOMElement*> elements(matches->getLength());
    for (XMLSize_t i = 0; i < elements.size(); ++i)
        elements[i] = static_cast<const xercesc::DOMElement*>(matches->item(i));
    return elements;
}

void readNumbers(benchmark::State& state, const Document& document) {
    const std::vector<PelDOMElement> products = elementsOf(document, "product");
    const PelString name = "stock";
    for ([[maybe_unused]] auto step : state) {
        long total = 0;
        for (const PelDOMElement& product : products) {
            long value = 0;
            product.getAttribute(name, value);
            total += value;
        }
        benchmark::DoNotOptimize(total);
        state.counters["total"] = static_cast<double>(total);
    }
}

void readEngineNumbers(benchmark::State& state, const Document& document) {
    const std::vector<const xercesc::DOMElement*> products = engineElementsOf(document, u"product");
    for ([[maybe_unused]] auto step : state) {
        long total = 0;
        for (const xercesc::DOMElement* product : products)
            total += xercesc::XMLString::parseInt(product->getAttribute(u"stock"));
        benchmark::DoNotOptimize(total);
        state.counters["total"] = static_cast<double>(total);
    }
}

// A document of 100,000 elements under the root, a text in each.

void fill(benchmark::State& state) {
    const PelString name = "item";
    const PelString value = "Spare parts in stock";
    for ([[maybe_unused]] auto step : state) {
        PelDOMDocument document = Qrndom::services().createDocument("list");
        std::optional<PelDOMFiler> filer(document);
        for (int i = 0; i < filledElements; ++i)
            filer->appendElement(name, value);
        state.PauseTiming();
        PelDOMNodeList items;
        if (filer->currentElement().getElementsByTagName(name, items) != filledElements)
            state.SkipWithError("another number of elements");
        items = PelDOMNodeList();
        filer.reset();
        document = PelDOMDocument(); // with the last handle the tree goes
        state.ResumeTiming();
    }
}

void fillEngine(benchmark::State& state) {
    xercesc::DOMImplementation* const engine = xercesc::DOMImplementation::getImplementation();
    for ([[maybe_unused]] auto step : state) {
        Engine::Tree document(engine->createDocument(nullptr, u"list", nullptr));
        xercesc::DOMElement* const root = document->getDocumentElement();
        for (int i = 0; i < filledElements; ++i) {
            xercesc::DOMElement* const item = document->createElement(u"item");
            item->appendChild(document->createTextNode(u"Spare parts in stock"));
            root->appendChild(item);
        }
        state.PauseTiming();
        if (root->getElementsByTagName(u"item")->getLength() != filledElements)
            state.SkipWithError("another number of elements");
        document.reset();
        state.ResumeTiming();
    }
}

template <class Run, class... Arguments>
void add(const std::string& name, Run run, Arguments... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), run, arguments...)->Unit(benchmark::kMillisecond);
}

} // namespace

void registerHandleWorkloads(const Document& document) {
    if (document.name != "catalogue")
        return;
    add("attributes/catalogue/qrndom", readNumbers, document);
    add("attributes/catalogue/engine", readEngineNumbers, document);
    add("fill/100000/qrndom", fill);
    add("fill/100000/engine", fillEngine);
    for (const int count : {1'000, 10'000, 100'000}) {
        const std::string size = std::to_string(count);
        const Document flat = writeFlat("flat_" + size, count);
        add("tags/" + size + "/qrndom", loopTags, flat, count);
        add("tags/" + size + "/engine", loopEngineTags, flat, count);
    }
}
