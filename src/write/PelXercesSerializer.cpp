// SPDX-License-Identifier: MIT
#include "write/PelXercesSerializer.h"

#include "core/PelCharacters.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesAttributeOrder.h"
#include "xerces/tree/PelXercesRules.h"

#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLChar.hpp>

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <string_view>

using xercesc::DOMNode;
using Action = PelXercesEscapes::Action;

namespace {

constexpr std::size_t longestName = 80; // in a message

void require(bool isGood, const char16_t* reason) {
    if (!isGood)
        throw PelXercesWriteError{reason};
}

bool has(std::u16string_view text, std::u16string_view part) {
    return text.find(part) != text.npos;
}

/// Tells where in an internal subset character references are recognised: in the values of entities
/// and the defaults of attributes.
class SubsetScan {
public:
    explicit SubsetScan(const char16_t* subset) : at(subset) {}

    /// `place` is never before the last one.
    bool recognisesReferencesAt(const char16_t* place) {
        while (at < place)
            step();
        return quote != 0 && hasValues && !isReference;
    }

private:
    void step() {
        if (end != nullptr) {
            if (begins(end)) {
                at += std::u16string_view(end).size();
                end = nullptr;
                return;
            }
        } else if (quote != 0) {
            if (*at == quote)
                quote = 0;
            else if (*at == u'&')
                isReference = true;
            else if (*at == u';')
                isReference = false;
        } else if (begins(u"<!--")) {
            at += 3;
            end = u"-->";
        } else if (begins(u"<?")) {
            end = u"?>";
        } else if (begins(u"<!")) {
            hasValues = begins(u"<!ENTITY") || begins(u"<!ATTLIST");
        } else if (begins(u"SYSTEM") || begins(u"PUBLIC")) {
            hasValues = false;
        } else if (*at == u'"' || *at == u'\'') {
            quote = *at;
            isReference = false;
        }
        ++at;
    }

    bool begins(const char16_t* word) const {
        const char16_t* unit = at;
        while (*word != 0 && *unit == *word) {
            ++unit;
            ++word;
        }
        return *word == 0;
    }

    const char16_t* at;
    const char16_t* end = nullptr; // of the comment or instruction that `at` is in
    char16_t quote = 0;            // of the literal that `at` is in
    bool isReference = false;      // within a literal, between `&` and `;`
    bool hasValues = false;        // the literals of this declaration are values
};

} // namespace

PelXercesSerializer::PelXercesSerializer(PelXercesMarkup& markup,
                                         const PelXercesEscapes::Set& escapeTables,
                                         PelXercesLayout& usedLayout)
    : out(markup), escapes(escapeTables), layout(usedLayout), isStrict(escapes.text.isStrict) {
}

void PelXercesSerializer::writeNode(const DOMNode& top) {
    const DOMNode* node = &top;
    try {
        walk(node);
    } catch (PelXercesWriteError& error) {
        if (isStrict)
            addElement(error, node);
        throw;
    }
    layout.end();
}

void PelXercesSerializer::addElement(PelXercesWriteError& error, const DOMNode* node) {
    while (node != nullptr && node->getNodeType() != DOMNode::ELEMENT_NODE)
        node = node->getParentNode();
    if (node != nullptr)
        error.reason += u" (in the element '" +
                        PelString(std::u16string_view(node->getNodeName()).substr(0, longestName)) +
                        u"')";
}

void PelXercesSerializer::walk(const DOMNode*& node) {
    while (node != nullptr) {
        const DOMNode* next = begin(*node);
        while (next == nullptr && !open.empty()) {
            if (open.back().isDocument)
                layout.endDocumentChild(*node);
            next = node->getNextSibling();
            if (next == nullptr) {
                const OpenNode parent = open.back();
                open.pop_back();
                node = parent.node;
                end(parent);
            }
        }
        node = next;
    }
}

// Gives the first child that is to be written.
const DOMNode* PelXercesSerializer::begin(const DOMNode& node) {
    const DOMNode::NodeType type = node.getNodeType();
    if (layout.replaces(node, type))
        return nullptr;
    switch (type) {
    case DOMNode::DOCUMENT_NODE:
        if (isStrict)
            checkDocument(node);
        if (node.hasChildNodes())
            open.push_back({&node, true});
        return node.getFirstChild();
    case DOMNode::ELEMENT_NODE:
        return beginElement(node);
    default:
        leaf(node, type);
        return nullptr;
    }
}

