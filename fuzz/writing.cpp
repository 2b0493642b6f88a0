// SPDX-License-Identifier: MIT
// Any bytes as a document, read with settings drawn from them: what is written of it reads as the same tree
// again and is written as the same bytes, with the usual settings and with others drawn likewise.
#include "support.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <xercesc/dom/DOM.hpp>

#include <array>
#include <sstream>

namespace {

// Expanding entities makes much of little; such trees take time and show nothing new.
constexpr std::size_t longestText = std::size_t{1} << 18;

enum Strictness {
    exact,       ///< every node by itself
    joined,      ///< neighbouring texts and CDATA sections as one
    withoutSpace ///< the same without white space among other nodes
};

bool isWhiteSpace(const std::string& text) { return text.find_first_not_of(" \t\n") == text.npos; }

// Readers make a line feed of each line end in comments and instructions, which know no references.
std::string withLineFeeds(std::string text, bool isVersion11) {
    for (const char* end : {"\r\n", "\r\xC2\x85", "\r", "\xC2\x85", "\xE2\x80\xA8"})
        if (isVersion11 || end[std::char_traits<char>::length(end) - 1] < '\x10')
            for (std::size_t at = 0; *end != 0 && (at = text.find(end, at)) != text.npos; ++at)
                text.replace(at, std::char_traits<char>::length(end), "\n");
    return text;
}

struct Outline {
    Strictness strictness;
    bool isVersion11;
    std::string text;

    // Texts and sections from `first` on up to another kind of node, which it gives.
    PelDOMNode addCharacters(PelDOMNode first, bool isMixed) {
        std::string run;
        for (; isCharacters(first); first = first.getNextSibling()) {
            const std::string value = first.getNodeValue().toUtf8();
            if (strictness != exact)
                run += value;
            else
                text += std::to_string(first.getNodeType()) + "|" + value + "\n";
        }
        if (!run.empty() && (isMixed || strictness != withoutSpace || !isWhiteSpace(run)))
            text += "|" + run + "\n";
        return first;
    }

    static bool isCharacters(const PelDOMNode& node) {
        return node.getNodeType() == PelDOM::TEXT_NODE || node.getNodeType() == PelDOM::CDATA_SECTION_NODE;
    }

    // Whether all that an element holds is characters, of which none is to be left out.
    static bool holdsOnlyCharacters(const PelDOMNode& element) {
        PelDOMNode child = element.getFirstChild();
        while (isCharacters(child)) child = child.getNextSibling();
        return child.isNull() == 1;
    }

    void addStart(const PelDOMNode& node) {
        text += std::to_string(node.getNodeType()) + " " + node.getNodeName().toUtf8();
        if (node.getNodeType() == PelDOM::ELEMENT_NODE) {
            const PelDOMElement element(node);
            for (long i = 0; i < element.getNumAttributes(); ++i)
                text += "\n  " + element.getAttributeNameAt(i).toUtf8() + "=" +
                        element.getAttributeValueAt(i).toUtf8();
        } else if (node.getNodeType() == PelDOM::DOCUMENT_TYPE_NODE) {
            const auto& type = *PelXercesDOMNode::of(*node.getNodeImp()).as<xercesc::DOMDocumentType>();
            for (const XMLCh* part : {type.getPublicId(), type.getSystemId(), type.getInternalSubset()})
                text += "\n  " + (part != nullptr ? PelString(part).toUtf8() : "-");
        } else {
            text += " " + withLineFeeds(node.getNodeValue().toUtf8(), isVersion11);
        }
        text += "\n";
    }

