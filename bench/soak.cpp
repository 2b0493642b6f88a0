// SPDX-License-Identifier: MIT
//
// Uses the library for a long time and fails where its memory grows.
//
//     soak [SECONDS]
//
// Each phase runs in rounds for its share of the time. All phases have run once before the first is
// measured, and each once more before its own measurement.

#include <qrndom/QRNDOM.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int many = 1'000'000; // changes of one tree in a round
constexpr int starts = 1'000;   // of the engine, in a round

// What a phase may gain: the first for a buffer that grew for the longest value or line so far, the
// second for whole pages that the allocator keeps.
constexpr long inUseTolerance = 16 * 1024;
constexpr long residentTolerance = 512 * 1024;

const std::string definitions = "<!ELEMENT r (e*)><!ELEMENT e (#PCDATA)>"
                                "<!ATTLIST e id ID #REQUIRED plain CDATA 'default' kind (x|y) 'x'>"
                                "<!ENTITY word 'words &amp; more'>";
const std::string content = "<r><e id='i1'>one &word;</e><e id='i2' kind='y'>two</e></r>";
const std::string sample = "<!DOCTYPE r [" + definitions + "]>" + content;

const char* const refusedTexts[] = {"<a>&none;</a>",
                                    "<a",
                                    "",
                                    "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>text</a>",
                                    "<!DOCTYPE a SYSTEM 'missing.dtd'><a/>",
                                    "<?xml version='1.0' standalone='maybe'?><a/>"};

struct Memory {
    long inUse;
    long resident;

    static Memory now() {
        const struct mallinfo2 heap = mallinfo2();
        long pages = 0;
        long residentPages = 0;
        if (!(std::ifstream("/proc/self/statm") >> pages >> residentPages))
            throw std::runtime_error("/proc/self/statm tells nothing");
        return {static_cast<long>(heap.uordblks + heap.hblkhd),
                residentPages * sysconf(_SC_PAGESIZE)};
    }
};

PelDOMUtilites& services() {
    return *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
}

void require(bool isTrue, const char* what) {
    if (!isTrue)
        throw std::runtime_error(std::string("failed: ") + what);
}

void require(PelDOM::Error code, const char* what) {
    require(code == PelDOM::SUCCESS, what);
}

/// A value of 1 to 600 units, another one for each number.
const PelString& valueOf(int number) {
    static const std::vector<PelString> values = [] {
        std::vector<PelString> made;
        for (std::size_t i = 0; i < 600; ++i)
            made.push_back(
                PelString(std::u16string(1 + i * 277 % 600, static_cast<char16_t>(u'a' + i % 26))));
        return made;
    }();
    return values[static_cast<std::size_t>(number) % values.size()];
}

/// A tree that lives as long as the program, and handles into it.
struct LivingTree {
    PelDOMDocument document = services().readDocumentFromStringW(sample.c_str());
    PelDOMElement root = document.getDocumentElement();
    PelDOMElement element{childOf(root)};
    PelDOMText text{childOf(element)};

    static PelDOMNode childOf(const PelDOMNode& parent) {
        PelDOMNodeList children;
        PelDOMNode child;
        require(parent.getChildNodes(children), "children");
        require(children.item(0, child), "the first child");
        return child;
    }
};

LivingTree& living() {
    static LivingTree tree;
    return tree;
}

std::string scratchFile(const char* name) {
    static const std::filesystem::path folder = [] {
        std::string made = (std::filesystem::temp_directory_path() / "soak.XXXXXX").string();
        require(mkdtemp(made.data()) != nullptr, "a folder for files");
        return std::filesystem::path(made);
    }();
    return (name == nullptr ? folder : folder / name).string();
}

void write(const std::string& path, const std::string& bytes) {
    require(static_cast<bool>(std::ofstream(path) << bytes), path.c_str());
}

void documents() {
    const PelString file(scratchFile("written.xml").c_str());
    const PelString external(scratchFile("external.xml").c_str());
    write(scratchFile("sample.dtd"), definitions);
    write(scratchFile("external.xml"), "<!DOCTYPE r SYSTEM 'sample.dtd'>" + content);
    for (int i = 0; i < 100; ++i) {
        PelString written;
        const PelDOMDocument document = services().readDocumentFromStringA(sample.c_str());
        PelDOMElement root = document.getDocumentElement();
        PelDOMElement first(LivingTree::childOf(root));
        PelDOMNodeList found;
        require(root.getElementsByTagName("e", found) == 2, "two elements");
        require(first.setAttribute("id", PelString("j") + valueOf(i)), "an attribute");
        require(first.appendTextElement("f", valueOf(i)), "an element");
        require(services().writeDocument(document, written, 0, 1, 0), "writing a string");
        require(services().writeDocument(document, file), "writing a file");
        require(services().readDocument(external).isNull() == 0, "a DTD in a file");
        // The element f is not declared.
        require(services().readDocument(file).isNull() == 1, "a change that the DTD forbids");
        for (const char* const text : refusedTexts)
            require(services().readDocumentFromStringW(text).isNull() == 1, text);
        require(services().readDocument("/missing/file.xml").isNull() == 1, "no file");
    }
}

