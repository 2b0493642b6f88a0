// SPDX-License-Identifier: MIT
#include "write/PelXercesKeptWriter.h"

#include "core/PelCharacters.h"
#include "core/PelTextConversion.h"
#include "write/PelXercesIndent.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <algorithm>
#include <utility>

using namespace PelSourceMarkup;
using xercesc::DOMNode;

namespace {

// Lines of markup alone, each with that indentation, get another one; none for other text. What
// stands between tags there is white space.
std::optional<std::string> indentedAnew(std::string_view text, std::string_view former,
                                        std::string_view indentation) {
    std::string moved;
    for (std::size_t at = 0;;) {
        const std::size_t line = text.find('\n', at);
        moved.append(text.substr(at, line == text.npos ? line : line + 1 - at));
        if (line == text.npos)
            return moved;
        const std::size_t last = text.find_last_not_of(" \t\r\n", line);
        const std::size_t first = text.find_first_not_of(" \t\r\n", line);
        if (text[last] != '>' || text[first] != '<' ||
            text.compare(line + 1, former.size(), former) != 0)
            return std::nullopt;
        moved.append(indentation);
        at = line + 1 + former.size();
    }
}

// What a value means as plain character data; nothing where it refers to an entity.
std::optional<std::u16string> plainValue(std::string_view spelled) {
    std::u16string value;
    const std::u16string units = PelTextConversion::fromUtf8(spelled);
    for (std::size_t at = 0; at < units.size(); ++at) {
        if (units[at] == u'\r' && at + 1 < units.size() && units[at + 1] == u'\n')
            continue;
        if (units[at] != u'&') {
            value += PelCharacters::isSpace(units[at]) ? u' ' : units[at];
            continue;
        }
        const std::size_t end = units.find(u';', at);
        const std::string name = PelTextConversion::toUtf8(units.substr(at + 1, end - at - 1));
        if (name[0] == '#') {
            const bool isHex = name[1] == 'x';
            const unsigned long character =
                std::stoul(name.substr(isHex ? 2 : 1), nullptr, isHex ? 16 : 10);
            PelCharacters::append(value, static_cast<char32_t>(character));
        } else if (const char16_t predefined = PelSourceMarkup::predefined(name)) {
            value += predefined;
        } else {
            return std::nullopt;
        }
        at = end;
    }
    return value;
}

} // namespace

void PelXercesKeptWriter::writeNode(const DOMNode& top, bool hasDeclaration) {
    if (top.getNodeType() == DOMNode::DOCUMENT_NODE) {
        serializer.checkDocument(top);
        std::size_t at = behindDeclaration(text);
        if (hasDeclaration)
            copy(0, at);
        if (!source.hasChanges()) {
            copy(at, text.size());
            flushCopied();
            return;
        }
    }
    const DOMNode* node = &top;
    try {
        begin(top, std::nullopt);
        while (!open.empty()) {
            OpenNode& last = open.back();
            node = last.node;
            if (last.next < last.pieces.size()) {
                const Piece piece = std::move(last.pieces[last.next++]);
                writePiece(piece);
            } else {
                const OpenNode closed = std::move(last);
                open.pop_back();
                end(closed);
            }
        }
        flushCopied();
    } catch (PelXercesWriteError& error) {
        PelXercesSerializer::addElement(error, node);
        throw;
    }
}

// Two texts that something stood between may be markup together: `]]` and `>`.
void PelXercesKeptWriter::writePiece(const Piece& piece) {
    if (!piece.added.empty()) {
        add(piece.added);
        endsWithBracket = false;
    }
    const auto begins = static_cast<std::size_t>(piece.text.data() - text.data());
    if (!piece.text.empty() && !(endsWithBracket && piece.node != nullptr && begins != copiedEnd)) {
        copy(begins, begins + piece.text.size());
        endsWithBracket = piece.node != nullptr && piece.text.back() == ']';
    } else if (piece.node != nullptr) {
        begin(*piece.node, piece.indentation);
    }
}

