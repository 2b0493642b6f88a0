// SPDX-License-Identifier: MIT
//
// What a kept source costs a read, and what a kept layout saves a write.

#include "kept_workloads.h"

#include <qrndom/QRNDOM.h>

#include <benchmark/benchmark.h>
#include <optional>
#include <stdexcept>

namespace {

PelDOMDocument readOne(const Document& document, bool isKept) {
    PelDOMReader reader;
    reader.setKeepSource(isKept);
    PelDOMDocument tree = reader.readFile(document.path.c_str());
    if (!tree)
        throw std::runtime_error("qrndom refused the document");
    return tree;
}

void readTree(benchmark::State& state, const Document& document, bool isKept) {
    std::optional<PelDOMDocument> tree;
    for ([[maybe_unused]] auto step : state) {
        tree.emplace(readOne(document, isKept));
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
}

// The last of the root's child elements, the last one of that, and so on down.
PelDOMElement innermost(const PelDOMDocument& tree) {
    PelDOMElement inner = tree.getDocumentElement();
    PelDOMNode child = inner.getLastChild();
    while (child) {
        if (child.getNodeType() == PelDOM::ELEMENT_NODE) {
            inner = child;
            child = inner.getLastChild();
        } else {
            child = child.getPreviousSibling();
        }
    }
    return inner;
}

// Each save follows an edit of the same attribute, a new one before the first.
void saveTree(benchmark::State& state, const Document& document, bool isKept) {
    const PelDOMDocument tree = readOne(document, true);
    PelDOMElement edited = innermost(tree);
    PelDOMWriter writer;
    writer.setKeepLayout(isKept);
    std::string bytes;
    long edits = 0;
    for ([[maybe_unused]] auto step : state) {
        edited.setAttribute("edits", ++edits);
        if (writer.writeBytes(tree, bytes) != PelDOM::SUCCESS)
            throw std::runtime_error("qrndom did not save the document");
    }
    if (isKept && bytes.size() > contentOf(document).size() + 30)
        state.SkipWithError("more was written than was edited");
}

} // namespace

void registerKeptWorkloads(const Document& document) {
    const auto add = [&](const std::string& workload, auto run, bool isKept) {
        const std::string name = workload + "/" + document.name + "/qrndom";
        benchmark::RegisterBenchmark(name.c_str(), run, document, isKept)
            ->Unit(benchmark::kMillisecond);
    };
    add("kept_read", readTree, true);
    add("kept_read_without", readTree, false);
    add("kept_save", saveTree, true);
    add("kept_save_without", saveTree, false);
}
