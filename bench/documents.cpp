// SPDX-License-Identifier: MIT
#include "documents.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char declaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr char mediaTypes[] = "/usr/share/mime/packages/freedesktop.org.xml";

constexpr const char* makers[] = {"Alder", "Birch", "Cedar", "Dogwood", "Elm"};
constexpr const char* goods[] = {"kettle", "lantern", "ladder", "notebook", "wheelbarrow"};

// The standard distributions differ between implementations; a remainder does not.
class Choice {
public:
    unsigned below(unsigned limit) { return static_cast<unsigned>(engine()) % limit; }

    template <std::size_t size>
    const char* of(const char* const (&words)[size]) {
        return words[below(size)];
    }

private:
    std::mt19937 engine{20240917};
};

Document save(const std::string& name, const std::string& content) {
    Document document{name, std::string(QRNDOM_BENCH_DIR "/") + name + ".xml", false};
    std::filesystem::create_directories(QRNDOM_BENCH_DIR);
    std::ofstream file(document.path, std::ios::binary);
    if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
        throw std::runtime_error("cannot write " + document.path);
    return document;
}

std::string numbered(const char* format, unsigned value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

void appendProduct(std::string& out, Choice& choice, unsigned number, bool hasReferences) {
    static const char* const phrases[] = {"Made to last. ", "Takes little room. ",
                                          "For use at home, up to 40 °C. ",
                                          "Spare parts in stock. "};
    const bool isIndented = choice.below(8) != 0;
    const char* const line = isIndented ? "\n    " : " ";
    out += numbered("  <product id=\"p%06u\"", number);
    out += numbered(" stock=\"%u\"", choice.below(20000));
    out += numbered(" weight=\"%u.5\">", choice.below(90));
    out += line;
    out += "<name>";
    out += choice.of(goods);
    out += numbered(" no. %u</name>", number);
    out += line;
    out += "<maker country=\"SI\">";
    out += choice.of(makers);
    out += "</maker>";
    out += line;
    out += numbered("<price>%u", choice.below(900));
    out += numbered(".%02u</price>", choice.below(100));
    out += line;
    out += "<description>";
    for (unsigned i = choice.below(6) + 3; i > 0; --i)
        (out += choice.of(phrases)) += hasReferences ? "&amp; " : "";
    out += "</description>";
    out += line;
    out += choice.below(6) == 0 ? "<note>Ships <b>cold</b> only</note>" : "<note>none</note>";
    out += isIndented ? "\n  </product>\n" : "</product>\n";
}

std::string catalogue(std::size_t bytes, bool hasReferences) {
    Choice choice;
    std::string out = std::string(declaration) + "<catalogue>\n";
    for (unsigned number = 0; out.size() < bytes; ++number)
        appendProduct(out, choice, number, hasReferences);
    return out + "</catalogue>\n";
}

// Chains of 2,000 elements, a text at the bottom of each.
Document writeDeep() {
    constexpr int depth = 2000;
    std::string out = std::string(declaration) + "<deep>\n";
    for (int chain = 0; chain < 20; ++chain) {
        for (int level = 0; level < depth; ++level)
            out += "<level n=\"" + std::to_string(level) + "\">";
        out += "bottom";
        for (int level = 0; level < depth; ++level)
            out += "</level>";
        out += "\n";
    }
    return save("deep", out + "</deep>\n");
}

// 60,000 elements whose IDs and defaults are declared.
Document writeDeclared() {
    std::string out = std::string(declaration) +
                      "<!DOCTYPE list [\n<!ELEMENT list (item)*>\n<!ELEMENT item (#PCDATA)>\n"
                      "<!ATTLIST item id ID #REQUIRED kind CDATA \"plain\">\n]>\n<list>";
    for (int i = 0; i < 60'000; ++i)
        out += "<item id=\"i" + std::to_string(i) + "\">item " + std::to_string(i) + "</item>";
    Document document = save("declared", out + "</list>\n");
    document.hasDoctype = true;
    return document;
}

// Long paragraphs of many scripts, most of their characters outside ASCII.
Document writeScripts() {
    static const char* const words[] = {"θάλασσα", "λόγος",    "ποταμός", "дерево",     "облако",
                                        "молоко",  "山川草木", "東京",    "こんにちは", "서울",
                                        "بحر",     "شمس",      "मंदिर",    "नदी",        "żółw",
                                        "Straße",  "façade",   "🙂"};
    Choice choice;
    std::string out = std::string(declaration) + "<book>\n";
    for (int paragraph = 0; paragraph < 600; ++paragraph) {
        out += "<p>";
        for (int word = 0; word < 600; ++word)
            (out += choice.of(words)) += word % 12 == 11 ? ".\n" : " ";
        out += "</p>\n";
    }
    return save("scripts", out + "</book>\n");
}

} // namespace

Document writeCatalogue(const std::string& name, std::size_t bytes) {
    return save(name, catalogue(bytes, false));
}

Document writeFlat(const std::string& name, int count) {
    std::string out = std::string(declaration) + "<list>";
    for (int i = 0; i < count; ++i)
        out += "<item id=\"" + std::to_string(i) + "\">item " + std::to_string(i) + "</item>";
    return save(name, out + "</list>\n");
}

std::vector<std::string> makeMessages(int count, int broken) {
    constexpr std::size_t size = 870;
    Choice choice;
    std::vector<std::string> messages;
    for (int i = 0; i < count; ++i) {
        std::string message =
            std::string(declaration) + "<order id=\"" + std::to_string(i) + "\">\n";
        while (message.size() < size - 120) {
            message += numbered("  <item pieces=\"%u\"", choice.below(90) + 1);
            message += numbered(" cents=\"%u\">", choice.below(9000));
            message += choice.of(goods);
            message += "</item>\n";
        }
        const std::string end = "</note></order>\n";
        message += "  <note>";
        message.append(size - message.size() - end.size(), 'x');
        messages.push_back(message + end);
        if (broken > 0 && i % (count / broken) == 0)
            messages.back().replace(size - end.size(), 7, "</nose>");
    }
    return messages;
}

std::vector<Row> makeRows(int count) {
    Choice choice;
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i)
        rows.push_back({choice.of(goods) + std::to_string(i), choice.of(makers),
                        std::to_string(choice.below(20000))});
    return rows;
}

std::vector<Document> writeDocuments() {
    std::vector<Document> documents = {writeCatalogue("catalogue", 8'400'000),
                                       writeFlat("flat", 100'000),
                                       writeDeep(),
                                       writeScripts(),
                                       save("references", catalogue(4'000'000, true)),
                                       writeDeclared()};
    if (std::filesystem::exists(mediaTypes))
        documents.push_back({"media_types", mediaTypes, true});
    return documents;
}

std::string contentOf(const Document& document) {
    std::ostringstream content;
    content << std::ifstream(document.path, std::ios::binary).rdbuf();
    return content.str();
}

std::string outputPath() {
    return QRNDOM_BENCH_DIR "/output.xml";
}
