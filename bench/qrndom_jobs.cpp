// SPDX-License-Identifier: MIT
#include "jobs.h"

#include <stdexcept>

namespace {

std::vector<PelDOMElement> elementsOf(const PelDOMDocument& tree, const char* tag) {
    std::vector<PelDOMElement> elements;
    for (PelDOMNode match : tree.getElementsByTagName(tag))
        elements.emplace_back(match);
    return elements;
}

} // namespace

template <>
Job Jobs<Qrndom>::readMessages(const std::vector<std::string>& messages) {
    return [&messages] {
        PelDOMReader reader;
        const PelString name = u"message";
        long accepted = 0;
        for (const std::string& message : messages) {
            if (reader.readBytes(message.data(), message.size(), name))
                ++accepted;
            else if (reader.getMessages().empty())
                throw std::runtime_error("qrndom does not say why");
        }
        return accepted;
    };
}

template <>
Job Jobs<Qrndom>::convertRows(const std::vector<Row>& rows) {
    return [&rows] {
        const PelString row = u"row", product = u"product", maker = u"maker", stock = u"stock";
        std::string bytes;
        {
            PelDOMDocument table = Qrndom::services().createDocument(u"table");
            PelDOMElement root = table.getDocumentElement();
            for (const Row& values : rows) {
                PelDOMElement element = table.createElement(row);
                element.appendTextElement(product, values.product);
                element.appendTextElement(maker, values.maker);
                element.appendTextElement(stock, values.stock);
                root.appendChild(element);
            }
            PelDOMWriter().writeBytes(table, bytes);
        }
        const PelDOMDocument table = PelDOMReader().readBytes(bytes.data(), bytes.size(), u"table");
        long total = 0;
        for (const PelDOMElement& element : table.getDocumentElement().getChildElements(row)) {
            long value = 0;
            element.getChildElement(stock).getChildTextValue(value);
            total += value;
        }
        return total;
    };
}

template <>
Job Jobs<Qrndom>::insertInFront(int count) {
    return [count] {
        PelDOMDocument list = Qrndom::services().createDocument(u"list");
        PelDOMElement root = list.getDocumentElement();
        const PelString item = u"item";
        for (int i = 0; i < count; ++i)
            root.insertBefore(list.createElement(item), root.getFirstChild());
        return root.getChildNodes().length();
    };
}

// By index, asking for the length before each step as such loops do.
template <>
Job Jobs<Qrndom>::countChildren(const PelDOMDocument& tree) {
    return [root = tree.getDocumentElement()] {
        PelDOMNodeList children;
        root.getChildNodes(children);
        long seen = 0;
        for (long i = 0; i < children.length(); ++i) {
            PelDOMNode child;
            children.item(i, child);
            seen += child ? 1 : 0;
        }
        return seen;
    };
}

template <>
Job Jobs<Qrndom>::countItems(const PelDOMDocument& tree) {
    return [root = tree.getDocumentElement()] {
        long seen = 0;
        for (const PelDOMElement& item : root.getChildElements(u"item"))
            seen += item ? 1 : 0;
        return seen;
    };
}

template <>
Job Jobs<Qrndom>::copyTexts(const PelDOMDocument& tree) {
    return [names = elementsOf(tree, "name")] {
        long total = 0;
        for (const PelDOMElement& name : names) {
            PelString text;
            name.getChildTextValue(text);
            total += text.length();
        }
        return total;
    };
}
