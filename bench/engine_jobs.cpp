// SPDX-License-Identifier: MIT
#include "jobs.h"

#include <xercesc/util/XMLString.hpp>

#include <stdexcept>

using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

Engine::Tree makeTree(const XMLCh* root) {
    return Engine::Tree(
        xercesc::DOMImplementation::getImplementation()->createDocument(nullptr, root, nullptr));
}

void appendText(xercesc::DOMDocument& document, DOMElement& parent, const XMLCh* name,
                const std::string& text) {
    DOMElement* const child = document.createElement(name);
    child->appendChild(document.createTextNode(PelString(text).view().data()));
    parent.appendChild(child);
}

bool isElement(const DOMNode& node, const XMLCh* name) {
    return node.getNodeType() == DOMNode::ELEMENT_NODE &&
           xercesc::XMLString::equals(node.getNodeName(), name);
}

} // namespace

template <>
Job Jobs<Engine>::readMessages(const std::vector<std::string>& messages) {
    return [&messages] {
        long accepted = 0;
        for (const std::string& message : messages)
            accepted += Engine::readBytes(message) ? 1 : 0;
        return accepted;
    };
}

template <>
Job Jobs<Engine>::convertRows(const std::vector<Row>& rows) {
    return [&rows] {
        std::string bytes;
        {
            const Engine::Tree table = makeTree(u"table");
            for (const Row& values : rows) {
                DOMElement* const row = table->createElement(u"row");
                appendText(*table, *row, u"product", values.product);
                appendText(*table, *row, u"maker", values.maker);
                appendText(*table, *row, u"stock", values.stock);
                table->getDocumentElement()->appendChild(row);
            }
            bytes = Engine::writeBytes(table);
        }
        const Engine::Tree table = Engine::readBytes(bytes);
        long total = 0;
        for (const DOMNode* row = table->getDocumentElement()->getFirstChild(); row != nullptr;
             row = row->getNextSibling())
            total +=
                xercesc::XMLString::parseInt(row->getLastChild()->getFirstChild()->getNodeValue());
        return total;
    };
}

template <>
Job Jobs<Engine>::insertInFront(int count) {
    return [count] {
        const Engine::Tree list = makeTree(u"list");
        DOMElement* const root = list->getDocumentElement();
        for (int i = 0; i < count; ++i)
            root->insertBefore(list->createElement(u"item"), root->getFirstChild());
        return static_cast<long>(root->getChildNodes()->getLength());
    };
}

// The engine's own loop by index takes quadratic time; its sibling pointers are the way round.
template <>
Job Jobs<Engine>::countChildren(const Tree& tree) {
    return [root = tree->getDocumentElement()] {
        long seen = 0;
        for (const DOMNode* child = root->getFirstChild(); child != nullptr;
             child = child->getNextSibling())
            ++seen;
        return seen;
    };
}

template <>
Job Jobs<Engine>::countItems(const Tree& tree) {
    return [root = tree->getDocumentElement()] {
        long seen = 0;
        for (const DOMNode* child = root->getFirstChild(); child != nullptr;
             child = child->getNextSibling())
            seen += isElement(*child, u"item") ? 1 : 0;
        return seen;
    };
}

template <>
Job Jobs<Engine>::copyTexts(const Tree& tree) {
    const xercesc::DOMNodeList* const matches = tree->getElementsByTagName(u"name");
    std::vector<const DOMNode*> names(matches->getLength());
    for (XMLSize_t i = 0; i < names.size(); ++i)
        names[i] = matches->item(i);
    return [names] {
        std::size_t total = 0;
        for (const DOMNode* name : names) {
            const DOMNode* const child = name->getFirstChild();
            if (child == nullptr || child->getNextSibling() != nullptr ||
                child->getNodeType() != DOMNode::TEXT_NODE)
                continue;
            const std::u16string text = child->getNodeValue();
            total += text.size();
        }
        return static_cast<long>(total);
    };
}
