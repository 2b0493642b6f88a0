// SPDX-License-Identifier: MIT
#include "write/PelXercesKeptChildren.h"

#include "core/PelCharacters.h"
#include "xerces/tree/PelSourceMarkup.h"
#include "xerces/tree/PelXercesWalk.h"

#include <algorithm>
#include <utility>

using namespace PelSourceMarkup;
using xercesc::DOMNode;

namespace {

constexpr std::size_t mostLooked = 10'000; // places, for the style

bool isBefore(const PelXercesKeptSource::Place& place, std::size_t begin) {
    return place.begin < begin;
}

bool isSpaceText(const DOMNode* node) {
    return node != nullptr && node->getNodeType() == DOMNode::TEXT_NODE &&
           std::u16string_view(node->getNodeValue()).find_first_not_of(PelCharacters::space) ==
               std::u16string_view::npos;
}

bool hasLineEnd(std::string_view space) {
    return space.find_first_of("\r\n") != space.npos;
}

// Without the last line end and what follows it.
std::string_view withoutLastLine(std::string_view space) {
    std::size_t end = space.find_last_of("\r\n");
    if (end > 0 && space[end] == '\n' && space[end - 1] == '\r')
        --end;
    return space.substr(0, end);
}

std::size_t countWithin(const DOMNode& top) {
    std::size_t count = 0;
    for (const DOMNode* node = &top; node != nullptr;
         node = PelXercesWalk::nextInTree(top, const_cast<DOMNode*>(node)))
        ++count;
    return count;
}

} // namespace

PelXercesSourceStyle::PelXercesSourceStyle(const PelXercesKeptSource& source) {
    const std::string_view text = source.getText();
    const std::size_t first = text.find_first_of("\r\n");
    if (first == text.npos)
        return;
    lineEnd = text.compare(first, 2, "\r\n") == 0 ? "\r\n" : std::string(1, text[first]);
    std::vector<std::pair<std::size_t, std::string_view>> open; // ends and indentations
    const std::vector<PelXercesKeptSource::Place>& places = source.getPlaces();
    for (std::size_t i = 0; i < std::min(places.size(), mostLooked); ++i) {
        const auto [begin, end] = places[i];
        if (text[begin] != '<' || text[begin + 1] == '!' || text[begin + 1] == '?')
            continue;
        while (!open.empty() && open.back().first <= begin)
            open.pop_back();
        const auto indentation = indentationAt(text, begin);
        if (indentation && !open.empty() && indentation->size() > open.back().second.size() &&
            indentation->substr(0, open.back().second.size()) == open.back().second) {
            step = indentation->substr(open.back().second.size());
            return;
        }
        open.emplace_back(end, indentation.value_or(std::string_view()));
    }
}

PelXercesKeptChildren::PelXercesKeptChildren(const PelXercesKeptSource& ownSource,
                                             const PelXercesSourceStyle& ownStyle,
                                             const DOMNode& ownParent)
    : source(ownSource), style(ownStyle), text(source.getText()), parent(ownParent),
      firstIndex(source.numberOf(parent)), isDocument(firstIndex == 0) {
    if (isDocument) {
        contentBegin = behindDeclaration(text);
        contentEnd = text.size();
    } else {
        const PelXercesKeptSource::Place place = source.getPlaces()[firstIndex - 1];
        contentBegin = behindStartTag(text, place.begin);
        contentEnd = text[contentBegin - 2] == '/' ? contentBegin : text.rfind('<', place.end - 1);
        outer = indentationAt(text, place.begin);
    }
}

std::vector<PelXercesKeptChildren::Piece> PelXercesKeptChildren::plan(bool areLinesContent) {
    if (!source.hasOtherChildren(parent) && planChanged())
        return std::move(pieces);
    findOriginals();
    findUnits();
    letLongestOrderStay();
    findSteps();
    if (areLinesContent)
        for (const Step& step : steps)
            addPieces(step, std::nullopt);
    else
        arrange();
    return std::move(pieces);
}

// The same children in the same order: all but the changed ones is copied. False where one of
// these is not told apart from others in the source.
bool PelXercesKeptChildren::planChanged() {
    std::size_t at = contentBegin;
    const auto copyUpTo = [&](std::size_t begin) {
        if (begin != at)
            pieces.push_back({between(at, begin)});
    };
    for (const DOMNode* child = parent.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        if (!source.isChangedWithin(*child))
            continue;
        if (!source.standsAlone(*child)) {
            pieces.clear();
            return false;
        }
        const PelXercesKeptSource::Place place = *source.placeOf(*child);
        copyUpTo(place.begin);
        pieces.push_back({{}, child});
        at = place.end;
    }
    copyUpTo(contentEnd);
    return true;
}