void PelXercesSerializer::leaf(const DOMNode& node, DOMNode::NodeType type) {
    switch (type) {
    case DOMNode::TEXT_NODE:
        out.add(node.getNodeValue(), escapes.text);
        break;
    case DOMNode::CDATA_SECTION_NODE:
        cdata(node.getNodeValue());
        break;
    case DOMNode::ENTITY_REFERENCE_NODE:
        out.markup(u"&");
        name(node.getNodeName()).markup(u";");
        break;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
        instruction(node);
        break;
    case DOMNode::COMMENT_NODE:
        comment(node.getNodeValue());
        break;
    case DOMNode::DOCUMENT_TYPE_NODE:
        documentType(node);
        break;
    default:
        require(!isStrict, u"a node of this kind is not written by itself");
        std::cerr << "Unrecognized node type = " << static_cast<long>(type) << std::endl;
    }
}

void PelXercesSerializer::checkDocument(const DOMNode& document) const {
    bool hasRoot = false;
    for (const DOMNode* child = document.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        hasRoot = hasRoot || child->getNodeType() == DOMNode::ELEMENT_NODE;
        require(!hasRoot || child->getNodeType() != DOMNode::DOCUMENT_TYPE_NODE,
                u"the document type stands after the root element");
    }
    require(hasRoot, u"the document has no root element");
}

void PelXercesSerializer::startTag(const DOMNode& element) {
    out.markup(u"<");
    name(element.getNodeName());
}

// As they are written; the services have them by name, with all defaults.
const std::vector<xercesc::DOMAttr*>& PelXercesSerializer::attributesOf(const DOMNode& element) {
    PelXercesAttributeOrder::list(element, listed, isStrict);
    if (!hasDefaults)
        listed.erase(std::remove_if(listed.begin(), listed.end(),
                                    [](const auto* one) { return !one->getSpecified(); }),
                     listed.end());
    return listed;
}

void PelXercesSerializer::attribute(const xercesc::DOMAttr& attribute) {
    out.markup(u" ");
    name(attribute.getName()).markup(u"=\"");
    value(attribute, '"');
    out.markup(u"\"");
}

void PelXercesSerializer::value(const xercesc::DOMAttr& attribute, char quote) {
    out.add(PelXercesLinks::valueOf(attribute),
            quote == '"' ? escapes.attribute : escapes.singleQuoted);
}

void PelXercesSerializer::endTag(const DOMNode& element) {
    out.markup(u"</");
    name(element.getNodeName()).markup(u">");
}

const DOMNode* PelXercesSerializer::beginElement(const DOMNode& element) {
    startTag(element);
    for (const xercesc::DOMAttr* const written : attributesOf(element))
        attribute(*written);
    const DOMNode* first = element.getFirstChild();
    while (isStrict && first != nullptr && first->getNodeType() == DOMNode::TEXT_NODE &&
           *first->getNodeValue() == 0)
        first = first->getNextSibling(); // an empty text is none
    if (first == nullptr) {
        out.markup(u"/>");
        return nullptr;
    }
    out.markup(u">");
    open.push_back({&element, false});
    layout.beginContent(element);
    return first;
}

void PelXercesSerializer::end(const OpenNode& parent) {
    if (parent.isDocument)
        return;
    layout.endContent();
    endTag(*parent.node);
}

PelXercesMarkup& PelXercesSerializer::name(const char16_t* characters) {
    KnownName& slot = known[(reinterpret_cast<std::uintptr_t>(characters) >> 3) % known.size()];
    if (slot.characters != characters) {
        const std::size_t length = std::u16string_view(characters).size();
        if (isStrict)
            checkName(characters, length);
        slot = {characters, length};
    }
    return out.addKnown(characters, slot.length);
}

