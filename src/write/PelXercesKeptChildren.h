// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesKeptSource.h"

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How the text of a source is laid out: its line ends, and by how much each level is indented.
struct PelXercesSourceStyle {
    explicit PelXercesSourceStyle(const PelXercesKeptSource& source);

    std::string lineEnd;
    std::string step;
};

/// What is written between the tags of an element that has changed, or of a document: pieces of the
/// source, nodes, and white space that puts new nodes on lines of their own.
///
/// One object is for one plan.
class PelXercesKeptChildren {
public:
    struct Piece {
        std::string_view text;                  ///< As it is; else a node.
        const xercesc::DOMNode* node = nullptr; ///< Changed, moved or new; of `text`, if it is one.
        std::optional<std::string> indentation{}; ///< Of a node on a line of its own.
        std::string added{};                      ///< White space in front of a node, or alone.
    };

    /// `ownParent` is in the source, or the document.
    PelXercesKeptChildren(const PelXercesKeptSource& ownSource,
                          const PelXercesSourceStyle& ownStyle, const xercesc::DOMNode& ownParent);

    /// No lines are added or taken where they would be content.
    std::vector<Piece> plan(bool areLinesContent);

private:
    /// A child that the source has; all that one group of references brought is one.
    struct Original {
        std::size_t index; ///< Of its first place.
        PelXercesKeptSource::Place place;
        bool isSpace;
    };

    /// Children that come from one original, or a single other one.
    struct Unit {
        const xercesc::DOMNode* first;
        const xercesc::DOMNode* last;
        std::size_t original; ///< Or `none`.
        bool stays = false;

        /// The only child; null if there are more.
        const xercesc::DOMNode* single() const { return first == last ? first : nullptr; }
    };

    struct Step {
        enum Kind { GAP, KEPT, CAME, WENT } kind;
        std::string_view text{};     ///< Of a gap, and of what is as it was.
        const Unit* unit = nullptr;  ///< Kept or come.
        std::size_t original = none; ///< Kept or gone.
        bool isSeparator = false;    ///< White space between nodes.
    };

    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    bool planChanged();
    void findOriginals();
    void findUnits();
    std::size_t originalOf(const xercesc::DOMNode& child) const;
    bool isGroup(const Original& original) const;
    bool isIntact(const Unit& unit) const;
    void letLongestOrderStay();
    void findSteps();
    std::string_view between(std::size_t begin, std::size_t end) const {
        return text.substr(begin, end - begin);
    }
    void addGap(std::size_t begin, std::size_t end);
    void addKept(const Unit& unit);
    void arrange();
    void arrangeNew(std::size_t index);
    void takeLine(std::size_t index);
    std::optional<std::string> indentationFor(std::size_t index);
    bool bringsItsLine(std::size_t index) const;
    bool isSibling(std::size_t index) const;
    bool isLineEnd(const Piece& piece) const;
    void addPieces(const Step& step, const std::optional<std::string>& indentation);
    void addLine(const std::string& indentation);

    const PelXercesKeptSource& source;
    const PelXercesSourceStyle& style;
    const std::string_view text;

    const xercesc::DOMNode& parent;
    const std::size_t firstIndex; // of what may be below the parent
    std::size_t contentBegin = 0;
    std::size_t contentEnd = 0;
    std::optional<std::string> outer; // indentation of the parent
    const bool isDocument;
    std::vector<Original> originals;
    std::vector<Unit> units;
    std::vector<Step> steps;
    std::size_t atEnd = 0;     // from here on nothing of the source follows
    std::size_t before = none; // the sibling in the source in front of the step, and the one
    std::size_t behind = none; // behind it, looked for once; the number of steps: there is none
    std::vector<Piece> pieces;
    std::optional<Piece> last;             // white space in front of the end tag
    std::optional<std::string> afterNew{}; // what came last stands at the beginning of a line
};