// The places of an element's children follow its own, each with all below it.
void PelXercesKeptChildren::findOriginals() {
    const std::vector<PelXercesKeptSource::Place>& places = source.getPlaces();
    std::size_t index = firstIndex;
    while (index < places.size() && places[index].begin < contentEnd) {
        const PelXercesKeptSource::Place place = places[index];
        originals.push_back({index, place, isWhiteSpace(between(place.begin, place.end))});
        const auto first = places.begin() + static_cast<long>(index) + 1;
        const auto behindAll = std::lower_bound(first, places.end(), place.end, isBefore);
        index = static_cast<std::size_t>(behindAll - places.begin());
    }
}

bool PelXercesKeptChildren::isGroup(const Original& original) const {
    const std::size_t next = original.index + 1;
    return text[original.place.begin] != '<' && next < source.getPlaces().size() &&
           source.getPlaces()[next].begin == original.place.begin;
}

std::size_t PelXercesKeptChildren::originalOf(const DOMNode& child) const {
    const std::size_t number = source.numberOf(child);
    if (number == 0)
        return none;
    const std::size_t begin = source.getPlaces()[number - 1].begin;
    const auto found =
        std::lower_bound(originals.begin(), originals.end(), begin,
                         [](const Original& one, std::size_t at) { return one.place.begin < at; });
    if (found == originals.end() || found->place.begin != begin ||
        (found->index != number - 1 && !isGroup(*found)))
        return none;
    return static_cast<std::size_t>(found - originals.begin());
}

void PelXercesKeptChildren::findUnits() {
    for (const DOMNode* child = parent.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        const std::size_t original = originalOf(*child);
        if (original != none && !units.empty() && units.back().original == original)
            units.back().last = child;
        else
            units.push_back({child, child, original});
    }
}

// Of a group, all nodes have to be there, each with all that it had.
bool PelXercesKeptChildren::isIntact(const Unit& unit) const {
    const Original& original = originals[unit.original];
    std::size_t index = original.index;
    for (const DOMNode* node = unit.first;; node = node->getNextSibling()) {
        if (source.isChangedWithin(*node) || source.numberOf(*node) != index + 1)
            return false;
        if (!isGroup(original))
            return true;
        index += countWithin(*node);
        if (node == unit.last)
            break;
    }
    const std::vector<PelXercesKeptSource::Place>& places = source.getPlaces();
    return index == places.size() || places[index].begin != original.place.begin;
}

// The longest run of originals in their order; the others have been moved.
void PelXercesKeptChildren::letLongestOrderStay() {
    std::vector<std::size_t> ends; // of runs by length, each the one with the least end
    std::vector<std::size_t> previous(units.size(), none);
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (units[i].original == none)
            continue;
        const auto place = std::lower_bound(
            ends.begin(), ends.end(), units[i].original,
            [this](std::size_t unit, std::size_t at) { return units[unit].original < at; });
        if (place != ends.begin())
            previous[i] = *(place - 1);
        if (place == ends.end())
            ends.push_back(i);
        else
            *place = i;
    }
    for (std::size_t i = ends.empty() ? none : ends.back(); i != none; i = previous[i])
        units[i].stays = true;
}

void PelXercesKeptChildren::findSteps() {
    std::size_t original = 0;
    std::size_t at = contentBegin;
    for (auto unit = units.begin();; ++unit) {
        const auto kept =
            std::find_if(unit, units.end(), [](const Unit& one) { return one.stays; });
        const bool isLast = kept == units.end();
        const std::size_t keptOriginal = isLast ? originals.size() : kept->original;
        // What came takes the place of the first that went.
        const auto addCome = [&] {
            for (; unit != kept; ++unit)
                steps.push_back({Step::CAME, {}, &*unit, none, isSpaceText(unit->single())});
        };
        for (; original < keptOriginal; ++original) {
            addGap(at, originals[original].place.begin);
            at = originals[original].place.end;
            steps.push_back({Step::WENT, {}, nullptr, original, originals[original].isSpace});
            if (!originals[original].isSpace)
                addCome();
        }
        addGap(at, isLast ? contentEnd : originals[original].place.begin);
        addCome();
        if (isLast)
            return;
        addKept(*kept);
        at = originals[original++].place.end;
    }
}

void PelXercesKeptChildren::addGap(std::size_t begin, std::size_t end) {
    if (begin == end)
        return;
    const std::string_view gap = between(begin, end);
    steps.push_back({Step::GAP, gap, nullptr, none, isWhiteSpace(gap)});
}

void PelXercesKeptChildren::addKept(const Unit& unit) {
    const Original& original = originals[unit.original];
    Step step{Step::KEPT, {}, &unit, unit.original, false};
    if (isIntact(unit)) {
        step.text = between(original.place.begin, original.place.end);
        step.isSeparator = original.isSpace;
    }
    steps.push_back(step);
}

