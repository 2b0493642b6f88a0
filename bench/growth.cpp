// SPDX-License-Identifier: MIT
//
// How reading, walking and writing grow with the size of the catalogue, from 1 MB to 200 MB, and
// how making nodes of different names, and loops that change what they go through, grow with the
// number of these.

#include "edit_loops.h"
#include "libraries.h"

#include <xercesc/util/XMLString.hpp>

#include <benchmark/benchmark.h>
#include <iostream>
#include <optional>
#include <vector>

namespace {

// One tree at a time, left by the read for the walk and the write that follow it.
template <class Library>
class CurrentTree {
public:
    static const typename Library::Tree& of(const Document& document) {
        if (name != document.name)
            read(document);
        return *tree;
    }

    static void read(const Document& document) {
        tree.emplace(Library::readFile(document));
        name = document.name;
    }

    static void drop() {
        tree.reset();
        name.clear();
    }

private:
    static inline std::optional<typename Library::Tree> tree;
    static inline std::string name;
};

template <class Library>
void readFile(benchmark::State& state, const Document& document) {
    forEachLibrary([](auto library) { CurrentTree<decltype(library)>::drop(); });
    // The first read of a size has to get its memory from the system, the others find it at hand.
    static std::string warmedUp;
    if (warmedUp != document.name) {
        warmedUp = document.name;
        CurrentTree<Library>::read(document);
        CurrentTree<Library>::drop();
    }
    for ([[maybe_unused]] auto step : state)
        CurrentTree<Library>::read(document);
}

template <class Library>
void walkTree(benchmark::State& state, const Document& document) {
    const auto& tree = CurrentTree<Library>::of(document);
    for ([[maybe_unused]] auto step : state)
        benchmark::DoNotOptimize(Library::walk(tree));
}

template <class Library>
void writeFile(benchmark::State& state, const Document& document) {
    const auto& tree = CurrentTree<Library>::of(document);
    for ([[maybe_unused]] auto step : state)
        Library::writeFile(tree, outputPath());
}

template <class Library>
void registerFor(const Document& document, const std::string& megabytes, int repetitions) {
    const auto add = [&](const char* workload, auto run) {
        const std::string name = std::string(workload) + "/" + megabytes + "/" + Library::name;
        benchmark::RegisterBenchmark(name.c_str(), run, document)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1)
            ->Repetitions(repetitions);
    };
    add("grow_read", readFile<Library>);
    add("grow_walk", walkTree<Library>);
    add("grow_write", writeFile<Library>);
}

// Names that share a place in a table of so many.
std::vector<PelString> differentNames(std::size_t count, std::size_t places) {
    std::vector<PelString> names;
    for (std::size_t i = 0; names.size() < count; ++i) {
        PelString name("n" + std::to_string(i));
        if (xercesc::XMLString::hash(name.view().data(), places) == 0)
            names.push_back(std::move(name));
    }
    return names;
}

using MakeNode = void (*)(PelDOMDocument& document, PelDOMElement& root, const PelString& name);

void makeNamed(benchmark::State& state, MakeNode make, std::size_t places) {
    const std::vector<PelString> names =
        differentNames(static_cast<std::size_t>(state.range(0)), places);
    for ([[maybe_unused]] auto step : state) {
        PelDOMDocument document = Qrndom::services().createDocument("r");
        PelDOMElement root = document.getDocumentElement();
        for (const PelString& name : names)
            make(document, root, name);
    }
}

void importNamed(benchmark::State& state) {
    std::string text = "<r>";
    for (const PelString& name : differentNames(static_cast<std::size_t>(state.range(0)), 257))
        text += "<" + name.toUtf8() + "/>";
    const PelDOMDocument source =
        Qrndom::services().readDocumentFromStringA((text + "</r>").c_str());
    for ([[maybe_unused]] auto step : state) {
        PelDOMDocument document = Qrndom::services().createDocument("r");
        if (!document.importNode(source.getDocumentElement(), true))
            state.SkipWithError("the copy failed");
    }
}

void registerNames() {
    const auto add = [](const std::string& way, std::initializer_list<long> counts, auto... run) {
        for (const long count : counts) {
            const std::string name = "names_" + way + "/" + std::to_string(count) + "/qrndom";
            auto* const registered = benchmark::RegisterBenchmark(name.c_str(), run...);
            registered->Arg(count)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);
        }
    };
    const auto create = [](PelDOMDocument& document, PelDOMElement&, const PelString& name) {
        document.createElement(name);
    };
    const auto putAttribute = [](PelDOMDocument& document, PelDOMElement&, const PelString& name) {
        document.createElement("e").putAttribute(name, "v");
    };
    const auto rename = [](PelDOMDocument&, PelDOMElement& root, const PelString& name) {
        root.setTagName(name);
    };
    add("create", {50'000, 100'000, 200'000}, makeNamed, MakeNode(create), 1);
    add("attribute", {50'000, 100'000, 200'000}, makeNamed, MakeNode(putAttribute), 1);
    add("rename", {50'000, 100'000, 200'000}, makeNamed, MakeNode(rename), 1);
    add("alike", {12'500, 25'000, 50'000}, makeNamed, MakeNode(create), 257);
    add("import", {12'500, 25'000, 50'000}, importNamed);
}

} // namespace

int main(int argc, char** argv) try {
    benchmark::Initialize(&argc, argv);
    Qrndom::services();
    registerNames();
    for (const int megabytes : {1, 5, 20, 50, 200}) {
        const std::string size = std::to_string(megabytes);
        const Document document =
            writeCatalogue("catalogue_" + size, static_cast<std::size_t>(megabytes) * 1'000'000);
        const int repetitions = megabytes <= 20 ? 5 : 3;
        registerFor<Qrndom>(document, size, repetitions);
        registerFor<Engine>(document, size, repetitions);
    }
    registerEditLoops();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 1;
}
