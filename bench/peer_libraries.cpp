// SPDX-License-Identifier: MIT
#include "libraries.h"

#include <limits>
#include <stdexcept>

#ifdef QRNDOM_BENCH_LIBXML2
#include <libxml/parser.h>
#include <libxml/xmlsave.h>
#endif
#ifdef QRNDOM_BENCH_TINYXML2
#include <tinyxml2.h>
#endif
#ifdef QRNDOM_BENCH_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

[[maybe_unused]] void require(bool isDone, const char* what) {
    if (!isDone)
        throw std::runtime_error(what);
}

} // namespace

#ifdef QRNDOM_BENCH_LIBXML2

namespace {

// Entities replaced, no bound on depth or text size, validated as the others are.
int optionsFor(bool hasDoctype) {
    return XML_PARSE_NOENT | XML_PARSE_HUGE | (hasDoctype ? XML_PARSE_DTDVALID : 0);
}

void visit(const xmlNode* first, NodeCount& count) {
    for (const xmlNode* node = first; node != nullptr; node = node->next) {
        if (node->type == XML_ELEMENT_NODE) {
            ++count.elements;
            visit(node->children, count);
        } else {
            ++count.others;
        }
    }
}

} // namespace

template <>
void Peer<_xmlDoc>::Drop::operator()(xmlDoc* document) const {
    xmlFreeDoc(document);
}

template <>
Peer<_xmlDoc>::Tree Peer<_xmlDoc>::readFile(const Document& document) {
    Tree tree(xmlReadFile(document.path.c_str(), nullptr, optionsFor(document.hasDoctype)));
    require(tree != nullptr, "libxml2 refused the document");
    return tree;
}

template <>
Peer<_xmlDoc>::Tree Peer<_xmlDoc>::readText(const std::string& text, bool hasDoctype) {
    require(text.size() <= std::numeric_limits<int>::max(), "too long for libxml2");
    Tree tree(xmlReadMemory(text.data(), static_cast<int>(text.size()), "text", nullptr,
                            optionsFor(hasDoctype)));
    require(tree != nullptr, "libxml2 refused the document");
    return tree;
}

template <>
NodeCount Peer<_xmlDoc>::walk(const Tree& tree) {
    NodeCount count;
    visit(tree->children, count);
    return count;
}

template <>
void Peer<_xmlDoc>::writeFile(const Tree& tree, const std::string& path) {
    require(xmlSaveFileEnc(path.c_str(), tree.get(), "UTF-8") > 0, "libxml2 did not write");
}

template <>
std::size_t Peer<_xmlDoc>::writeText(const Tree& tree) {
    xmlChar* text = nullptr;
    int length = 0;
    xmlDocDumpMemoryEnc(tree.get(), &text, &length, "UTF-8");
    require(text != nullptr, "libxml2 did not write");
    xmlFree(text);
    return static_cast<std::size_t>(length);
}

#endif
#ifdef QRNDOM_BENCH_TINYXML2

namespace {

void visit(const tinyxml2::XMLNode& parent, NodeCount& count) {
    for (const tinyxml2::XMLNode* node = parent.FirstChild(); node != nullptr;
         node = node->NextSibling()) {
        if (node->ToElement() != nullptr) {
            ++count.elements;
            visit(*node, count);
        } else {
            ++count.others;
        }
    }
}

} // namespace

template <>
void Peer<tinyxml2::XMLDocument>::Drop::operator()(tinyxml2::XMLDocument* document) const {
    delete document;
}

template <>
Peer<tinyxml2::XMLDocument>::Tree Peer<tinyxml2::XMLDocument>::readFile(const Document& document) {
    Tree tree(new tinyxml2::XMLDocument);
    require(tree->LoadFile(document.path.c_str()) == tinyxml2::XML_SUCCESS, tree->ErrorStr());
    return tree;
}

template <>
Peer<tinyxml2::XMLDocument>::Tree Peer<tinyxml2::XMLDocument>::readText(const std::string& text,
                                                                        bool) {
    Tree tree(new tinyxml2::XMLDocument);
    require(tree->Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS, tree->ErrorStr());
    return tree;
}

template <>
NodeCount Peer<tinyxml2::XMLDocument>::walk(const Tree& tree) {
    NodeCount count;
    visit(*tree, count);
    return count;
}

template <>
void Peer<tinyxml2::XMLDocument>::writeFile(const Tree& tree, const std::string& path) {
    require(tree->SaveFile(path.c_str(), true) == tinyxml2::XML_SUCCESS, tree->ErrorStr());
}

template <>
std::size_t Peer<tinyxml2::XMLDocument>::writeText(const Tree& tree) {
    tinyxml2::XMLPrinter printer(nullptr, true);
    tree->Print(&printer);
    return std::string(printer.CStr()).size();
}

#endif
#ifdef QRNDOM_BENCH_PUGIXML

namespace {

constexpr unsigned pugiOptions = pugi::parse_full | pugi::parse_ws_pcdata;

struct StringWriter : pugi::xml_writer {
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }

    std::string text;
};

void visit(const pugi::xml_node& parent, NodeCount& count) {
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_element) {
            ++count.elements;
            visit(node, count);
        } else {
            ++count.others;
        }
    }
}

} // namespace

template <>
void Peer<pugi::xml_document>::Drop::operator()(pugi::xml_document* document) const {
    delete document;
}

template <>
Peer<pugi::xml_document>::Tree Peer<pugi::xml_document>::readFile(const Document& document) {
    Tree tree(new pugi::xml_document);
    require(tree->load_file(document.path.c_str(), pugiOptions), "pugixml refused the document");
    return tree;
}

template <>
Peer<pugi::xml_document>::Tree Peer<pugi::xml_document>::readText(const std::string& text, bool) {
    Tree tree(new pugi::xml_document);
    require(tree->load_buffer(text.data(), text.size(), pugiOptions, pugi::encoding_utf8),
            "pugixml refused the document");
    return tree;
}

template <>
NodeCount Peer<pugi::xml_document>::walk(const Tree& tree) {
    NodeCount count;
    visit(*tree, count);
    return count;
}

template <>
void Peer<pugi::xml_document>::writeFile(const Tree& tree, const std::string& path) {
    require(tree->save_file(path.c_str(), "", pugi::format_raw | pugi::format_no_declaration),
            "pugixml did not write");
}

template <>
std::size_t Peer<pugi::xml_document>::writeText(const Tree& tree) {
    StringWriter writer;
    tree->save(writer, "", pugi::format_raw | pugi::format_no_declaration);
    return writer.text.size();
}

#endif
