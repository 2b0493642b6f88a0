// SPDX-License-Identifier: MIT
// What is left of files when each library reads them and writes them again, with the settings under
// which it keeps most: how many come back byte for byte, and how many lines of the others do not.
//
//     round_trip LIST      (LIST: a path in each line)
#include <qrndom/QRNDOM.h>

#include <fstream>
#include <functional>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#ifdef QRNDOM_BENCH_LIBXML2
#include <libxml/parser.h>
#endif
#ifdef QRNDOM_BENCH_TINYXML2
#include <tinyxml2.h>
#endif
#ifdef QRNDOM_BENCH_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

// The bytes that a library makes of a file's; none if it does not read them.
using Result = std::optional<std::string>;

Result byQrndom(const std::string& name, bool isKept) {
    PelDOMReader reader;
    reader.setKeepSource(isKept);
    PelDOMDocument document = reader.readFile(name.c_str());
    if (!document) { // its document type is not at hand, or the document breaks it
        reader.setValidation(PelDOMReader::NEVER);
        document = reader.readFile(name.c_str());
    }
    PelDOMWriter writer;
    writer.setKeepLayout(isKept);
    std::string written;
    if (!document || writer.writeBytes(document, written) != PelDOM::SUCCESS)
        return std::nullopt;
    return written;
}

#ifdef QRNDOM_BENCH_LIBXML2
Result byLibxml2(const std::string& bytes, const std::string& name) {
    const int quiet = XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    xmlDoc* const document =
        xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), name.c_str(), nullptr, quiet);
    if (document == nullptr)
        return std::nullopt;
    xmlChar* text = nullptr;
    int size = 0;
    xmlDocDumpMemory(document, &text, &size);
    xmlFreeDoc(document);
    if (text == nullptr)
        return std::nullopt;
    std::string written(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
    xmlFree(text);
    return written;
}
#endif

#ifdef QRNDOM_BENCH_TINYXML2
Result byTinyXml2(const std::string& bytes) {
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    if (document.Parse(bytes.data(), bytes.size()) != tinyxml2::XML_SUCCESS)
        return std::nullopt;
    tinyxml2::XMLPrinter printer(nullptr, true);
    document.Print(&printer);
    return std::string(printer.CStr());
}
#endif

#ifdef QRNDOM_BENCH_PUGIXML
Result byPugiXml(const std::string& bytes) {
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(bytes.data(), bytes.size(), pugi::parse_full | pugi::parse_ws_pcdata);
    if (!result)
        return std::nullopt;
    std::ostringstream stream;
    document.save(stream, "", pugi::format_raw | pugi::format_no_declaration, result.encoding);
    return stream.str();
}
#endif

std::size_t countLost(const std::string& bytes, const std::string& written) {
    std::unordered_map<std::string, std::size_t> lines;
    std::string line;
    for (std::istringstream stream(written); std::getline(stream, line);)
        ++lines[line];
    std::size_t lost = 0;
    for (std::istringstream stream(bytes); std::getline(stream, line);) {
        const auto found = lines.find(line);
        if (found == lines.end() || found->second == 0)
            ++lost;
        else
            --found->second;
    }
    return lost;
}

struct Library {
    const char* name;
    std::function<Result(const std::string& bytes, const std::string& name)> run;
    std::size_t read = 0, same = 0, lost = 0;
};

} // namespace

int main(int argc, char** argv) {
    std::vector<Library> libraries = {
        {"QRNDOM, kept layout", [](auto&, auto& name) { return byQrndom(name, true); }},
        {"QRNDOM", [](auto&, auto& name) { return byQrndom(name, false); }},
#ifdef QRNDOM_BENCH_PUGIXML
        {"pugixml", [](auto& bytes, auto&) { return byPugiXml(bytes); }},
#endif
#ifdef QRNDOM_BENCH_LIBXML2
        {"libxml2", byLibxml2},
#endif
#ifdef QRNDOM_BENCH_TINYXML2
        {"TinyXML-2", [](auto& bytes, auto&) { return byTinyXml2(bytes); }},
#endif
    };
    std::size_t files = 0;
    std::ifstream list(argc > 1 ? argv[1] : "");
    for (std::string name; std::getline(list, name); ++files) {
        std::ifstream stream(name, std::ios::binary);
        const std::string bytes = (std::ostringstream() << stream.rdbuf()).str();
        for (Library& library : libraries) {
            const Result written = library.run(bytes, name);
            if (!written)
                continue;
            ++library.read;
            if (*written == bytes)
                ++library.same;
            else
                library.lost += countLost(bytes, *written);
        }
    }
    std::cout << files << " files\n";
    for (const Library& library : libraries)
        std::cout << library.name << ": " << library.read << " read, " << library.same
                  << " written as they were, " << library.lost << " lines changed\n";
    return files > 0 ? 0 : 1;
}
