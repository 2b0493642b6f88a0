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

bool isDocument(const DOMNode& node) {
    return node.getNodeType() == DOMNode::DOCUMENT_NODE;
}

// Only documents and elements have children that stand in the text.
const DOMNode* firstWrittenChild(const DOMNode& node) {
    return isDocument(node) || node.getNodeType() == DOMNode::ELEMENT_NODE ? node.getFirstChild()
                                                                           : nullptr;
}

} // namespace

PelXercesNodeWriter::PelXercesNodeWriter(PelXercesMarkup& markup, const std::u16string& encoding,
                                         bool newlines)
    : out(markup), encodingName(encoding), hasNewlines(newlines) {
}

std::ostream& PelXercesNodeWriter::writeNode(std::ostream& stream, const DOMNode& top) {
    std::vector<const DOMNode*> open; // the ancestors whose ends are still to come
    for (const DOMNode* node = &top; node != nullptr;) {
        begin(*node);
        const DOMNode* next = firstWrittenChild(*node);
        if (next != nullptr)
            open.push_back(node);
        while (next == nullptr && !open.empty()) {
            if (isDocument(*open.back())) {
                newline();
                out.flush();
                stream.flush();
            }
            next = node->getNextSibling();
            if (next == nullptr) {
                node = open.back();
                open.pop_back();
                end(*node);
            }
        }
        node = next;
    }
    return stream;
}

void PelXercesNodeWriter::begin(const DOMNode& node) {
    switch (node.getNodeType()) {
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
        std::cerr << "Unrecognized node type = " << static_cast<long>(node.getNodeType())
                  << std::endl;
    }
}

void PelXercesNodeWriter::end(const DOMNode& node) {
    if (!isDocument(node))
        out << u"</" << node.getNodeName() << u">";
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
