// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesLocator.h"

#include "core/PelTextConversion.h"
#include "xerces/engine/PelXercesLinks.h"
#include "xerces/tree/PelSourceMarkup.h"
#include "xerces/tree/PelXercesWalk.h"

#include <algorithm>
#include <utility>

using namespace PelSourceMarkup;
using xercesc::DOMNode;

namespace {

// Most names are of ASCII alone.
bool isName(const XMLCh* name, std::string_view spelled) {
    std::size_t i = 0;
    while (i < spelled.size() && name[i] == static_cast<XMLCh>(spelled[i]) && name[i] < 0x80)
        ++i;
    return i == spelled.size() ? name[i] == 0
                               : PelTextConversion::isSame(name + i, spelled.substr(i));
}

} // namespace

/// A piece of a text between markup whose nodes cannot be told apart in it: references, and the
/// text that is one with what they bring.
struct PelXercesLocator::Group {
    std::size_t begin;
    std::size_t end;
    const DOMNode* lastMarkup = nullptr;
    bool endsWithText = false;
};

PelXercesLocator::PelXercesLocator(PelXercesKeptSource& ownSource, xercesc::DOMDocument& document,
                                   const std::vector<PelXercesBroughtNodes>& references)
    : source(ownSource), text(ownSource.getText()), open{{&document, 0}},
      next(document.getFirstChild()), brought(references) {
}

bool PelXercesLocator::locate() {
    source.setNumber(*open.back().node, 0);
    at = behindDeclaration(text);
    while (at < text.size())
        if (!(text[at] == '<' ? locateMarkup() : locateText()))
            return false;
    return next == nullptr && open.size() == 1 && used == brought.size();
}

bool PelXercesLocator::locateMarkup() {
    switch (text[at + 1]) {
    case '/':
        at = text.find('>', at) + 1;
        return closeElement();
    case '?':
        return take(DOMNode::PROCESSING_INSTRUCTION_NODE, behindInstruction(text, at));
    case '!':
        if (text[at + 2] == '-')
            return take(DOMNode::COMMENT_NODE, behindComment(text, at));
        if (text[at + 2] == '[')
            return take(DOMNode::CDATA_SECTION_NODE, behindSection(text, at));
        return take(DOMNode::DOCUMENT_TYPE_NODE, behindDocumentType(text, at));
    default:
        return locateStartTag();
    }
}

// The next node, which is of that type and ends there.
bool PelXercesLocator::take(DOMNode::NodeType type, std::size_t behind) {
    if (next == nullptr || PelXercesLinks::typeOf(*next) != type)
        return false;
    source.setNumber(*next, source.addPlace(at, behind));
    next = PelXercesLinks::nextOf(*next);
    at = behind;
    return true;
}

bool PelXercesLocator::locateStartTag() {
    const std::size_t nameEnd = behindName(text, at);
    if (next == nullptr || PelXercesLinks::typeOf(*next) != DOMNode::ELEMENT_NODE ||
        !isName(next->getNodeName(), text.substr(at + 1, nameEnd - at - 1)))
        return false;
    open.push_back({next, source.addPlace(at, at)});
    source.setNumber(*next, open.back().number);
    at = behindStartTag(text, nameEnd);
    next = next->getFirstChild();
    return text[at - 2] != '/' || closeElement();
}

// Behind its end tag, or behind the tag of an empty one.
bool PelXercesLocator::closeElement() {
    if (next != nullptr || open.size() == 1)
        return false;
    source.setEnd(open.back().number, at);
    next = PelXercesLinks::nextOf(*open.back().node);
    open.pop_back();
    return true;
}

// Up to the next markup. White space that the tree does not hold is passed over.
bool PelXercesLocator::locateText() {
    const std::size_t end = std::min(text.find('<', at), text.size());
    if (open.size() == 1) {
        at = end;
        return true;
    }
    const std::size_t reference = findReference(text, at, end);
    if (reference != end)
        return locateReferences(reference, end);
    if (next != nullptr && PelXercesLinks::typeOf(*next) == DOMNode::TEXT_NODE)
        return take(DOMNode::TEXT_NODE, end);
    const bool isIgnored = isWhiteSpace(text.substr(at, end - at));
    at = end;
    return isIgnored;
}

bool PelXercesLocator::locateReferences(std::size_t reference, std::size_t end) {
    Group group{at, at};
    while (at != end) {
        PelXercesBroughtNodes piece{nullptr, true, true}; // characters
        const std::size_t begin = at;
        if (at == reference) {
            if (used == brought.size())
                return false;
            piece = brought[used++];
            at = text.find(';', at) + 1;
            reference = findReference(text, at, end);
        } else {
            at = reference;
        }
        const bool isNothing = piece.lastMarkup == nullptr && !piece.beginsWithText;
        if (group.endsWithText && isNothing) { // what follows may be one text with what precedes
            group.end = at;
            continue;
        }
        if (!(group.endsWithText && piece.beginsWithText)) {
            if (!locateGroup(group))
                return false;
            group = {begin, begin};
        }
        group.end = at;
        group.endsWithText = piece.endsWithText;
        if (piece.lastMarkup != nullptr)
            group.lastMarkup = piece.lastMarkup;
    }
    return locateGroup(group);
}

bool PelXercesLocator::locateGroup(const Group& group) {
    const auto takeNext = [&] {
        locateWithin(*next, group.begin, group.end);
        return std::exchange(next, next->getNextSibling());
    };
    if (group.lastMarkup != nullptr)
        do
            if (next == nullptr)
                return false;
        while (takeNext() != group.lastMarkup);
    if (group.endsWithText && next != nullptr && next->getNodeType() == DOMNode::TEXT_NODE)
        takeNext();
    return true;
}

// All that came from references has their place.
void PelXercesLocator::locateWithin(DOMNode& top, std::size_t begin, std::size_t end) {
    for (DOMNode* node = &top; node != nullptr; node = PelXercesWalk::nextInTree(top, node))
        source.setNumber(*node, source.addPlace(begin, end));
}
