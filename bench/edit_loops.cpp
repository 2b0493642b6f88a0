// SPDX-License-Identifier: MIT
#include "edit_loops.h"

#include <qrndom/QRNDOM.h>

#include <benchmark/benchmark.h>
#include <string>

namespace {

// One body of a loop after another, each over a tree of its own.
using Loop = void (*)(PelDOMDocument&, const PelDOMNodeList&);

struct Job {
    const char* name;
    const char* open; // what is there of each element, and what ends it
    const char* close;
    bool isNested;
    const char* listed;
    Loop run;
};

PelDOMElement at(const PelDOMNodeList& list, long index) {
    PelDOMNode node;
    list.item(index, node);
    return PelDOMElement(node);
}

void remove(const PelDOMNode& node) {
    node.getParentNode().removeChild(node);
}

void removeFirst(PelDOMDocument& /*document*/, const PelDOMNodeList& list) {
    while (list.length() > 0)
        remove(at(list, 0));
}

void removeLast(PelDOMDocument& /*document*/, const PelDOMNodeList& list) {
    while (const long length = list.length())
        remove(at(list, length - 1));
}

void removeMiddle(PelDOMDocument& /*document*/, const PelDOMNodeList& list) {
    while (const long length = list.length())
        remove(at(list, length / 2));
}

void renameFirst(PelDOMDocument& /*document*/, const PelDOMNodeList& list) {
    while (list.length() > 0)
        at(list, 0).setTagName("y");
}

void renameLast(PelDOMDocument& /*document*/, const PelDOMNodeList& list) {
    while (const long length = list.length())
        at(list, length - 1).setTagName("y");
}

void appendInEach(PelDOMDocument& /*document*/, const PelDOMNodeList& list) {
    const long count = list.length();
    for (long i = 0; i < count; ++i)
        at(list, 2 * i).appendTextElement("x", "t");
}

void insertBeforeEach(PelDOMDocument& document, const PelDOMNodeList& list) {
    for (long i = 0; i < list.length(); i += 2) {
        const PelDOMElement next = at(list, i);
        next.getParentNode().insertBefore(document.createElement("x"), next);
    }
}

void wrapEach(PelDOMDocument& document, const PelDOMNodeList& list) {
    for (long i = 0; i < list.length(); ++i) {
        const PelDOMElement element = at(list, i);
        PelDOMElement wrapper = document.createElement("y");
        element.getParentNode().replaceChild(wrapper, element);
        wrapper.appendChild(element);
    }
}

// A second list that is asked only for its length sees changes far from its place.
void moveFirstToEnd(PelDOMDocument& document, const PelDOMNodeList& list) {
    PelDOMElement end = document.createElement("end");
    document.getDocumentElement().appendChild(end);
    const PelDOMNodeList all = document.getElementsByTagName("*");
    const long count = list.length();
    for (long i = 0; i < count && all.length() > 0; ++i)
        end.appendChild(at(list, 0));
}

void removeFirstChildInLoop(PelDOMDocument& document, const PelDOMNodeList& /*list*/) {
    for (PelDOMNode node : document.getElementsByTagName("*"))
        node.removeChild(node.getFirstChild());
}

constexpr Job jobs[] = {
    {"loop_remove_first", "<x>t", "</x>", false, "x", removeFirst},
    {"loop_remove_last", "<x>t", "</x>", false, "x", removeLast},
    {"loop_remove_middle", "<x>t", "</x>", false, "x", removeMiddle},
    {"loop_remove_records", "<x><a/><b><x/></b>", "</x>", false, "x", removeFirst},
    {"loop_remove_nested", "<x>t", "</x>", true, "x", removeLast},
    {"loop_rename_first", "<x>t", "</x>", false, "x", renameFirst},
    {"loop_rename_last", "<x>t", "</x>", false, "x", renameLast},
    {"loop_append", "<x>t", "</x>", false, "x", appendInEach},
    {"loop_insert", "<x>t", "</x>", false, "x", insertBeforeEach},
    {"loop_wrap", "<x>t", "</x>", false, "x", wrapEach},
    {"loop_move", "<x>t", "</x>", false, "x", moveFirstToEnd},
    {"loop_range", "<x>t", "</x>", true, "*", removeFirstChildInLoop},
};

PelDOMDocument make(const Job& job, long count) {
    std::string text = "<r>";
    for (long i = 0; i < count; ++i)
        text.append(job.open).append(job.isNested ? "" : job.close);
    for (long i = 0; job.isNested && i < count; ++i)
        text.append(job.close);
    return PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES)
        ->readDocumentFromStringW((text + "</r>").c_str());
}

void run(benchmark::State& state, const Job& job, long count) {
    for ([[maybe_unused]] auto step : state) {
        state.PauseTiming();
        PelDOMDocument document = make(job, count);
        const PelDOMNodeList list = document.getElementsByTagName(job.listed);
        state.ResumeTiming();
        job.run(document, list);
    }
}

} // namespace

void registerEditLoops() {
    for (const Job& job : jobs)
        for (long count = 5'000; count <= 80'000; count *= 2)
            benchmark::RegisterBenchmark(
                (job.name + ("/" + std::to_string(count)) + "/qrndom").c_str(), run, job, count)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(1);
}
