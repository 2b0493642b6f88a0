// SPDX-License-Identifier: MIT
#include "query/PelXPathTree.h"

#include "query/PelXPathExpression.h"
#include "xerces/tree/PelXercesDeclaration.h"
#include "xerces/tree/PelXercesWalk.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMCharacterData.hpp>
#include <xercesc/dom/DOMElement.hpp>

using Links = PelXercesLinks;
using xercesc::DOMNode;

namespace {

std::u16string_view dataOf(const DOMNode& characters) {
    const auto& data = static_cast<const xercesc::DOMCharacterData&>(characters);
    return {data.getData(), data.getLength()};
}

bool isEmpty(const DOMNode& characters) {
    return static_cast<const xercesc::DOMCharacterData&>(characters).getLength() == 0;
}

// The nearest before it of the texts side by side; null where it is the first.
DOMNode* textBefore(const DOMNode& text) {
    DOMNode* const before = text.getPreviousSibling();
    return before != nullptr && PelXPathTree::isCharacters(*before) ? before : nullptr;
}

bool isFirstOfRun(const DOMNode& text) {
    if (isEmpty(text))
        return false;
    const DOMNode* before = textBefore(text);
    while (before != nullptr && isEmpty(*before))
        before = textBefore(*before);
    return before == nullptr;
}

} // namespace

void PelXPathTree::end() const {
    throw PelXPathError{PelString("it takes more than " + std::to_string(limit) + " steps"), 0};
}

PelXPathTree::Kind PelXPathTree::kindOf(const Node& node) {
    switch (Links::typeOf(node)) {
    case Node::ELEMENT_NODE:
        return ELEMENT;
    case Node::TEXT_NODE:
    case Node::CDATA_SECTION_NODE:
        return isFirstOfRun(node) ? TEXT : NONE;
    case Node::ATTRIBUTE_NODE:
        return ATTRIBUTE;
    case Node::COMMENT_NODE:
        return COMMENT;
    case Node::PROCESSING_INSTRUCTION_NODE:
        return PelXercesDeclaration::isDeclaration(node) ? NONE : INSTRUCTION;
    case Node::DOCUMENT_NODE:
        return ROOT;
    default:
        return NONE;
    }
}

PelXPathTree::Node* PelXPathTree::standingFor(Node& node) {
    if (!isCharacters(node))
        return kindOf(node) != NONE ? &node : nullptr;
    Node* first = &node;
    while (Node* const before = textBefore(*first))
        first = before;
    while (first != nullptr && isCharacters(*first) && isEmpty(*first))
        first = first->getNextSibling();
    return first != nullptr && isCharacters(*first) ? first : nullptr;
}

PelXPathTree::Node* PelXPathTree::parentOf(const Node& node) {
    return isAttribute(node) ? static_cast<const xercesc::DOMAttr&>(node).getOwnerElement()
                             : Links::parentOf(node);
}

std::u16string_view PelXPathTree::textOf(const Node& node, std::u16string& buffer) {
    switch (Links::typeOf(node)) {
    case Node::ATTRIBUTE_NODE:
        return counted(Links::valueOf(node));
    case Node::TEXT_NODE:
    case Node::CDATA_SECTION_NODE:
        return joinRun(node, buffer);
    case Node::COMMENT_NODE:
    case Node::PROCESSING_INSTRUCTION_NODE:
        return counted(node.getNodeValue());
    default:
        return joinTexts(node, buffer);
    }
}

// A view of what is there is no work for each character.
std::u16string_view PelXPathTree::counted(std::u16string_view text) {
    countLook(text.size());
    return text;
}

std::u16string_view PelXPathTree::joinRun(const Node& first, std::u16string& buffer) {
    const Node* next = Links::nextOf(const_cast<Node&>(first));
    if (next == nullptr || !isCharacters(*next))
        return counted(dataOf(first));
    buffer.clear();
    for (const Node* text = &first; text != nullptr && isCharacters(*text);
         text = text->getNextSibling()) {
        count(1 + dataOf(*text).size());
        buffer.append(dataOf(*text));
    }
    return buffer;
}

std::u16string_view PelXPathTree::joinTexts(const Node& root, std::u16string& buffer) {
    Node* const first = Links::firstChildOf(root);
    if (first == nullptr)
        return {};
    if (isCharacters(*first) && Links::nextOf(*first) == nullptr)
        return counted(dataOf(*first));
    buffer.clear();
    for (Node* node = first; node != nullptr;) {
        count();
        if (isCharacters(*node)) {
            count(dataOf(*node).size());
            buffer.append(dataOf(*node));
        }
        Node* const child = isElement(*node) ? Links::firstChildOf(*node) : nullptr;
        if (child != nullptr) {
            node = child;
            continue;
        }
        Node* sibling = nullptr;
        while (node != &root && (sibling = Links::nextOf(*node)) == nullptr)
            node = Links::parentOf(*node);
        node = sibling;
    }
    return buffer;
}
