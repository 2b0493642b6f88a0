// SPDX-License-Identifier: MIT
#include "jobs.h"

#include <cstdlib>
#include <stdexcept>

#ifdef QRNDOM_BENCH_LIBXML2
#include <libxml/parser.h>
#include <libxml/tree.h>
#endif
#ifdef QRNDOM_BENCH_TINYXML2
#include <tinyxml2.h>
#endif
#ifdef QRNDOM_BENCH_PUGIXML
#include <pugixml.hpp>
#endif

#ifdef QRNDOM_BENCH_LIBXML2

namespace {

const xmlChar* bytesOf(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

LibXml2::Tree makeTree(const char* root) {
    LibXml2::Tree tree(xmlNewDoc(nullptr));
    xmlDocSetRootElement(tree.get(), xmlNewNode(nullptr, BAD_CAST root));
    return tree;
}

xmlNode* rootOf(const LibXml2::Tree& tree) {
    return xmlDocGetRootElement(tree.get());
}

bool isElement(const xmlNode& node, const char* name) {
    return node.type == XML_ELEMENT_NODE && xmlStrEqual(node.name, BAD_CAST name) != 0;
}

void collect(xmlNode* first, const char* name, std::vector<xmlNode*>& found) {
    for (xmlNode* node = first; node != nullptr; node = node->next) {
        if (isElement(*node, name))
            found.push_back(node);
        collect(node->children, name, found);
    }
}

} // namespace

template <>
Job Jobs<LibXml2>::readMessages(const std::vector<std::string>& messages) {
    return [&messages] {
        constexpr int options =
            XML_PARSE_NOENT | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
        long accepted = 0;
        for (const std::string& message : messages) {
            const LibXml2::Tree tree(xmlReadMemory(message.data(), static_cast<int>(message.size()),
                                                   "message", nullptr, options));
            accepted += tree ? 1 : 0;
            if (!tree && std::string(xmlGetLastError()->message).empty())
                throw std::runtime_error("libxml2 does not say why");
        }
        return accepted;
    };
}

template <>
Job Jobs<LibXml2>::convertRows(const std::vector<Row>& rows) {
    return [&rows] {
        xmlChar* bytes = nullptr;
        int size = 0;
        {
            const LibXml2::Tree table = makeTree("table");
            for (const Row& values : rows) {
                xmlNode* const row = xmlNewChild(rootOf(table), nullptr, BAD_CAST "row", nullptr);
                xmlNewTextChild(row, nullptr, BAD_CAST "product", bytesOf(values.product));
                xmlNewTextChild(row, nullptr, BAD_CAST "maker", bytesOf(values.maker));
                xmlNewTextChild(row, nullptr, BAD_CAST "stock", bytesOf(values.stock));
            }
            xmlDocDumpMemoryEnc(table.get(), &bytes, &size, "UTF-8");
        }
        const LibXml2::Tree table = LibXml2::readText(
            {reinterpret_cast<char*>(bytes), static_cast<std::size_t>(size)}, false);
        xmlFree(bytes);
        long total = 0;
        for (const xmlNode* row = rootOf(table)->children; row != nullptr; row = row->next) {
            xmlChar* const text = xmlNodeGetContent(row->last);
            total += std::strtol(reinterpret_cast<char*>(text), nullptr, 10);
            xmlFree(text);
        }
        return total;
    };
}

template <>
Job Jobs<LibXml2>::insertInFront(int count) {
    return [count] {
        const LibXml2::Tree list = makeTree("list");
        xmlNode* const root = rootOf(list);
        for (int i = 0; i < count; ++i) {
            xmlNode* const item = xmlNewNode(nullptr, BAD_CAST "item");
            root->children != nullptr ? xmlAddPrevSibling(root->children, item)
                                      : xmlAddChild(root, item);
        }
        return static_cast<long>(xmlChildElementCount(root));
    };
}

template <>
Job Jobs<LibXml2>::countChildren(const Tree& tree) {
    return [root = rootOf(tree)] {
        long seen = 0;
        for (const xmlNode* child = root->children; child != nullptr; child = child->next)
            ++seen;
        return seen;
    };
}

template <>
Job Jobs<LibXml2>::countItems(const Tree& tree) {
    return [root = rootOf(tree)] {
        long seen = 0;
        for (const xmlNode* child = root->children; child != nullptr; child = child->next)
            seen += isElement(*child, "item") ? 1 : 0;
        return seen;
    };
}

template <>
Job Jobs<LibXml2>::copyTexts(const Tree& tree) {
    std::vector<xmlNode*> names;
    collect(rootOf(tree), "name", names);
    return [names] {
        std::size_t total = 0;
        for (const xmlNode* name : names) {
            const std::string text = reinterpret_cast<const char*>(name->children->content);
            total += text.size();
        }
        return static_cast<long>(total);
    };
}

#endif
#ifdef QRNDOM_BENCH_TINYXML2

namespace {

void append(tinyxml2::XMLElement& parent, const char* name, const std::string& text) {
    parent.InsertNewChildElement(name)->SetText(text.c_str());
}

void collect(const tinyxml2::XMLElement& parent, const char* name,
             std::vector<const tinyxml2::XMLElement*>& found) {
    for (const auto* child = parent.FirstChildElement(); child != nullptr;
         child = child->NextSiblingElement()) {
        if (std::string_view(child->Name()) == name)
            found.push_back(child);
        collect(*child, name, found);
    }
}

} // namespace

template <>
Job Jobs<TinyXml2>::readMessages(const std::vector<std::string>& messages) {
    return [&messages] {
        long accepted = 0;
        for (const std::string& message : messages) {
            tinyxml2::XMLDocument tree;
            if (tree.Parse(message.data(), message.size()) == tinyxml2::XML_SUCCESS)
                ++accepted;
            else if (std::string(tree.ErrorStr()).empty())
                throw std::runtime_error("tinyxml2 does not say why");
        }
        return accepted;
    };
}

template <>
Job Jobs<TinyXml2>::convertRows(const std::vector<Row>& rows) {
    return [&rows] {
        tinyxml2::XMLPrinter printer(nullptr, true);
        {
            tinyxml2::XMLDocument table;
            tinyxml2::XMLElement* const root = table.NewElement("table");
            table.InsertEndChild(root);
            for (const Row& values : rows) {
                tinyxml2::XMLElement* const row = root->InsertNewChildElement("row");
                append(*row, "product", values.product);
                append(*row, "maker", values.maker);
                append(*row, "stock", values.stock);
            }
            table.Print(&printer);
        }
        tinyxml2::XMLDocument table;
        table.Parse(printer.CStr());
        long total = 0;
        for (const auto* row = table.RootElement()->FirstChildElement("row"); row != nullptr;
             row = row->NextSiblingElement("row"))
            total += row->FirstChildElement("stock")->Int64Text();
        return total;
    };
}

template <>
Job Jobs<TinyXml2>::insertInFront(int count) {
    return [count] {
        tinyxml2::XMLDocument list;
        tinyxml2::XMLElement* const root = list.NewElement("list");
        list.InsertEndChild(root);
        for (int i = 0; i < count; ++i)
            root->InsertFirstChild(list.NewElement("item"));
        long seen = 0;
        for (const auto* item = root->FirstChild(); item != nullptr; item = item->NextSibling())
            ++seen;
        return seen;
    };
}

template <>
Job Jobs<TinyXml2>::countChildren(const Tree& tree) {
    return [root = tree->RootElement()] {
        long seen = 0;
        for (const auto* child = root->FirstChild(); child != nullptr; child = child->NextSibling())
            ++seen;
        return seen;
    };
}

template <>
Job Jobs<TinyXml2>::countItems(const Tree& tree) {
    return [root = tree->RootElement()] {
        long seen = 0;
        for (const auto* item = root->FirstChildElement("item"); item != nullptr;
             item = item->NextSiblingElement("item"))
            ++seen;
        return seen;
    };
}

template <>
Job Jobs<TinyXml2>::copyTexts(const Tree& tree) {
    std::vector<const tinyxml2::XMLElement*> names;
    collect(*tree->RootElement(), "name", names);
    return [names] {
        std::size_t total = 0;
        for (const tinyxml2::XMLElement* name : names) {
            const std::string text = name->GetText();
            total += text.size();
        }
        return static_cast<long>(total);
    };
}

#endif
#ifdef QRNDOM_BENCH_PUGIXML

namespace {

void append(pugi::xml_node parent, const char* name, const std::string& text) {
    parent.append_child(name).text().set(text.c_str());
}

struct Output : pugi::xml_writer {
    void write(const void* data, std::size_t size) override {
        bytes.append(static_cast<const char*>(data), size);
    }

