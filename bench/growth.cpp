// SPDX-License-Identifier: MIT
//
// How reading, walking and writing grow with the size of the catalogue, from 1 MB to 200 MB.

#include "libraries.h"

#include <benchmark/benchmark.h>
#include <iostream>
#include <optional>

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

} // namespace

int main(int argc, char** argv) try {
    benchmark::Initialize(&argc, argv);
    Qrndom::services();
    for (const int megabytes : {1, 5, 20, 50, 200}) {
        const std::string size = std::to_string(megabytes);
        const Document document =
            writeCatalogue("catalogue_" + size, static_cast<std::size_t>(megabytes) * 1'000'000);
        const int repetitions = megabytes <= 20 ? 5 : 3;
        registerFor<Qrndom>(document, size, repetitions);
        registerFor<Engine>(document, size, repetitions);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 1;
}
