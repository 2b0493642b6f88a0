// SPDX-License-Identifier: MIT
#include "write/PelXercesIndent.h"

#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <algorithm>
#include <string_view>

using xercesc::DOMNode;

namespace {

// What only a reference can have made, a carriage return, is no white space here.
bool isWhiteSpace(const char16_t* text) {
    return std::u16string_view(text).find_first_not_of(u" \t\n") == std::u16string_view::npos;
}

enum class Kind { none, text, other };

// Whether an element holds text, or anything else among white space.
Kind kindOfContent(const DOMNode& element) {
    Kind kind = Kind::none;
    for (const DOMNode* child = element.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        const DOMNode::NodeType type = child->getNodeType();
        if (type == DOMNode::CDATA_SECTION_NODE || type == DOMNode::ENTITY_REFERENCE_NODE)
            return Kind::text;
        if (type != DOMNode::TEXT_NODE)
            kind = Kind::other;
        else if (!isWhiteSpace(child->getNodeValue()))
            return Kind::text;
    }
    return kind;
}

} // namespace

PelXercesIndent::PelXercesIndent(PelXercesMarkup& markup, int indent, const DOMNode& topNode)
    : out(markup), indentation(static_cast<std::size_t>(std::max(indent, 0))),
      topType(topNode.getNodeType()) {
    open.push_back({false, false, indentation > 0 && isPreservedAround(topNode)});
}

bool PelXercesIndent::isWithText(const DOMNode& element) {
    return kindOfContent(element) == Kind::text;
}

bool PelXercesIndent::isPreserved(const DOMNode& element, bool isPreservedAround) {
    const DOMNode* const attribute = element.getAttributes()->getNamedItem(u"xml:space");
    if (attribute == nullptr)
        return isPreservedAround;
    const std::u16string_view value = attribute->getNodeValue();
    return value == u"preserve" || (value != u"default" && isPreservedAround);
}

bool PelXercesIndent::isPreservedAround(const DOMNode& node) {
    for (const DOMNode* above = node.getParentNode(); above != nullptr;
         above = above->getParentNode())
        if (above->getNodeType() == DOMNode::ELEMENT_NODE &&
            above->getAttributes()->getNamedItem(u"xml:space") != nullptr)
            return isPreserved(*above, false);
    return false;
}

bool PelXercesIndent::replaces(const DOMNode& node, DOMNode::NodeType type) {
    if (type == DOMNode::TEXT_NODE)
        return open.back().isIndented || (open.size() == 1 && topType == DOMNode::DOCUMENT_NODE);
    if (open.back().isIndented)
        newline();
    return type == DOMNode::PROCESSING_INSTRUCTION_NODE &&
           PelXercesDeclaration::isDeclaration(node);
}

void PelXercesIndent::beginContent(const DOMNode& element) {
    Content content{false, false, false};
    if (indentation > 0) {
        const Kind kind = kindOfContent(element);
        content.isPreserved = isPreserved(element, open.back().isPreserved);
        content.isWithinText = kind == Kind::text || open.back().isWithinText;
        content.isIndented = kind == Kind::other && !content.isWithinText && !content.isPreserved;
    }
    open.push_back(content);
}

void PelXercesIndent::endContent() {
    const bool isIndented = open.back().isIndented;
    open.pop_back();
    if (isIndented)
        newline();
}

void PelXercesIndent::endDocumentChild(const DOMNode& child) {
    if (child.getNodeType() != DOMNode::TEXT_NODE && !PelXercesDeclaration::isDeclaration(child))
        newline();
}

void PelXercesIndent::end() {
    if (indentation > 0 && topType == DOMNode::ELEMENT_NODE)
        newline();
}

void PelXercesIndent::newline() {
    const std::size_t level = open.size() - 1;
    out.addLine(level < widest ? std::min(level * indentation, widest) : widest);
}