// By now XML 1.0 allows the names of XML 1.1, and the engine reads them.
void PelXercesSerializer::checkName(const char16_t* characters, std::size_t length) const {
    if (!xercesc::XMLChar1_1::isValidName(characters, length))
        throw PelXercesWriteError{u"'" + PelString(std::u16string_view(characters, length)) +
                                  u"' is no name in XML"};
    for (const char16_t* at = characters; *at != 0; ++at) {
        if (out.actionFor(at, escapes.name) != Action::copy)
            throw PelXercesWriteError{u"the name '" +
                                      PelString(std::u16string_view(characters, length)) +
                                      u"' holds a character that cannot be written"};
        if (PelCharacters::isHighSurrogate(*at))
            ++at;
    }
}

// A reference means nothing in a section, so it stands between two. None of them is empty unless
// all is, for readers take no notice of an empty one.
void PelXercesSerializer::cdata(const char16_t* data) {
    bool isOpen = !isStrict || *data == 0;
    if (isOpen)
        out.markup(u"<![CDATA[");
    if (!isStrict)
        out.add(data, escapes.cdata);
    while (isStrict && *data != 0) {
        const bool isInside = out.actionFor(data, escapes.cdata) != Action::reference;
        if (isInside && !isOpen)
            out.markup(u"<![CDATA[");
        else if (!isInside && isOpen)
            out.markup(u"]]>");
        isOpen = isInside;
        const char16_t* const next = isInside ? out.addPlain(data, escapes.cdata) : data;
        data = next != data ? next : out.addEscaped(data, escapes.cdata);
    }
    if (isOpen)
        out.markup(u"]]>");
}

void PelXercesSerializer::comment(const char16_t* data) {
    const std::u16string_view text = data;
    require(!isStrict || (!has(text, u"--") && (text.empty() || text.back() != u'-')),
            u"a comment holds two hyphens, or one at its end");
    out.markup(u"<!--").add(data, escapes.comment).markup(u"-->");
}

void PelXercesSerializer::instruction(const DOMNode& node) {
    const char16_t* const target = node.getNodeName();
    const char16_t* const data = node.getNodeValue();
    const bool hasData = data != nullptr && *data != 0;
    require(!isStrict || !PelXercesRules::isReserved(target), u"an instruction has the target xml");
    require(!isStrict || !hasData || !has(data, u"?>"), u"an instruction holds ?>");
    out.markup(u"<?");
    name(target);
    if (hasData)
        out.markup(u" ").add(data, escapes.instruction);
    out.markup(u"?>");
}

void PelXercesSerializer::documentType(const DOMNode& node) {
    const auto& type = static_cast<const xercesc::DOMDocumentType&>(node);
    // The engine answers an empty public identifier for one that is not there.
    const bool hasPublicId = type.getPublicId() != nullptr && *type.getPublicId() != 0;
    out.markup(u"<!DOCTYPE ");
    name(type.getName());
    if (hasPublicId) {
        out.markup(u" PUBLIC");
        identifier(type.getPublicId());
    } else if (type.getSystemId() != nullptr) {
        out.markup(u" SYSTEM");
    }
    if (type.getSystemId() != nullptr)
        identifier(type.getSystemId());
    if (type.getInternalSubset() != nullptr) {
        if (isStrict)
            out.markup(u" ");
        out.markup(u"[");
        subset(type.getInternalSubset());
        out.markup(u"]");
    }
    out.markup(u">");
}

void PelXercesSerializer::identifier(const char16_t* identifier) {
    const bool hasQuote = has(identifier, u"\"");
    require(!isStrict || !hasQuote || !has(identifier, u"'"),
            u"an identifier holds quotes of both kinds");
    if (hasQuote)
        out.markup(u" '").add(identifier, escapes.identifier).markup(u"'");
    else
        out.markup(u" \"").add(identifier, escapes.identifier).markup(u"\"");
}

void PelXercesSerializer::subset(const char16_t* subset) {
    SubsetScan scan(subset);
    for (;;) {
        subset = out.addPlain(subset, escapes.subset);
        if (*subset == 0)
            return;
        const bool isValue = scan.recognisesReferencesAt(subset);
        subset = out.addEscaped(subset, isValue ? escapes.literal : escapes.subset);
    }
}
