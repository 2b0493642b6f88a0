// SPDX-License-Identifier: MIT
#include "write/PelXercesNodeWriter.h"

#include "xerces/engine/PelXercesLinks.h"

#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/util/XMLString.hpp>

#include <iostream>
#include <vector>

using xercesc::DOMNode;
using xercesc::XMLString;

namespace {

// Only documents and elements have children that stand in the text.
bool hasWrittenChildren(DOMNode::NodeType type) {
    return type == DOMNode::ELEMENT_NODE || type == DOMNode::DOCUMENT_NODE;
}

} // namespace

PelXercesNodeWriter::PelXercesNodeWriter(PelXercesMarkup& markup, const std::u16string& encoding,
                                         bool newlines)
    : out(markup), encodingName(encoding), hasNewlines(newlines) {
}

std::ostream& PelXercesNodeWriter::writeNode(std::ostream& stream, const DOMNode& top) {
    struct OpenNode {
        const DOMNode* node;
        bool isDocument;
    };
    std::vector<OpenNode> open; // the ancestors whose ends are still to come
    for (const DOMNode* node = &top; node != nullptr;) {
        const DOMNode::NodeType type = node->getNodeType();
        begin(*node, type);
        const DOMNode* next = hasWrittenChildren(type) ? node->getFirstChild() : nullptr;
        if (next != nullptr)
            open.push_back({node, type == DOMNode::DOCUMENT_NODE});
        while (next == nullptr && !open.empty()) {
            const OpenNode parent = open.back();
            if (parent.isDocument) {
                newline();
                out.flush();
                stream.flush();
            }
            next = node->getNextSibling();
            if (next == nullptr) {
                node = parent.node;
                open.pop_back();
                if (!parent.isDocument)
                    out.markup(u"</").name(node->getNodeName()).markup(u">");
            }
        }
        node = next;
    }
    return stream;
}

void PelXercesNodeWriter::begin(const DOMNode& node, DOMNode::NodeType type) {
    switch (type) {
    case DOMNode::DOCUMENT_NODE:
        beginDocument(static_cast<const xercesc::DOMDocument&>(node));
        break;
    case DOMNode::ELEMENT_NODE:
        beginElement(node);
        break;
    case DOMNode::TEXT_NODE:
        out.add(node.getNodeValue(), *textPlace);
        break;
    case DOMNode::CDATA_SECTION_NODE:
        out.markup(u"<![CDATA[").plain(node.getNodeValue()).markup(u"]]>");
        break;
    case DOMNode::ENTITY_REFERENCE_NODE:
        out.markup(u"&").name(node.getNodeName()).markup(u";");
        break;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
        if (PelXercesDeclaration::isDeclaration(node)) {
            writeDeclaration(PelXercesDeclaration::read(node));
            break;
        }
        out.markup(u"<?").name(node.getNodeName());
        if (node.getNodeValue() != nullptr && *node.getNodeValue() != 0)
            out.markup(u" ").plain(node.getNodeValue());
        out.markup(u"?>");
        break;
    case DOMNode::COMMENT_NODE:
        out.markup(u"<!--").plain(node.getNodeValue()).markup(u"-->");
        break;
    case DOMNode::DOCUMENT_TYPE_NODE:
        writeDocumentType(node);
        break;
    default:
        std::cerr << "Unrecognized node type = " << static_cast<long>(type) << std::endl;
    }
}

void PelXercesNodeWriter::beginElement(const DOMNode& element) {
    newline();
    out.markup(u"<").name(element.getNodeName());
    const xercesc::DOMNamedNodeMap& attributes = *element.getAttributes();
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t i = 0; i < count; ++i) {
        const DOMNode& attribute = *attributes.item(i);
        out.markup(u" ").name(attribute.getNodeName()).markup(u"=\"");
        out.add(PelXercesLinks::valueOf(attribute), *attributePlace).markup(u"\"");
    }
    if (element.getFirstChild() != nullptr)
        out.markup(u">");
    else
        out.markup(u"/>");
}

// A document that was read as XML 1.1 would be another one without its version, or none.
void PelXercesNodeWriter::beginDocument(const xercesc::DOMDocument& document) {
    if (!XMLString::equals(document.getXmlVersion(), u"1.1"))
        return;
    textPlace = &PelXercesEscapes::uncheckedText11;
    attributePlace = &PelXercesEscapes::uncheckedAttribute11;
    writeDeclaration({u"1.1", PelString(), std::nullopt});
    newline();
}

void PelXercesNodeWriter::writeDeclaration(const PelXercesDeclaration& values) {
    out.markup(u"<?xml version=\"").plain(values.version.view().data());
    out.markup(u"\" encoding=\"").plain(encodingName.c_str());
    if (values.standalone)
        out.markup(u"\" standalone=\"").plain(values.standalone->view().data());
    out.markup(u"\"?>\n");
    newline();
}

void PelXercesNodeWriter::writeDocumentType(const DOMNode& node) {
    const auto& type = static_cast<const xercesc::DOMDocumentType&>(node);
    // The engine answers an empty public identifier for one that is not there.
    const bool hasPublicId = type.getPublicId() != nullptr && *type.getPublicId() != 0;
    out.markup(u"<!DOCTYPE ").name(type.getName());
    if (hasPublicId)
        out.markup(u" PUBLIC \"").plain(type.getPublicId()).markup(u"\"");
    if (type.getSystemId() != nullptr) {
        if (!hasPublicId)
            out.markup(u" SYSTEM");
        if (XMLString::indexOf(type.getSystemId(), u'"') == -1)
            out.markup(u" \"").plain(type.getSystemId()).markup(u"\"");
        else
            out.markup(u" '").plain(type.getSystemId()).markup(u"'");
    }
    if (type.getInternalSubset() != nullptr)
        out.markup(u"[").plain(type.getInternalSubset()).markup(u"]");
    out.markup(u">");
}

void PelXercesNodeWriter::newline() {
    if (hasNewlines)
        out.markup(u"\n");
}