void PelXercesKeptWriter::begin(const DOMNode& node,
                                const std::optional<std::string>& indentation) {
    const DOMNode::NodeType type = node.getNodeType();
    const bool isOld = source.standsAlone(node);
    if (type == DOMNode::DOCUMENT_NODE) {
        open.push_back(
            {&node, PelXercesKeptChildren(source, style, node).plan(false), 0, false, false});
    } else if (type == DOMNode::TEXT_NODE && !open.empty() &&
               open.back().node->getNodeType() == DOMNode::DOCUMENT_NODE) {
        // Outside the root white space knows no references, and there is no other text.
        const std::string value = PelTextConversion::toUtf8(node.getNodeValue());
        if (isWhiteSpace(value))
            add(value);
    } else if (isOld && !source.isChangedWithin(node) &&
               !(endsWithBracket && type == DOMNode::TEXT_NODE)) {
        writeMoved(node, indentation);
    } else if (type != DOMNode::ELEMENT_NODE) {
        written().leaf(node, type);
    } else if (isOld) {
        beginElement(node);
    } else {
        beginNewElement(node, indentation);
    }
    const std::u16string_view value =
        type == DOMNode::TEXT_NODE ? std::u16string_view(node.getNodeValue()) : u" ";
    if (!value.empty())
        endsWithBracket = value.back() == u']';
}

void PelXercesKeptWriter::beginElement(const DOMNode& element) {
    const bool isKept = isPreserved(element);
    const bool areLinesContent =
        isKept || (source.hasOtherChildren(element) && PelXercesIndent::isWithText(element));
    PelXercesKeptChildren children(source, style, element);
    OpenNode opened{&element, children.plan(areLinesContent), 0, false, isKept};
    writeStartTag(element, !opened.pieces.empty());
    open.push_back(std::move(opened));
}

// The source's attributes in their order, then the new ones, then what stands in front of the end.
void PelXercesKeptWriter::writeStartTag(const DOMNode& element, bool hasContent) {
    const std::size_t begin = source.placeOf(element)->begin;
    std::size_t at = behindName(text, begin);
    const bool isRenamed =
        !PelTextConversion::isSame(element.getNodeName(), text.substr(begin + 1, at - begin - 1));
    if (isRenamed)
        written().startTag(element);
    else
        copy(begin, at);
    Attribute spelled{};
    for (std::size_t from = at; findAttribute(text, from, spelled); at = from = spelled.end) {
        const xercesc::DOMAttr* const attribute = attributeIn(element, spelled);
        if (attribute == nullptr)
            continue;
        // By another name a declaration may normalise the same spelling otherwise.
        const auto isOtherwise = [&] {
            const auto value =
                text.substr(spelled.valueBegin, spelled.end - 1 - spelled.valueBegin);
            return plainValue(value) != std::u16string(attribute->getValue());
        };
        if (source.isChanged(*attribute) || (isRenamed && isOtherwise())) {
            copy(at, spelled.valueBegin);
            written().value(*attribute, text[spelled.end - 1]);
            copy(spelled.end - 1, spelled.end);
        } else {
            copy(at, spelled.end);
        }
    }
    for (const xercesc::DOMAttr* const attribute : serializer.attributesOf(element))
        if (source.isNew(*attribute) || !attribute->getSpecified())
            written().attribute(*attribute);
    const std::size_t tagEnd = behindStartTag(text, at);
    std::size_t spaceEnd = tagEnd - 2;
    if (!hasContent || text[spaceEnd] != '/') {
        copy(at, tagEnd);
        return;
    }
    while (spaceEnd > at && isSpace(text[spaceEnd - 1]))
        --spaceEnd;
    copy(at, spaceEnd);
    flushCopied();
    out.markup(u">");
}

// What a spelled attribute has become; null if it went.
const xercesc::DOMAttr* PelXercesKeptWriter::attributeIn(const DOMNode& element,
                                                         const Attribute& spelled) const {
    const std::string_view name = text.substr(spelled.begin, spelled.nameEnd - spelled.begin);
    const auto* const attribute = static_cast<const xercesc::DOMAttr*>(
        element.getAttributes()->getNamedItem(PelTextConversion::fromUtf8(name).c_str()));
    const bool isLeft =
        attribute != nullptr && attribute->getSpecified() && !source.isNew(*attribute);
    return isLeft ? attribute : nullptr;
}

