// SPDX-License-Identifier: MIT
// Any bytes as a document whose source is kept, changed in ways drawn from the bytes: unchanged it is
// written byte for byte; changed, what is written reads as the tree that a plain write gives; and the
// scanner of plain documents and the engine's parser come to the same bytes and places.
#include "outline.h"
#include "read/PelXercesReader.h"
#include "support.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <xercesc/dom/DOMException.hpp>

#include <random>

namespace {

using Method = PelXercesReadSettings::Method;

// Expanding entities makes much of little; such trees take time and show nothing new.
constexpr std::size_t mostNodes = 2000;
constexpr std::size_t mostEdits = 6;

PelDOMDocument readBy(Method method, bool isSpaceKept, const unsigned char* data, std::size_t size) {
    PelXercesReadSettings settings;
    settings.method = method;
    settings.isSourceKept = true;
    settings.isIgnorableWhitespaceKept = isSpaceKept;
    settings.validation = PelDOMReader::NEVER;
    settings.areExternalEntitiesRead = false;
    settings.areExceptionsPrinted = false;
    PelXercesReader reader(settings);
    const PelXercesNodeRef node = reader.readText("text", data, size);
    return node ? PelDOMDocument(PelXercesDOMNode::make(node)) : PelDOMDocument();
}

std::string outlineOfBytes(const std::string& bytes) {
    PelDOMReader reader;
    reader.setValidation(PelDOMReader::NEVER);
    reader.setExternalEntities(false);
    const PelDOMDocument document = reader.readBytes(bytes.data(), bytes.size(), "back");
    return document ? outlineOf(document)
                    : "refused: " + reader.getMessages().back().toLine().toUtf8() + "\n" + bytes;
}

std::vector<PelDOMNode> nodesOf(const PelDOMDocument& document) {
    std::vector<PelDOMNode> nodes;
    for (PelDOMNode node = document; node && nodes.size() <= mostNodes; node = nextInTree(document, node))
        nodes.push_back(node);
    return nodes;
}

constexpr const char16_t* names[] = {u"n", u"a", u"b", u"item", u"xml:space", u"é"};
constexpr const char16_t* values[] = {u"", u"v", u"\"'<&>", u"]]>", u"]]", u">", u"\n", u"\n  ", u" ", u"é",
    u"\U0001F600", u"\r", u"\t x", u"default", u"preserve", u"-", u"x\xD800", u"\x1"};

/// One of two trees that are changed alike.
class Edited {
public:
    explicit Edited(const PelDOMDocument& ownDocument) : document(ownDocument) {}

    /// What the call answered. Nodes that do not belong together are the engine's to refuse.
    std::string change(unsigned seed) {
        try {
            return tryToChange(seed);
        } catch (const xercesc::DOMException& exception) {
            return "refused: " + std::to_string(exception.code) + "\n";
        }
    }

private:
    std::string tryToChange(unsigned seed) {
        const std::vector<PelDOMNode> nodes = nodesOf(document);
        std::mt19937 random(seed);
        const auto oneOf = [&](const auto& choices) { return choices[random() % std::size(choices)]; };
        const auto kind = static_cast<unsigned>(random() % 14);
        const PelDOMNode node = oneOf(nodes), other = oneOf(nodes);
        const PelString name = oneOf(names), value = oneOf(values);
        PelDOMElement element(node.getNodeType() == PelDOM::ELEMENT_NODE ? node : PelDOMNode());
        const auto attributes = element.getAttributes();
        const PelString written = attributes.empty() ? name : oneOf(attributes).name;
        PelDOMNode parent = node.getParentNode();
        PelDOM::Error code = PelDOM::SUCCESS;
        switch (kind) {
        case 0:
            code = element.putAttribute(name, value);
            break;
        case 1:
            code = element.putAttribute(written, value);
            break;
        case 2:
            code = element.removeAttribute(written);
            break;
        case 3:
            code = element.setTagName(name);
            break;
        case 4:
            code = PelDOMNode(node).setNodeValue(value);
            break;
        case 5:
            code = PelDOMNode(node).setTextContent(value);
            break;
        case 6:
            code = PelDOMNode(node).appendChild(made(oneOf(kindsOfNew), name, value));
            break;
        case 7:
            code = parent.insertBefore(made(oneOf(kindsOfNew), name, value), node);
            break;
        case 8:
            if (parent) gone.push_back(node);
            code = parent.removeChild(node);
            break;
        case 9:
            code = PelDOMNode(other).appendChild(node);
            break;
        case 10:
            code = parent.insertBefore(other, node);
            break;
        case 11:
            code = parent.replaceChild(other, node);
            break;
        case 12:
            code = parent.insertBefore(other.cloneNode(true), node);
            break;
        default:
            if (!gone.empty()) code = parent.insertBefore(oneOf(gone), node);
        }
        return std::to_string(kind) + " " + node.getNodeName().toUtf8() + " " + other.getNodeName().toUtf8() +
               " " + name.toUtf8() + " '" + value.toUtf8() + "': " + std::to_string(code) + "\n";
    }

