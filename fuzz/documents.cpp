// SPDX-License-Identifier: MIT
// Any bytes as a document: all ways of reading it agree, every handle and list into it answers, and
// what is written of it reads as the same tree again.
#include "read/PelXercesReader.h"
#include "support.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <xercesc/dom/DOM.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <unistd.h>

namespace {

// Expanding entities makes much of little; such trees take time and show nothing new.
constexpr std::size_t longestText = std::size_t{1} << 20;

/// A file in memory where the machine has such, removed at the end.
struct ScratchFile {
    const std::string path =
        (std::filesystem::exists("/dev/shm") ? "/dev/shm/qrndom-fuzz." : "/tmp/qrndom-fuzz.") +
        std::to_string(getpid()) + ".xml";

    ~ScratchFile() { std::filesystem::remove(path); }

    void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }

    std::string bytes() const {
        return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
    }

    PelDOMDocument read() const { return services().readDocument(path.c_str()); }
};

const ScratchFile scratch;

std::string replaced(std::string text, std::string_view old, std::string_view fresh) {
    for (std::size_t at = 0; (at = text.find(old, at)) != text.npos; at += fresh.size())
        text.replace(at, old.size(), fresh);
    return text;
}

// A node with all that handles say of it, without its children.
std::string describe(const PelDOMNode& node) {
    std::string line = std::to_string(node.getNodeType());
    if (node.getNodeType() == PelDOM::TEXT_NODE) return line + " |" + PelDOMText(node).getValue().toUtf8();
    const PelDOMElement element(node);
    line += " " + element.getTagName().toUtf8();
    for (long i = 0; i < element.getNumAttributes(); ++i) {
        const PelString name = element.getAttributeNameAt(i);
        PelString value;
        long whole = -1;
        double real = -1;
        element.getAttribute(name, value);
        expectSame(value.view(), element.getAttributeValueAt(i).view(), "attribute by name and by position");
        element.getAttribute(name, whole);
        element.getAttribute(name, real);
        line += "\n  " + name.toUtf8() + "=" + value.toUtf8() + "\n  " + std::to_string(whole) + " " +
                std::to_string(real);
    }
    PelString text;
    if (element.getChildTextValue(text) == PelDOM::SUCCESS) line += "\n  text " + text.toUtf8();
    return line;
}

struct Level {
    PelDOMNodeList children;
    std::vector<std::string> described;
    long next = 0;
};

Level descend(const PelDOMNode& node) {
    Level level;
    expectSame(node.getChildNodes(level.children), PelDOM::SUCCESS, "getChildNodes");
    return level;
}

void checkBackwards(const Level& level) {
    PelDOMNode child;
    for (long i = level.children.length(); --i >= 0;) {
        level.children.item(i, child);
        expectSame(describe(child), level.described[static_cast<std::size_t>(i)], "children backwards");
    }
    expectSame(
        level.children.item(level.children.length(), child), PelDOM::INDEX_OUT_OF_RANGE, "past the end");
}

// Lists by tag name hold the elements that a walk found, in its order.
void checkTagLists(const PelDOMElement& root, const std::vector<std::string>& tags) {
    const auto check = [&](const std::string& name, const std::vector<std::string>& expected) {
        PelDOMNodeList list;
        const auto count = static_cast<long>(expected.size());
        expectSame(root.getElementsByTagName(name.c_str(), list), count, "number of elements by tag name");
        PelDOMNode element;
        for (long i = 0; i < count; ++i) {
            list.item(i, element);
            expectSame(PelDOMElement(element).getTagName().toUtf8(), expected[static_cast<std::size_t>(i)],
                "element by tag name");
        }
    };
    check("*", tags);
    std::map<std::string, std::size_t> counts;
    for (const std::string& tag : tags)
        if (counts.size() < 8 || counts.count(tag) != 0) ++counts[tag];
    for (const auto& [tag, count] : counts) check(tag, std::vector<std::string>(count, tag));
}

/// The whole tree as text.
std::string outline(const PelDOMDocument& document) {
    if (document.isNull() == 1) return "refused";
    std::string all;
    std::vector<std::string> tags;
    std::vector<Level> open;
    open.push_back(descend(document));
    while (!open.empty()) {
        Level& level = open.back();
        PelDOMNode child;
        if (level.next == level.children.length()) {
            checkBackwards(level);
            open.pop_back();
            all += ")\n";
            continue;
        }
        expectSame(level.children.item(level.next++, child), PelDOM::SUCCESS, "item");
        level.described.push_back(describe(child));
        all += level.described.back() + "\n";
        if (child.getNodeType() == PelDOM::ELEMENT_NODE)
            tags.push_back(PelDOMElement(child).getTagName().toUtf8());
        open.push_back(descend(child)); // ends the life of `level`
    }
    const PelDOMElement root = document.getDocumentElement();
    expectSame(root.getTagName().toUtf8(), tags.at(0), "root element");
    tags.erase(tags.begin());
    checkTagLists(root, tags);
    return all;
}

