// SPDX-License-Identifier: MIT
#include "write/PelXercesTreeWriter.h"

#include "write/PelXercesRefusal.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <algorithm>
#include <string_view>

using xercesc::DOMNode;

namespace {

// Without an end to it, the indentation of a deep document would take the square of its depth.
constexpr std::size_t widest = 256;

constexpr std::size_t longestName = 80; // in a message

// What only a reference can have made, a carriage return, is no white space here.
bool isWhiteSpace(const char16_t* text) {
    return std::u16string_view(text).find_first_not_of(u" \t\n") == std::u16string_view::npos;
}

enum class Content { none, text, other };

// Whether an element holds text, or anything else among white space.
Content contentOf(const DOMNode& element) {
    Content content = Content::none;
    for (const DOMNode* child = element.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        const DOMNode::NodeType type = child->getNodeType();
        if (type == DOMNode::CDATA_SECTION_NODE || type == DOMNode::ENTITY_REFERENCE_NODE)
            return Content::text;
        if (type != DOMNode::TEXT_NODE)
            content = Content::other;
        else if (!isWhiteSpace(child->getNodeValue()))
            return Content::text;
    }
    return content;
}

// Whether white space is kept in an element, by its own attribute or as it is around it.
bool isPreserved(const DOMNode& element, bool isPreservedAround) {
    const DOMNode* const attribute = element.getAttributes()->getNamedItem(u"xml:space");
    if (attribute == nullptr)
        return isPreservedAround;
    const std::u16string_view value = attribute->getNodeValue();
    return value == u"preserve" || (value != u"default" && isPreservedAround);
}

bool isPreservedAround(const DOMNode& node) {
    const DOMNode* const parent = node.getParentNode();
    for (const DOMNode* above = parent; above != nullptr; above = above->getParentNode())
        if (above->getNodeType() == DOMNode::ELEMENT_NODE &&
            above->getAttributes()->getNamedItem(u"xml:space") != nullptr)
            return isPreserved(*above, false);
    return false;
}

// White space and declarations of a document are its writer's.
bool isWrittenInDocument(const DOMNode& child) {
    return child.getNodeType() != DOMNode::TEXT_NODE && !PelXercesDeclaration::isDeclaration(child);
}

} // namespace

PelXercesTreeWriter::PelXercesTreeWriter(PelXercesCheckedMarkup& markup, int indent)
    : out(markup), indentation(static_cast<std::size_t>(std::max(indent, 0))) {
}

void PelXercesTreeWriter::write(const DOMNode& top) {
    const DOMNode* node = &top;
    isPreservedAbove = indentation > 0 && isPreservedAround(top);
    try {
        walk(node);
    } catch (PelXercesRefusal& refusal) {
        while (node != nullptr && node->getNodeType() != DOMNode::ELEMENT_NODE)
            node = node->getParentNode();
        if (node != nullptr)
            refusal.reason +=
                u" (in the element '" +
                PelString(std::u16string_view(node->getNodeName()).substr(0, longestName)) + u"')";
        throw;
    }
    if (indentation > 0 && top.getNodeType() == DOMNode::ELEMENT_NODE)
        newline(0);
}