void PelXercesKeptChildren::arrange() {
    const auto isOfSource = [](const Step& step) {
        return step.kind == Step::GAP || step.kind == Step::KEPT;
    };
    atEnd = static_cast<std::size_t>(steps.rend() -
                                     std::find_if(steps.rbegin(), steps.rend(), isOfSource));
    before = behind = none;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Step& step = steps[i];
        if (isSibling(i))
            before = i;
        if (step.kind == Step::WENT) {
            takeLine(i);
        } else if (step.kind == Step::CAME && !step.isSeparator) {
            arrangeNew(i);
        } else {
            if (!step.isSeparator && afterNew)
                addLine(*afterNew);
            afterNew.reset();
            addPieces(step, std::nullopt);
        }
    }
    if (last)
        pieces.push_back(*last);
}

bool PelXercesKeptChildren::isLineEnd(const Piece& piece) const {
    if (piece.text.empty() && piece.node != nullptr)
        return isSpaceText(piece.node) &&
               std::u16string_view(piece.node->getNodeValue()).find(u'\n') !=
                   std::u16string_view::npos;
    const std::string_view space = piece.text.empty() ? piece.added : piece.text;
    return isWhiteSpace(space) && hasLineEnd(space);
}

// A node that stood alone on its line takes that along.
void PelXercesKeptChildren::takeLine(std::size_t index) {
    if (steps[index].isSeparator || index + 1 == steps.size() || pieces.empty())
        return;
    const Step& next = steps[index + 1];
    Piece& inFront = pieces.back();
    if (next.isSeparator && next.kind != Step::WENT && hasLineEnd(next.text) &&
        !inFront.text.empty() && isLineEnd(inFront))
        inFront = {withoutLastLine(inFront.text)};
}

// Where siblings stand on lines of their own, so does what came.
void PelXercesKeptChildren::arrangeNew(std::size_t index) {
    const std::optional<std::string> indentation =
        bringsItsLine(index) ? std::nullopt : indentationFor(index);
    if (!indentation) {
        addPieces(steps[index], std::nullopt);
        return;
    }
    const bool isAtLineStart = !pieces.empty() && isLineEnd(pieces.back());
    const bool isBehindLast = isAtLineStart && index >= atEnd && !pieces.back().text.empty();
    if (isBehindLast) {
        last = pieces.back();
        pieces.pop_back();
    }
    if ((!isAtLineStart || isBehindLast) && !(isDocument && pieces.empty()))
        addLine(*indentation);
    addPieces(steps[index], indentation);
    afterNew = indentation;
    if (index + 1 == steps.size() && !last && !isDocument && outer)
        last = Piece{{}, nullptr, std::nullopt, style.lineEnd + *outer};
}

// Whether the program has put a line end beside it.
bool PelXercesKeptChildren::bringsItsLine(std::size_t index) const {
    const auto isOwnLineEnd = [this](std::size_t i) {
        return i < steps.size() && steps[i].kind == Step::CAME && steps[i].isSeparator &&
               isLineEnd({{}, steps[i].unit->first});
    };
    return isOwnLineEnd(index + 1) || (index > 0 && isOwnLineEnd(index - 1));
}

bool PelXercesKeptChildren::isSibling(std::size_t index) const {
    return steps[index].original != none && !originals[steps[index].original].isSpace;
}

// That of the sibling behind, else in front; else one step more than the parent.
std::optional<std::string> PelXercesKeptChildren::indentationFor(std::size_t index) {
    if (style.lineEnd.empty())
        return std::nullopt;
    if (behind == none || behind < index)
        for (behind = index; behind < steps.size() && !isSibling(behind);)
            ++behind;
    const std::size_t nearest = behind < steps.size() ? behind : before;
    if (nearest != none) {
        const auto indentation =
            indentationAt(text, originals[steps[nearest].original].place.begin);
        return indentation ? std::optional<std::string>(*indentation) : std::nullopt;
    }
    if (isDocument)
        return std::string();
    return outer ? std::optional<std::string>(*outer + style.step) : std::nullopt;
}

void PelXercesKeptChildren::addLine(const std::string& indentation) {
    pieces.push_back({{}, nullptr, std::nullopt, style.lineEnd + indentation});
}

void PelXercesKeptChildren::addPieces(const Step& step,
                                      const std::optional<std::string>& indentation) {
    if (step.kind == Step::WENT)
        return;
    if (!step.text.empty()) {
        const DOMNode* const single = step.unit != nullptr ? step.unit->single() : nullptr;
        const bool isText = single != nullptr && single->getNodeType() == DOMNode::TEXT_NODE;
        pieces.push_back({step.text, isText ? single : nullptr});
        return;
    }
    for (const DOMNode* node = step.unit->first;; node = node->getNextSibling()) {
        pieces.push_back({{}, node, indentation});
        if (node == step.unit->last)
            return;
    }
}