    static constexpr unsigned kindsOfNew[] = {0, 1, 2, 3, 4};

    PelDOMNode made(unsigned kind, const PelString& name, const PelString& value) {
        PelDOMElement element = document.createElement(name);
        switch (kind) {
        case 0:
            return std::move(element);
        case 1:
            element.appendTextElement("inner", "text");
            return std::move(element);
        case 2:
            return document.createComment(value);
        case 3:
            return document.createCDATASection(value);
        default:
            return document.createTextNode(value);
        }
    }

    PelDOMDocument document;
    std::vector<PelDOMNode> gone;
};

void checkPlaces(const PelDOMDocument& document, const PelDOMDocument& other) {
    const std::vector<PelDOMNode> nodes = nodesOf(document), others = nodesOf(other);
    expectSame(others.size(), nodes.size(), "number of nodes");
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        expectSame(others[i].getLine(), nodes[i].getLine(), "line");
        expectSame(others[i].getColumn(), nodes[i].getColumn(), "column");
    }
}

// What a plain write refuses in the same encoding, the kept one may refuse too.
void checkChanged(const PelDOMNode& node, const PelDOMNode& other, const std::string& edits) {
    PelDOMWriter plain, same, keeping;
    PelDOMDocument document = node.getOwnerDocument();
    if (node.getNodeType() == PelDOM::DOCUMENT_NODE) document = PelDOMDocument(node);
    same.setEncoding(document.getInputEncoding());
    keeping.setKeepLayout(true);
    std::string plainBytes, kept, otherKept;
    const PelDOM::Error code = keeping.writeBytes(node, kept);
    expectSame(keeping.writeBytes(other, otherKept), code, "code of both ways after " + edits);
    expectSame(otherKept, kept, "bytes of both ways after " + edits);
    const PelDOM::Error plainCode = plain.writeBytes(node, plainBytes);
    if (plainCode != PelDOM::SUCCESS || code != PelDOM::SUCCESS) {
        if (plainCode == PelDOM::SUCCESS && same.writeBytes(node, plainBytes) == PelDOM::SUCCESS)
            expectSame(keeping.getMessage().toUtf8(), "", "refused after " + edits);
        // The engine lets characters into identifiers that no writer lets out; a source has them still.
        if (code == PelDOM::SUCCESS)
            expectSame(
                outlineOfBytes(kept), outlineOf(node), "written although it cannot be, after " + edits);
        return;
    }
    expectSame(outlineOfBytes(kept), outlineOfBytes(plainBytes), "read back after " + edits + kept);
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    services().init();
    unsigned hash = 2166136261U;
    for (std::size_t i = 0; i < size; ++i) hash = (hash ^ data[i]) * 16777619U;
    const bool isSpaceKept = hash % 4 != 0;
    // In a block of their size, where reading past the end is seen.
    const std::vector<unsigned char> bytes(data, data + size);
    const PelDOMDocument one = readBy(Method::plainScanner, isSpaceKept, bytes.data(), size);
    const PelDOMDocument two = readBy(Method::engine, isSpaceKept, bytes.data(), size);
    expectSame(!two, !one, "verdict");
    if (!one || nodesOf(one).size() > mostNodes) return 0;

    PelDOMWriter keeping;
    keeping.setKeepLayout(true);
    const std::string source(data, data + size);
    for (const PelDOMDocument& document : {one, two}) {
        std::string written;
        expectSame(keeping.writeBytes(document, written), PelDOM::SUCCESS, "code of an unchanged write");
        expectSame(written, source, "unchanged");
    }
    checkPlaces(one, two);

    Edited first(one), second(two);
    std::string edits;
    std::mt19937 random(hash);
    for (std::size_t i = random() % mostEdits + 1; i > 0; --i) {
        const auto seed = static_cast<unsigned>(random());
        const std::string answer = first.change(seed);
        expectSame(second.change(seed), answer, "answers");
        edits += answer;
    }
    checkPlaces(one, two);
    checkChanged(one, two, edits);
    const std::vector<PelDOMNode> nodes = nodesOf(one), others = nodesOf(two);
    const std::size_t index = random() % nodes.size();
    if (nodes[index].getNodeType() == PelDOM::ELEMENT_NODE)
        checkChanged(nodes[index], others[index], edits + "of one element");
    return 0;
}
