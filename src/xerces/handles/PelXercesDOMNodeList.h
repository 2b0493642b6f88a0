// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/handles/PelXercesCursor.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// What a live list knows of its tree: its length, and one place between two nodes of the tree,
/// with the number of the list's nodes in front of it. It follows the tree's changes for as long as
/// that is less work than to begin anew, so a list that is no longer asked costs nothing.
class PelXercesListPlace final : private PelXercesChangeLog::Observer {
public:
    /// `listed` belongs to the list, which outlives this.
    explicit PelXercesListPlace(const PelXercesSelected& listed) : selected(listed) {}
    PelXercesListPlace(const PelXercesSelected& listed, const PelXercesListPlace& other);
    ~PelXercesListPlace() { forget(); }

    std::size_t count();

    /// The node at a position below the count, which was asked for since the last change.
    xercesc::DOMNode* nodeAt(std::size_t index);

private:
    using Change = PelXercesChangeLog::Change;

    bool isOfChildren() const { return selected.kind == PelXercesSelected::CHILDREN; }
    bool matches(const xercesc::DOMNode& node) const;
    bool matches(const XMLCh* tagName) const;

    std::size_t countNodes();
    void beginAt(xercesc::DOMNode* node, std::size_t index);
    void goForwardTo(std::size_t index);
    void goBackTo(std::size_t index);

    void follow(const Change& change) noexcept override;
    void followChild(const Change& change) noexcept;
    void followElement(const Change& change) noexcept;
    void followRenaming(const Change& change) noexcept;
    void add(const Change& change, std::size_t number) noexcept;
    bool isInside(const Change& change) noexcept;
    bool hasPatience(std::size_t steps) noexcept;
    void forget() noexcept;

    const PelXercesSelected& selected;
    mutable const XMLCh* pooledName = nullptr; // null: no node has matched

    bool isFollowing = false; // if so, knownCount is valid
    std::size_t knownCount = 0;
    std::size_t spent = 0;     // steps taken for changes since the list was asked
    std::size_t allowance = 0; // steps that beginning anew would take

    // The place is in front of `next`, a child of `above`, or behind the last child.
    xercesc::DOMNode* above = nullptr; // null: there is no place
    xercesc::DOMNode* next = nullptr;
    std::size_t placeIndex = 0;
    std::size_t reach = 0; // steps left for keeping the place
};

/// The list implementation over the engine's tree, which it keeps alive: the children of a node, or
/// its descendant elements with a tag name. The engine's own lists walk from the start for every
/// answer; this one's place makes a loop take one step for each node.
class PelXercesDOMNodeList final : public PelDOMListImp {
public:
    explicit PelXercesDOMNodeList(const PelXercesNodeRef& parent)
        : PelXercesDOMNodeList(PelXercesSelected{parent, PelXercesSelected::CHILDREN, {}}) {}
    PelXercesDOMNodeList(const PelXercesNodeRef& top, std::u16string_view tagName)
        : PelXercesDOMNodeList(
              PelXercesSelected{top, PelXercesSelected::ELEMENTS, std::u16string(tagName)}) {}

    PelDOM::Error item(long index, PelDOMNode& out) override;
    long length() override;
    PelDOMNodeListImp* clone() override;
    bool isSameList(const PelDOMListImp& other) const noexcept override;
    std::shared_ptr<PelDOMCursor> walk() const override;

private:
    explicit PelXercesDOMNodeList(PelXercesSelected listed)
        : selected(std::move(listed)), place(selected) {}
    PelXercesDOMNodeList(const PelXercesDOMNodeList& other)
        : PelDOMListImp(other), selected(other.selected), place(selected, other.place) {}

    const PelXercesSelected selected;
    PelXercesListPlace place;
};