void PelXercesTreeWriter::walk(const DOMNode*& node) {
    while (node != nullptr) {
        const DOMNode* next = begin(*node);
        while (next == nullptr && !open.empty()) {
            if (open.back().isDocument && isWrittenInDocument(*node))
                newline(0);
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
const DOMNode* PelXercesTreeWriter::begin(const DOMNode& node) {
    const DOMNode::NodeType type = node.getNodeType();
    if (!open.empty() && open.back().isIndented) {
        if (type == DOMNode::TEXT_NODE)
            return nullptr;
        newline(open.size());
    }
    switch (type) {
    case DOMNode::DOCUMENT_NODE:
        return beginDocument(node);
    case DOMNode::ELEMENT_NODE:
        return beginElement(node);
    case DOMNode::TEXT_NODE:
        if (open.empty() || !open.back().isDocument)
            out.text(node.getNodeValue());
        break;
    case DOMNode::CDATA_SECTION_NODE:
        out.cdata(node.getNodeValue());
        break;
    case DOMNode::ENTITY_REFERENCE_NODE:
        out.markup(u"&").name(node.getNodeName()).markup(u";");
        break;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
        if (!PelXercesDeclaration::isDeclaration(node))
            out.instruction(node.getNodeName(), node.getNodeValue());
        break;
    case DOMNode::COMMENT_NODE:
        out.comment(node.getNodeValue());
        break;
    case DOMNode::DOCUMENT_TYPE_NODE:
        writeDocumentType(node);
        break;
    default:
        throw PelXercesRefusal{u"a node of this kind is not written by itself"};
    }
    return nullptr;
}

const DOMNode* PelXercesTreeWriter::beginDocument(const DOMNode& document) {
    bool hasRoot = false;
    for (const DOMNode* child = document.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        hasRoot = hasRoot || child->getNodeType() == DOMNode::ELEMENT_NODE;
        if (hasRoot && child->getNodeType() == DOMNode::DOCUMENT_TYPE_NODE)
            throw PelXercesRefusal{u"the document type stands after the root element"};
    }
    if (!hasRoot)
        throw PelXercesRefusal{u"the document has no root element"};
    open.push_back({&document, true, false, false, isPreservedAbove});
    return document.getFirstChild();
}

const DOMNode* PelXercesTreeWriter::beginElement(const DOMNode& element) {
    out.markup(u"<").name(element.getNodeName());
    const xercesc::DOMNamedNodeMap& attributes = *element.getAttributes();
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t i = 0; i < count; ++i) {
        const DOMNode& attribute = *attributes.item(i);
        out.markup(u" ").name(attribute.getNodeName()).markup(u"=\"");
        out.attribute(PelXercesLinks::valueOf(attribute)).markup(u"\"");
    }
    const DOMNode* first = element.getFirstChild();
    while (first != nullptr && first->getNodeType() == DOMNode::TEXT_NODE &&
           *first->getNodeValue() == 0)
        first = first->getNextSibling(); // an empty text is none
    if (first == nullptr) {
        out.markup(u"/>");
        return nullptr;
    }
    out.markup(u">");
    open.push_back(opened(element));
    return first;
}

PelXercesTreeWriter::OpenNode PelXercesTreeWriter::opened(const DOMNode& element) const {
    OpenNode node{&element, false, false, false, false};
    if (indentation == 0)
        return node;
    const Content content = contentOf(element);
    node.isPreserved =
        isPreserved(element, open.empty() ? isPreservedAbove : open.back().isPreserved);
    node.isWithinText = content == Content::text || (!open.empty() && open.back().isWithinText);
    node.isIndented = content == Content::other && !node.isWithinText && !node.isPreserved;
    return node;
}

void PelXercesTreeWriter::writeDocumentType(const DOMNode& node) {
    const auto& type = static_cast<const xercesc::DOMDocumentType&>(node);
    // The engine answers an empty public identifier for one that is not there.
    const bool hasPublicId = type.getPublicId() != nullptr && *type.getPublicId() != 0;
    out.markup(u"<!DOCTYPE ").name(type.getName());
    if (hasPublicId)
        out.markup(u" PUBLIC").identifier(type.getPublicId());
    else if (type.getSystemId() != nullptr)
        out.markup(u" SYSTEM");
    if (type.getSystemId() != nullptr)
        out.identifier(type.getSystemId());
    if (type.getInternalSubset() != nullptr)
        out.markup(u" [").subset(type.getInternalSubset()).markup(u"]");
    out.markup(u">");
}

void PelXercesTreeWriter::end(const OpenNode& parent) {
    if (parent.isDocument)
        return;
    if (parent.isIndented)
        newline(open.size());
    out.markup(u"</").name(parent.node->getNodeName()).markup(u">");
}

void PelXercesTreeWriter::newline(std::size_t level) {
    if (level > 0 && open.front().isDocument)
        --level;
    out.newline(level < widest ? std::min(level * indentation, widest) : widest);
}
