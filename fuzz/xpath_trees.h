// SPDX-License-Identifier: MIT
// One document in this library, in libxml2 and in pugixml. Each is asked by an expression, from a node by its
// number, and says what it gives in the same words: nodes and attributes by their numbers in document order,
// where texts side by side are one.
#pragma once

#include "support.h"
#include "xpath_by_chance.h"

#include <cmath>
#include <cstdio>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>
#include <memory>
#include <pugixml.hpp>
#include <unordered_map>

inline const std::string refused = "refused";

inline std::string shown(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", number);
    return std::isnan(number) ? "number nan" : std::string("number ") + text;
}

inline std::string shown(bool isTrue) { return isTrue ? "truth true" : "truth false"; }

inline std::string shown(std::vector<std::size_t> numbers) {
    std::string text = "set";
    std::sort(numbers.begin(), numbers.end());
    for (const std::size_t number : numbers) text += " " + std::to_string(number);
    return text;
}

class ThisLibrary {
public:
    explicit ThisLibrary(DocumentByChance& made) : mustDeclare(!made.hasPlainNames) {
        PelDOMReader reader;
        reader.setValidation(PelDOMReader::NEVER);
        document = reader.readBytes(made.sectioned.data(), made.sectioned.size(), "made");
        splitTexts(made.chance, document);
        add(document);
    }

    // The number of one that is not an attribute.
    std::size_t anyNode(std::size_t drawn) const {
        std::size_t number = drawn % places.size();
        while (places[number].attribute.isEmpty() == 0) --number;
        return number;
    }

    std::string ask(const std::string& expression, std::size_t number) const {
        PelDOMXPath path{PelString(expression)};
        const PelDOMNode& context = places[number].node;
        if (mustDeclare || context.getNodeType() > PelDOM::CDATA_SECTION_NODE) { // beside the root, perhaps
            path.setNamespace("p", "urn:p");
            path.setNamespace("q", "urn:q");
        }
        const bool isTrue = path.evaluateBoolean(context);
        if (path.getMessage().isEmpty() == 0) return refused + (": " + path.getMessage().toUtf8());
        switch (path.getType()) {
        case PelDOMXPath::NODES:
            return askForSet(path, context);
        case PelDOMXPath::NUMBER:
            return shown(path.evaluateNumber(context));
        case PelDOMXPath::STRING:
            return "text " + path.evaluateString(context).toUtf8();
        default:
            return shown(isTrue);
        }
    }

private:
    struct Place {
        PelDOMNode node;
        PelString attribute;
    };

    static bool isText(const PelDOMNode& node) {
        return node.getNodeType() == PelDOM::TEXT_NODE || node.getNodeType() == PelDOM::CDATA_SECTION_NODE;
    }

    // Texts side by side, empty ones among them.
    void splitTexts(Chance& chance, PelDOMNode parent) {
        for (PelDOMNode child = parent.getFirstChild(); child; child = child.getNextSibling()) {
            splitTexts(chance, child);
            if (!isText(child) || chance.oneIn(2)) continue;
            const std::u16string text(child.getNodeValue().view());
            const std::size_t at = chance.below(text.size() + 1);
            if (child.setNodeValue(PelString(text.substr(at))) != PelDOM::SUCCESS) continue; // half a pair
            parent.insertBefore(document.createTextNode(PelString(text.substr(0, at))), child);
        }
    }

    void add(const PelDOMNode& node) {
        places.push_back({node, {}});
        if (node.getNodeType() == PelDOM::ELEMENT_NODE)
            for (const PelDOMAttribute& attribute : PelDOMElement(node).getAttributes())
                if (attribute.name.toUtf8().compare(0, 5, "xmlns") != 0)
                    places.push_back({node, attribute.name});
        bool isRun = false;
        for (PelDOMNode child = node.getFirstChild(); child; child = child.getNextSibling()) {
            if (child.getNodeType() == PelDOM::DOCUMENT_TYPE_NODE) continue;
            const bool isIn = isText(child);
            if (isIn && (isRun || child.getNodeValue().isEmpty() != 0)) continue;
            isRun = isIn;
            add(child);
        }
    }

    std::size_t numberOf(const PelDOMNode& node, const PelString& attribute) const {
        const auto found = std::find_if(places.begin(), places.end(),
            [&](const Place& place) { return place.node == node && place.attribute == attribute; });
        return static_cast<std::size_t>(found - places.begin());
    }

    std::string askForSet(const PelDOMXPath& path, const PelDOMNode& context) const {
        std::vector<std::size_t> numbers;
        for (const PelDOMNode& node : path.selectNodes(context)) numbers.push_back(numberOf(node, {}));
        const std::size_t nodes = numbers.size();
        for (const PelDOMAttributeMatch& match : path.selectAttributes(context))
            numbers.push_back(numberOf(match.element, match.name));
        const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(nodes);
        if (!std::is_sorted(numbers.begin(), middle) || !std::is_sorted(middle, numbers.end()))
            return "set out of order";
        const PelDOMNode first = path.selectNode(context);
        if (nodes > 0 ? numberOf(first, {}) != numbers.front() : !first.isNull())
            return "set with another first";
        return shown(std::move(numbers));
    }

