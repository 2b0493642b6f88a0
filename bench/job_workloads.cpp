// SPDX-License-Identifier: MIT
//
// Everyday jobs, the same work by each library.

#include "job_workloads.h"

#include "jobs.h"
#include "tree_cache.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int manyElements = 100'000;
constexpr int manyMessages = 1'000;

// Makes the job where it is first run: the trees that it needs are read then.
template <class Library>
void addFor(const std::string& workload, long expected, const std::function<Job()>& makeJob) {
    const std::string name = workload + "/" + Library::name;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const Job job = makeJob();
        for ([[maybe_unused]] auto step : state)
            if (job() != expected)
                state.SkipWithError("another result than expected");
    })->Unit(benchmark::kMillisecond);
}

} // namespace

void registerJobs(const Document& catalogue) {
    static const std::vector<std::string> good = makeMessages(manyMessages, 0);
    static const std::vector<std::string> mixed = makeMessages(manyMessages, manyMessages / 20);
    static const std::vector<Row> rows = makeRows(manyElements);
    long letters = 0;
    for (const PelDOMNode& name : cachedTree<Qrndom>(catalogue).getElementsByTagName("name"))
        letters += name.getTextContent().length();
    forEachLibrary([&](auto library) {
        using Library = decltype(library);
        using Own = Jobs<Library>;
        addFor<Library>("messages/good", manyMessages, [] { return Own::readMessages(good); });
        addFor<Library>("messages/mixed", manyMessages - manyMessages / 20,
                        [] { return Own::readMessages(mixed); });
        addFor<Library>("csv/100000", totalOf(rows), [] { return Own::convertRows(rows); });
        addFor<Library>("front/100000", manyElements,
                        [] { return Own::insertInFront(manyElements); });
        addFor<Library>("texts/catalogue", letters,
                        [=] { return Own::copyTexts(cachedTree<Library>(catalogue)); });
    });
    for (const int count : {1'000, 10'000, 100'000}) {
        const std::string size = std::to_string(count);
        const Document flat = writeFlat("flat_" + size, count);
        forEachLibrary([&](auto library) {
            using Library = decltype(library);
            addFor<Library>("children/" + size, count, [=] {
                return Jobs<Library>::countChildren(cachedTree<Library>(flat));
            });
            addFor<Library>("ranges/" + size, count,
                            [=] { return Jobs<Library>::countItems(cachedTree<Library>(flat)); });
        });
    }
}