void PelXercesKeptWriter::beginNewElement(const DOMNode& element,
                                          const std::optional<std::string>& indentation) {
    written().startTag(element);
    for (const xercesc::DOMAttr* const attribute : serializer.attributesOf(element))
        serializer.attribute(*attribute);
    const bool isKept = isPreserved(element);
    OpenNode opened{&element, piecesOfNew(element, indentation, isKept), 0, true, isKept};
    if (opened.pieces.empty()) {
        out.markup(u"/>");
        return;
    }
    out.markup(u">");
    open.push_back(std::move(opened));
}

// On lines of their own, unless there is text; the program's white space is text here.
std::vector<PelXercesKeptChildren::Piece>
PelXercesKeptWriter::piecesOfNew(const DOMNode& element,
                                 const std::optional<std::string>& indentation,
                                 bool areLinesContent) const {
    bool hasText = !indentation || areLinesContent || PelXercesIndent::isWithText(element);
    for (const DOMNode* child = element.getFirstChild(); child != nullptr;
         child = child->getNextSibling())
        hasText = hasText || child->getNodeType() == DOMNode::TEXT_NODE;
    std::string inner;
    if (!hasText)
        inner = indentation->size() < PelXercesIndent::widest ? *indentation + style.step
                                                              : *indentation;
    std::vector<Piece> pieces;
    for (const DOMNode* child = element.getFirstChild(); child != nullptr;
         child = child->getNextSibling())
        pieces.push_back(hasText ? Piece{{}, child}
                                 : Piece{{}, child, inner, style.lineEnd + inner});
    if (!hasText && !pieces.empty())
        pieces.push_back({{}, nullptr, std::nullopt, style.lineEnd + *indentation});
    return pieces;
}

bool PelXercesKeptWriter::isPreserved(const DOMNode& element) const {
    return PelXercesIndent::isPreserved(element, open.empty()
                                                     ? PelXercesIndent::isPreservedAround(element)
                                                     : open.back().isPreserved);
}

// As it stands in the source; at another depth its lines are indented anew.
void PelXercesKeptWriter::writeMoved(const DOMNode& node,
                                     const std::optional<std::string>& indentation) {
    const PelXercesKeptSource::Place place = *source.placeOf(node);
    const auto former = indentationAt(text, place.begin);
    if (indentation && former && *former != *indentation &&
        node.getNodeType() == DOMNode::ELEMENT_NODE) {
        const auto moved =
            indentedAnew(text.substr(place.begin, place.end - place.begin), *former, *indentation);
        if (moved) {
            add(*moved);
            return;
        }
    }
    copy(place.begin, place.end);
}

void PelXercesKeptWriter::end(const OpenNode& closed) {
    if (closed.node->getNodeType() == DOMNode::DOCUMENT_NODE)
        return;
    endsWithBracket = false;
    const PelXercesKeptSource::Place* const place =
        closed.isNew ? nullptr : source.placeOf(*closed.node);
    const bool wasEmpty = place != nullptr && text[place->end - 2] == '/';
    if (wasEmpty && closed.pieces.empty())
        return;
    if (place == nullptr || wasEmpty) {
        written().endTag(*closed.node);
        return;
    }
    const std::size_t begin = text.rfind('<', place->end - 1);
    const std::size_t nameEnd = behindName(text, begin + 2);
    if (PelTextConversion::isSame(closed.node->getNodeName(),
                                  text.substr(begin + 2, nameEnd - begin - 2))) {
        copy(begin, place->end);
        return;
    }
    copy(begin, begin + 2);
    written().name(closed.node->getNodeName());
    copy(nameEnd, place->end);
}

void PelXercesKeptWriter::copy(std::size_t begin, std::size_t end) {
    if (begin != copiedEnd) {
        flushCopied();
        copiedBegin = begin;
    }
    copiedEnd = end;
}

void PelXercesKeptWriter::flushCopied() {
    if (copiedBegin != copiedEnd)
        out.addSource(text.substr(copiedBegin, copiedEnd - copiedBegin));
    copiedBegin = copiedEnd;
}