void filling() {
    const PelString file(scratchFile("filled.xml").c_str());
    for (int i = 0; i < 100; ++i) {
        PelDOMDocument document = services().createDocument("shelf");
        PelDOMFiler filer(document);
        for (int n = 0; n < 50; ++n)
            require(filer.appendElement("book", valueOf(n)), "filling");
        require(filer.setAttribute("count", 50), "filling");
        require(services().writeDocument(document, file), "writing a file");
        require(services().readDocument(file).isNull() == 0, "reading it again");
    }
}

void attribute() {
    for (int i = 0; i < many; ++i)
        require(living().element.setAttribute("plain", valueOf(i)), "setting");
}

void identifier() {
    for (int i = 0; i < many; ++i)
        require(living().element.setAttribute("id", valueOf(i)), "setting");
}

void text() {
    for (int i = 0; i < many; ++i)
        require(living().text.setValue(valueOf(i)), "setting");
}

void removal() {
    for (int i = 0; i < many; ++i) {
        const char* const name = i % 2 == 0 ? "extra" : "kind"; // the second has a default
        require(living().element.setAttribute(name, valueOf(i)), "setting");
        require(living().element.removeAttribute(name), "removing");
    }
}

void moving() {
    for (int i = 0; i < many; ++i) {
        PelDOMNode first = LivingTree::childOf(living().root);
        require(living().root.appendChild(first), "moving");
    }
}

constexpr int comings = 550'000; // of nodes that go again, in a round

// No handle is left to what was removed.
void comingAndGoing() {
    PelDOMElement root = living().root;
    for (int i = 0; i < comings; ++i) {
        PelDOMElement made = living().document.createElement("made");
        require(made.setAttribute("number", valueOf(i)), "setting");
        require(made.appendTextElement("text", valueOf(i + 1)), "filling");
        require(root.appendChild(made), "appending");
        require(root.removeChild(made), "removing");
    }
}

// A handle leads into a part of the last one, and another one to what was made and never used.
void copyingAndReplacing() {
    PelDOMElement root = living().root;
    PelDOMNode held;
    PelDOMNode unused;
    for (int i = 0; i < comings / 10; ++i) {
        const PelDOMNode last = root.getLastChild();
        const PelDOMNode copy = living().document.importNode(last, true);
        require(root.replaceChild(copy, last), "replacing");
        held = last.getFirstChild();
        unused = living().document.createProcessingInstruction("unused", valueOf(i));
        unused = living().document.createComment(valueOf(i));
        require(PelDOMElement(copy).setTagName(i % 2 == 0 ? "e" : "f"), "renaming");
    }
    require(PelDOMElement(root.getLastChild()).setTagName("e"), "renaming");
}

void engine() {
    const PelDOMDocument kept = services().createDocument("kept");
    for (int i = 0; i < starts; ++i) {
        require(services().init(), "starting");
        require(services().readDocumentFromStringW("<a/>").isNull() == 0, "reading");
        PelDOMUtilites::releaseUtilities();
    }
}

/// The engine stops for good between two starts only when no tree is left.
void engineAlone() {
    PelDOMUtilites::releaseUtilities();
    for (int i = 0; i < starts; ++i) {
        require(services().init(), "starting");
        PelDOMUtilites::releaseUtilities();
    }
}

struct Phase {
    const char* name;
    void (*round)();
};

// The engine's own starts come first, while there is no living tree.
const Phase phases[] = {{"start and stop the engine", engineAlone},
                        {"read, change, write, refuse", documents},
                        {"create, fill, write, read", filling},
                        {"start and stop under a tree", engine},
                        {"set an attribute", attribute},
                        {"set an ID attribute", identifier},
                        {"set a text", text},
                        {"set and remove attributes", removal},
                        {"move elements", moving},
                        {"elements that come and go", comingAndGoing},
                        {"copy, replace, rename", copyingAndReplacing}};

/// Whether the memory stayed flat.
bool measure(const Phase& phase, std::chrono::duration<double> share) {
    const Memory before = Memory::now();
    const auto begin = std::chrono::steady_clock::now();
    int rounds = 0;
    do {
        phase.round();
        ++rounds;
    } while (std::chrono::steady_clock::now() - begin < share);
    const Memory after = Memory::now();
    const bool isFlat = after.inUse - before.inUse <= inUseTolerance &&
                        after.resident - before.resident <= residentTolerance;
    std::printf("%-29s %6d %10ld %10ld %10ld %10ld  %s\n", phase.name, rounds, before.inUse / 1024,
                after.inUse / 1024, before.resident / 1024, after.resident / 1024,
                isFlat ? "flat" : "GROWS");
    std::fflush(stdout);
    return isFlat;
}

} // namespace

int main(int argc, char** argv) try {
    const double seconds = argc > 1 ? std::stod(argv[1]) : 60;
    const std::chrono::duration<double> share(seconds / static_cast<double>(std::size(phases)));
    std::printf("%-29s %6s %21s %21s\n%-29s %6s %10s %10s %10s %10s\n", "", "", "in use, KiB",
                "resident, KiB", "phase", "rounds", "start", "end", "start", "end");
    bool isFlat = true;
    for (const Phase& phase : phases) {
        phase.round();
        isFlat = measure(phase, share) && isFlat;
    }
    std::filesystem::remove_all(scratchFile(nullptr));
    return isFlat ? 0 : 1;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
} catch (...) {
    std::fprintf(stderr, "failed: an exception of the engine\n");
    return 1;
}