    void add(const PelDOMNode& top) {
        std::vector<PelDOMNode> next{top.getFirstChild()};
        while (!next.empty()) {
            PelDOMNode& node = next.back();
            if (isCharacters(node)) {
                node = addCharacters(node, holdsOnlyCharacters(node.getParentNode()));
            } else if (node.isNull() == 1) {
                text += ")\n";
                next.pop_back();
            } else {
                addStart(node);
                PelDOMNode child = node.getFirstChild();
                node = node.getNextSibling();
                next.push_back(child);
            }
        }
    }
};

bool isVersion11(const PelDOMDocument& document) {
    const XMLCh* const version = PelXercesDOMNode::of(*document.getNodeImp()).getDocument()->getXmlVersion();
    return version != nullptr && PelString(version) == PelString("1.1");
}

std::string outline(const PelDOMDocument& document, Strictness strictness) {
    if (document.isNull() == 1) return "refused";
    const XMLCh* const version = PelXercesDOMNode::of(*document.getNodeImp()).getDocument()->getXmlVersion();
    Outline made{strictness, version != nullptr && PelString(version) == PelString("1.1"), {}};
    made.add(document);
    return made.text;
}

PelDOMDocument readBack(const std::string& bytes) {
    PelDOMReader reader;
    reader.setValidation(PelDOMReader::NEVER);
    reader.setExternalEntities(false);
    return reader.readBytes(bytes.data(), bytes.size(), "back");
}

// An encoding, and whether it holds everything and is known without being declared.
struct Encoding {
    const char* name;
    bool isUniversal;
    bool isKnown;
};

constexpr Encoding encodings[] = {{"UTF-8", true, true}, {"UTF-16", true, true}, {"UTF-16BE", true, true},
    {"ISO-10646-UCS-4", true, false}, {"US-ASCII", false, false}, {"ISO-8859-1", false, false},
    {"windows-1252", false, false}, {"KOI8-R", false, false}, {"Shift_JIS", false, false},
    {"GB18030", false, false}, {"ISO-2022-JP", false, false}, {"IBM037", false, false}};

void checkWriting(
    const PelDOMDocument& document, PelDOMWriter writer, const Encoding& encoding, bool isUsual) {
    std::string bytes = "kept";
    std::ostringstream stream;
    writer.setEncoding(encoding.name);
    const PelDOM::Error code = writer.writeBytes(document, bytes);
    const std::string message = writer.getMessage().toUtf8();
    expectSame(message.empty(), code == PelDOM::SUCCESS, "a message or success: " + message);
    expectSame(writer.writeStream(document, stream), code, "to a stream and to bytes");
    expectSame(stream.str(), code == PelDOM::SUCCESS ? bytes : "", "to a stream and to bytes");
    if (code != PelDOM::SUCCESS) {
        expectSame(bytes, "kept", "bytes of a write that failed");
        const bool mayFail = !encoding.isUniversal || !writer.getDeclaration();
        expectSame(mayFail, true, "refused: " + message);
        return;
    }
    if (!writer.getDeclaration() && (!encoding.isKnown || isVersion11(document))) return;
    const PelDOMDocument back = readBack(bytes);
    const Strictness strictness = writer.getIndent() > 0 ? withoutSpace : isUsual ? exact : joined;
    expectSame(outline(back, strictness), outline(document, strictness), "read back");
    std::string again;
    expectSame(writer.writeBytes(back, again), PelDOM::SUCCESS, "written again");
    expectSame(again, bytes, "written again");
}

// What a CDATA section cannot hold parts it in two.
bool hasPartedSections(const std::string& outline) {
    return outline.find('\r') != outline.npos || outline.find("]]>") != outline.npos;
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::uint64_t hash = 14695981039346656037U;
    for (std::size_t i = 0; i < size; ++i) hash = (hash ^ data[i]) * 1099511628211U;
    std::array<unsigned char, 8> drawn{};
    for (std::size_t i = 0; i < drawn.size(); ++i) drawn[i] = static_cast<unsigned char>(hash >> (8 * i));
    Input choices(drawn.data(), drawn.size());

    PelDOMReader reader;
    constexpr PelDOMReader::Validation validations[] = {
        PelDOMReader::NEVER, PelDOMReader::NEVER, PelDOMReader::IF_DECLARED, PelDOMReader::ALWAYS};
    const unsigned bits = choices.byte();
    reader.setValidation(validations[bits % 4]);
    reader.setExternalEntities(false);
    reader.setKeepIgnorableWhitespace((bits & 4U) != 0);
    reader.setDocumentType((bits & 0x38U) == 0 ? PelDOMReader::REFUSE : PelDOMReader::ACCEPT);
    reader.setMaxMessages(bits >> 6);
    const PelDOMDocument document = reader.readBytes(data, size, "input");
    expectSame(reader.getMessages().size() <= (bits >> 6), true, "number of messages");
    if (document.isNull() == 1) return 0;
    const std::string whole = outline(document, exact);
    if (whole.size() > longestText) return 0;

    checkWriting(document, PelDOMWriter(), encodings[0],
        !hasPartedSections(whole) && whole.find("\xC2") == whole.npos);
    PelDOMWriter writer;
    writer.setIndent(static_cast<int>(choices.below(4)));
    writer.setLineEnds(choices.below(2) == 0 ? PelDOMWriter::LF : PelDOMWriter::CRLF);
    writer.setDeclaration(choices.below(4) != 0);
    checkWriting(document, writer, choices.oneOf(encodings), false);
    return 0;
}
