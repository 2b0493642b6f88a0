// SPDX-License-Identifier: MIT
#include "output/PelXercesNodeWriter.h"

#include "xerces/PelXercesDeclaration.h"
#include "xerces/PelXercesLinks.h"

#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <iostream>
#include <vector>

using xercesc::DOMNode;

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
                    out << u"</" << node->getNodeName() << u">";
            }
        }
        node = next;
    }
    return stream;
}

void PelXercesNodeWriter::begin(const DOMNode& node, DOMNode::NodeType type) {
    switch (type) {
    case DOMNode::DOCUMENT_NODE:
        break;
    case DOMNode::ELEMENT_NODE:
        beginElement(node);
        break;
    case DOMNode::TEXT_NODE:
        out.addText(node.getNodeValue());
        break;
    case DOMNode::CDATA_SECTION_NODE:
        out << u"<![CDATA[" << node.getNodeValue() << u"]]>";
        break;
    case DOMNode::ENTITY_REFERENCE_NODE:
        out << u"&" << node.getNodeName() << u";";
        break;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
        if (PelXercesDeclaration::isDeclaration(node)) {
            writeDeclaration(node);
            break;
        }
        out << u"<?" << node.getNodeName();
        if (node.getNodeValue() != nullptr && *node.getNodeValue() != 0)
            out << u" " << node.getNodeValue();
        out << u"?>";
        break;
    case DOMNode::COMMENT_NODE:
        out << u"<!--" << node.getNodeValue() << u"-->";
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
    out << u"<" << element.getNodeName();
    const xercesc::DOMNamedNodeMap& attributes = *element.getAttributes();
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t i = 0; i < count; ++i) {
        const DOMNode& attribute = *attributes.item(i);
        out << u" " << attribute.getNodeName() << u"=\"";
        out.addAttributeValue(PelXercesLinks::valueOf(attribute));
        out << u"\"";
    }
    out << (element.getFirstChild() != nullptr ? u">" : u"/>");
}

void PelXercesNodeWriter::writeDeclaration(const DOMNode& declaration) {
    const PelXercesDeclaration values = PelXercesDeclaration::read(declaration);
    out << u"<?xml version=\"" << values.version.view().data() << u"\" encoding=\""
        << encodingName.c_str();
    if (values.standalone)
        out << u"\" standalone=\"" << values.standalone->view().data();
    out << u"\"?>\n";
    newline();
}

void PelXercesNodeWriter::writeDocumentType(const DOMNode& node) {
    const auto& type = static_cast<const xercesc::DOMDocumentType&>(node);
    // The engine answers an empty public identifier for one that is not there.
    const bool hasPublicId = type.getPublicId() != nullptr && *type.getPublicId() != 0;
    out << u"<!DOCTYPE " << type.getName();
    if (hasPublicId)
        out << u" PUBLIC \"" << type.getPublicId() << u"\"";
    if (type.getSystemId() != nullptr)
        out << (hasPublicId ? u" \"" : u" SYSTEM \"") << type.getSystemId() << u"\"";
    if (type.getInternalSubset() != nullptr)
        out << u"[" << type.getInternalSubset() << u"]";
    out << u">";
}

void PelXercesNodeWriter::newline() {
    if (hasNewlines)
        out << u"\n";
}
