// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/handles/PelXercesCursor.h"

#include <cstddef>

/// What a live list knows of its tree: how many nodes it has, and one place between nodes of the
/// tree, with the number of its nodes in front of that. It follows every change of the tree for as
/// long as that is less work than to begin anew, so lists that nobody asks any more cost nothing.
class PelXercesListPlace final : private PelXercesChangeLog::Observer {
public:
    /// Of all children, or of elements below; the list keeps what is selected, and outlives this.
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

    bool isFollowing = false; // and knows the count
    std::size_t knownCount = 0;
    std::size_t spent = 0;     // steps on changes since the list was asked
    std::size_t allowance = 0; // as many are no more than to begin anew

    // The place is in front of `next`, a child of `above`, or behind the last child.
    xercesc::DOMNode* above = nullptr; // null: there is no place
    xercesc::DOMNode* next = nullptr;
    std::size_t placeIndex = 0;
    std::size_t reach = 0; // steps for keeping the place since it was asked for, like `allowance`
};