    const bool mustDeclare;
    PelDOMDocument document;
    std::vector<Place> places;
};

extern "C" inline void sayNothing(void*, xmlError*) {}

class Libxml2 {
public:
    explicit Libxml2(const DocumentByChance& made)
        : document(xmlReadMemory(made.sectioned.data(), static_cast<int>(made.sectioned.size()), nullptr,
              nullptr, XML_PARSE_NOCDATA | XML_PARSE_NOENT | XML_PARSE_NONET)),
          asked(xmlXPathNewContext(document)) {
        asked->error = sayNothing;
        xmlXPathRegisterNs(asked, BAD_CAST "p", BAD_CAST "urn:p");
        xmlXPathRegisterNs(asked, BAD_CAST "q", BAD_CAST "urn:q");
        add(reinterpret_cast<xmlNode*>(document));
    }
    Libxml2(const Libxml2&) = delete;
    Libxml2& operator=(const Libxml2&) = delete;
    ~Libxml2() {
        xmlXPathFreeContext(asked);
        xmlFreeDoc(document);
    }

    std::string ask(const std::string& expression, std::size_t number) const {
        asked->node = nodes[number];
        asked->proximityPosition = asked->contextSize = 1;
        const std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)> found(
            xmlXPathEval(BAD_CAST expression.c_str(), asked), xmlXPathFreeObject);
        if (!found) return refused;
        switch (found->type) {
        case XPATH_NODESET: {
            std::vector<std::size_t> numbers;
            for (int i = 0; found->nodesetval != nullptr && i < found->nodesetval->nodeNr; ++i) {
                const auto place = numbering.find(found->nodesetval->nodeTab[i]);
                numbers.push_back(place != numbering.end() ? place->second : nodes.size());
            }
            return shown(std::move(numbers));
        }
        case XPATH_NUMBER:
            return shown(found->floatval);
        case XPATH_STRING:
            return "text " + std::string(reinterpret_cast<const char*>(found->stringval));
        default:
            return shown(found->boolval != 0);
        }
    }

private:
    void add(xmlNode* node) {
        numbering.emplace(node, nodes.size());
        nodes.push_back(node);
        if (node->type == XML_ATTRIBUTE_NODE) return;
        for (xmlAttr* attribute = node->type == XML_ELEMENT_NODE ? node->properties : nullptr;
             attribute != nullptr; attribute = attribute->next)
            add(reinterpret_cast<xmlNode*>(attribute));
        for (xmlNode* child = node->children; child != nullptr; child = child->next)
            if (child->type != XML_DTD_NODE) add(child);
    }

    xmlDoc* const document;
    xmlXPathContext* const asked;
    std::vector<xmlNode*> nodes;
    std::unordered_map<const xmlNode*, std::size_t> numbering;
};

class Pugixml {
public:
    explicit Pugixml(const DocumentByChance& made) {
        document.load_string(made.merged.c_str(),
            pugi::parse_default | pugi::parse_pi | pugi::parse_comments | pugi::parse_ws_pcdata);
        add(document);
    }

    std::string ask(const std::string& expression, std::size_t number) const {
        try {
            const pugi::xpath_query query(expression.c_str());
            const pugi::xpath_node& context = nodes[number];
            switch (query.return_type()) {
            case pugi::xpath_type_node_set: {
                std::vector<std::size_t> numbers;
                for (const pugi::xpath_node& node : query.evaluate_node_set(context))
                    numbers.push_back(numbering.at(keyOf(node)));
                return shown(std::move(numbers));
            }
            case pugi::xpath_type_number:
                return shown(query.evaluate_number(context));
            case pugi::xpath_type_string:
                return "text " + query.evaluate_string(context);
            default:
                return shown(query.evaluate_boolean(context));
            }
        } catch (const pugi::xpath_exception&) {
            return refused;
        }
    }

private:
    static const void* keyOf(const pugi::xpath_node& node) {
        return node.attribute() ? static_cast<const void*>(node.attribute().internal_object())
                                : node.node().internal_object();
    }

    void add(const pugi::xpath_node& node) {
        numbering.emplace(keyOf(node), nodes.size());
        nodes.push_back(node);
        if (node.attribute()) return;
        for (const pugi::xml_attribute attribute : node.node().attributes())
            if (std::string_view(attribute.name()).substr(0, 5) != "xmlns") add({attribute, node.node()});
        for (const pugi::xml_node child : node.node().children()) add(child);
    }

    pugi::xml_document document;
    std::vector<pugi::xpath_node> nodes;
    std::unordered_map<const void*, std::size_t> numbering;
};

/// A document as each of them holds it.
struct Trees {
    explicit Trees(unsigned long long number) : made(number), ours(made), libxml2(made), pugixml(made) {}

    DocumentByChance made;
    ThisLibrary ours;
    Libxml2 libxml2;
    Pugixml pugixml;
};
