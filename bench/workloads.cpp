// SPDX-License-Identifier: MIT
//
// Whole documents: read, walk, write and drop, the same work by each library.

#include "handle_workloads.h"
#include "job_workloads.h"
#include "kept_workloads.h"
#include "libraries.h"
#include "tree_cache.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>

namespace {

template <class Library>
void readFile(benchmark::State& state, const Document& document) {
    std::optional<typename Library::Tree> tree;
    for ([[maybe_unused]] auto step : state) {
        tree.emplace(Library::readFile(document));
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
}

template <class Library>
void readText(benchmark::State& state, const Document& document) {
    const auto text = Library::textOf(contentOf(document));
    std::optional<typename Library::Tree> tree;
    for ([[maybe_unused]] auto step : state) {
        tree.emplace(Library::readText(text, document.hasDoctype));
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
}

template <class Library>
void dropTree(benchmark::State& state, const Document& document) {
    for ([[maybe_unused]] auto step : state) {
        state.PauseTiming();
        std::optional<typename Library::Tree> tree(Library::readFile(document));
        state.ResumeTiming();
        tree.reset();
    }
}

template <class Library>
void walkTree(benchmark::State& state, const Document& document) {
    const auto& tree = cachedTree<Library>(document);
    for ([[maybe_unused]] auto step : state)
        benchmark::DoNotOptimize(Library::walk(tree));
}

template <class Library>
void writeFile(benchmark::State& state, const Document& document) {
    const auto& tree = cachedTree<Library>(document);
    for ([[maybe_unused]] auto step : state)
        Library::writeFile(tree, outputPath());
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(outputPath()));
}

template <class Library>
void writeText(benchmark::State& state, const Document& document) {
    const auto& tree = cachedTree<Library>(document);
    for ([[maybe_unused]] auto step : state)
        benchmark::DoNotOptimize(Library::writeText(tree));
}

void require(bool isTrue, const std::string& complaint) {
    if (!isTrue)
        throw std::runtime_error(complaint);
}

std::string withoutCarriageReturns(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

// The tree and the output of this library and of the engine are the same before anything is timed.
// What differs: the carriage returns in this library's files and, of a document with a document
// type declaration, that declaration's spaces and the attributes that it adds.
void checkEqualWork(const Document& document) {
    const PelDOMDocument own = Qrndom::readFile(document);
    const Engine::Tree engines = Engine::readFile(document);
    const NodeCount count = Qrndom::walk(own);
    const NodeCount enginesCount = Engine::walk(engines);
    require(count.elements == enginesCount.elements && count.others == enginesCount.others,
            "the trees of " + document.name + " differ");
    std::cerr << document.name << ": " << std::filesystem::file_size(document.path) << " bytes, "
              << count.elements + count.others << " nodes\n";
    if (document.hasDoctype)
        return;
    PelString text;
    Qrndom::services().writeDocument(own, text, 0, 0, 0);
    require(text.view() == Engine::written(engines), "the texts of " + document.name + " differ");
    const Document output{"output", outputPath(), false};
    Qrndom::writeFile(own, output.path);
    const std::string file = withoutCarriageReturns(contentOf(output));
    Engine::writeFile(engines, output.path);
    require(file == withoutCarriageReturns(contentOf(output)),
            "the files of " + document.name + " differ");
}

template <class Library>
void registerFor(const Document& document) {
    const auto add = [&](const char* workload, auto run) {
        const std::string name = std::string(workload) + "/" + document.name + "/" + Library::name;
        return benchmark::RegisterBenchmark(name.c_str(), run, document)
            ->Unit(benchmark::kMillisecond);
    };
    add("read_file", readFile<Library>);
    if (document.name == "declared")
        return;
    add("walk", walkTree<Library>);
    add("write_file", writeFile<Library>);
    add("write_string", writeText<Library>);
    if (document.name != "catalogue")
        return;
    add("read_string", readText<Library>);
    add("drop", dropTree<Library>)->Iterations(2); // each has a read before it, untimed
}

} // namespace

int main(int argc, char** argv) try {
    benchmark::Initialize(&argc, argv);
    Qrndom::services(); // starts the engine, for its own benchmarks too
    for (const Document& document : writeDocuments()) {
        checkEqualWork(document);
        forEachLibrary([&](auto library) {
            using Library = decltype(library);
            // TinyXML-2 refuses documents of more than 100 levels; it and pugixml know nothing of
            // declared attributes.
            constexpr bool isTiny = std::is_same_v<Library, TinyXml2>;
            constexpr bool isSimple = isTiny || std::is_same_v<Library, PugiXml>;
            if (!(isTiny && document.name == "deep") && !(isSimple && document.name == "declared"))
                registerFor<Library>(document);
        });
        registerHandleWorkloads(document);
        if (document.name == "catalogue" || document.name == "media_types")
            registerKeptWorkloads(document);
        if (document.name == "catalogue")
            registerJobs(document);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 1;
}