constexpr char notWritten[] = "not written";

std::string textOf(const PelDOMDocument& document, int newlines = 0) {
    PelString text;
    const PelDOM::Error code = services().writeDocument(document, text, 0, newlines, 0);
    return code == PelDOM::SUCCESS ? text.toUtf8() : notWritten;
}

// Handles tell nothing of what stands in comments, instructions and CDATA sections; the text does.
void expectSameDocuments(const PelDOMDocument& one, const PelDOMDocument& two, std::string_view what) {
    expectSame(outline(one), outline(two), what);
    expectSame(textOf(one), textOf(two), what);
}

// A declared entity can bring a CR into a CDATA section, a comment or an instruction, where it
// cannot be written as a reference: reading makes it a line feed. XML 1.1 has more such characters.
std::string withOneLineEnd(const std::string& text) {
    const bool is11 = text.rfind("<?xml version=\"1.1\"", 0) == 0;
    const std::string nextLine = is11 ? "\xC2\x85" : "\r";
    const std::string simple = replaced(replaced(text, "\r\n", "\n"), "\r" + nextLine, "\n");
    const std::string separator = is11 ? "\xE2\x80\xA8" : "\r";
    return replaced(replaced(replaced(simple, "\r", "\n"), nextLine, "\n"), separator, "\n");
}

bool removeType(const PelDOMDocument& document) {
    if (document.isNull() == 1) return false;
    xercesc::DOMDocument& engine = *PelXercesDOMNode::of(*document.getNodeImp()).getDocument();
    if (engine.getDoctype() == nullptr) return false;
    engine.removeChild(engine.getDoctype());
    return true;
}

void checkWriting(const PelDOMDocument& document, const std::string& bytes) {
    const std::string text = textOf(document);
    expectSame(replaced(textOf(document, 1), "\n", ""), replaced(text, "\n", ""), "added line feeds");
    PelString target = scratch.path.c_str();
    expectSame(services().writeDocument(document, target, 1, 0, 0), PelDOM::SUCCESS, "write to file");
    expectSame(scratch.bytes(), replaced(text, "\n", "\r\n"), "file and string");
    const PelDOMDocument back = services().readDocumentFromStringW(text.c_str());
    // The engine adds brackets to the content models of a document type that it writes.
    if (removeType(document)) {
        if (removeType(back))
            expectSameDocuments(back, document, "read back with its type");
        else
            expectSame(PelDOMUtilites::getLastReadMessage().toUtf8(), "", "read back with its type");
        checkWriting(document, bytes);
        return;
    }
    expectSame(outline(back), outline(document), "read back from the string");
    expectSame(textOf(back), withOneLineEnd(text), "written again");
    if (withOneLineEnd(text) == text) expectSameDocuments(scratch.read(), back, "read back from the file");
}

// Read without our own way of building trees.
PelDOMDocument readByEngine(const unsigned char* data, std::size_t size) {
    PelXercesReadSettings settings;
    settings.method = PelXercesReadSettings::Method::engine;
    const PelXercesNodeRef node = PelXercesReader(settings).readText("text", data, size);
    return PelDOMDocument(node ? PelXercesDOMNode::make(node) : nullptr);
}

// Whether the bytes are UTF-8, for the engine as for us.
bool isPlainUtf8(const std::string& bytes) {
    const bool namesEncoding = bytes.substr(0, bytes.find("?>")).find("encoding") != bytes.npos;
    return !namesEncoding && bytes.find('\0') == bytes.npos && PelString(bytes.c_str()).toUtf8() == bytes &&
           bytes.find("\xEF\xBF\xBD") == bytes.npos;
}

std::u16string unitsOf(const std::string& bytes) {
    std::u16string units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        units.push_back(static_cast<char16_t>(
            static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8));
    return units;
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const PelString narrow(std::u16string(data, data + size));
    const PelDOMDocument document = services().readDocumentFromStringA(narrow);
    if (textOf(document).size() > longestText) return 0;
    scratch.write(bytes);
    expectSameDocuments(scratch.read(), document, "read from a file and from a narrow string");
    expectSameDocuments(readByEngine(data, size), document, "read by the engine and by us");
    if (isPlainUtf8(bytes))
        expectSameDocuments(services().readDocumentFromStringW(bytes.c_str()), document,
            "read from a UTF-16 string and from a narrow string");

    const std::u16string units = unitsOf(bytes);
    const PelDOMDocument wide = services().readDocumentFromStringW(PelString(std::u16string_view(units)));
    const bool hasMark = !units.empty() && (units[0] == 0xFEFF || units[0] == 0xFFFE);
    if (hasMark && bytes.size() % 2 == 0) expectSameDocuments(wide, document, "read as bytes and as units");
    for (const PelDOMDocument& one : {document, wide})
        if (one.isNull() == 0 && textOf(one).size() <= longestText) checkWriting(one, bytes);
    return 0;
}