    std::string bytes;
};

} // namespace

template <>
Job Jobs<PugiXml>::readMessages(const std::vector<std::string>& messages) {
    return [&messages] {
        long accepted = 0;
        for (const std::string& message : messages) {
            pugi::xml_document tree;
            const pugi::xml_parse_result result =
                tree.load_buffer(message.data(), message.size(),
                                 pugi::parse_full | pugi::parse_ws_pcdata, pugi::encoding_utf8);
            if (result)
                ++accepted;
            else if (std::string(result.description()).empty())
                throw std::runtime_error("pugixml does not say why");
        }
        return accepted;
    };
}

template <>
Job Jobs<PugiXml>::convertRows(const std::vector<Row>& rows) {
    return [&rows] {
        Output output;
        {
            pugi::xml_document table;
            pugi::xml_node root = table.append_child("table");
            for (const Row& values : rows) {
                const pugi::xml_node row = root.append_child("row");
                append(row, "product", values.product);
                append(row, "maker", values.maker);
                append(row, "stock", values.stock);
            }
            table.save(output, "", pugi::format_raw | pugi::format_no_declaration);
        }
        pugi::xml_document table;
        table.load_buffer(output.bytes.data(), output.bytes.size(), pugi::parse_default,
                          pugi::encoding_utf8);
        long total = 0;
        for (const pugi::xml_node row : table.child("table").children("row"))
            total += row.child("stock").text().as_llong();
        return total;
    };
}

template <>
Job Jobs<PugiXml>::insertInFront(int count) {
    return [count] {
        pugi::xml_document list;
        pugi::xml_node root = list.append_child("list");
        for (int i = 0; i < count; ++i)
            root.prepend_child("item");
        return static_cast<long>(std::distance(root.begin(), root.end()));
    };
}

template <>
Job Jobs<PugiXml>::countChildren(const Tree& tree) {
    return [root = tree->document_element()] {
        long seen = 0;
        for (pugi::xml_node child = root.first_child(); child; child = child.next_sibling())
            ++seen;
        return seen;
    };
}

template <>
Job Jobs<PugiXml>::countItems(const Tree& tree) {
    return [root = tree->document_element()] {
        long seen = 0;
        for ([[maybe_unused]] const pugi::xml_node item : root.children("item"))
            ++seen;
        return seen;
    };
}

template <>
Job Jobs<PugiXml>::copyTexts(const Tree& tree) {
    struct Names : pugi::xml_tree_walker {
        bool for_each(pugi::xml_node& node) override {
            if (std::string_view(node.name()) == "name")
                found.push_back(node);
            return true;
        }

        std::vector<pugi::xml_node> found;
    } names;
    tree->traverse(names);
    return [found = names.found] {
        std::size_t total = 0;
        for (const pugi::xml_node name : found) {
            const std::string text = name.child_value();
            total += text.size();
        }
        return static_cast<long>(total);
    };
}

#endif
