// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>
#include <qrndom/export.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

class PelDOMCursor;
class PelDOMElement;
class PelDOMNodeImp;
class PelDOMSelection;

/// One attribute of PelDOMElement::getAttributes: copies of its name and value.
struct PelDOMAttribute {
    PelString name;  ///< As written, prefix included.
    PelString value; ///< With all references replaced.
};

/// Where a loop over nodes has come to; the part of PelDOMIterator that does not depend on the kind
/// of handle.
///
/// Owns     a share of the place, which copies have in common.
/// Lives    as long as the caller likes, and keeps the tree alive as handles do.
/// Threads  as the handles into the tree.
/// Errors   none.
/// Cost     a step makes nothing; a node costs one implementation object.
class QRNDOM_API PelDOMPlace {
public:
    /// The end of every loop.
    PelDOMPlace() noexcept = default;

    /// At the first node that `start` comes to.
    explicit PelDOMPlace(std::shared_ptr<PelDOMCursor> start);

    /// A new implementation object over the node, for the caller to own; null at the end.
    PelDOMNodeImp* getNode() const;

    /// Goes on to the next node, or to the end.
    void step();

    /// Whether both are at the end, or copies of one another.
    friend bool operator==(const PelDOMPlace& left, const PelDOMPlace& right) noexcept {
        return left.cursor == right.cursor;
    }

private:
    std::shared_ptr<PelDOMCursor> cursor;
};

/// An input iterator over handles: what a range-based `for` goes through.
///
/// The loop sees what was there when it began and is there when its turn comes. Its body may change
/// the tree in any way. When it removes or moves the node that it was given, the loop goes on with
/// the one that followed it; nodes that are removed before their turn are passed over, and nodes
/// that come in are met if they stand between two that are yet to come.
///
/// Owns     a share of the place, which copies have in common.
/// Lives    as long as the caller likes, and keeps the tree alive as handles do.
/// Threads  as the handles into the tree.
/// Errors   none; at the end it gives null handles.
/// Cost     each step makes one implementation object, for the handle, and none for a node that is
///          skipped. While it lives, each removal in the tree tells it so.
template <class Handle>
class PelDOMIterator {
public:
    using iterator_category = std::input_iterator_tag; ///< One pass.
    using value_type = Handle;                         ///< What the loop gets.
    using difference_type = std::ptrdiff_t;            ///< As every iterator's.
    using pointer = void;                              ///< There is nothing to point to.
    using reference = Handle;                          ///< Handles come by value.

    /// The end.
    PelDOMIterator() noexcept = default;

    /// At the node of `start`.
    explicit PelDOMIterator(PelDOMPlace start) noexcept : place(std::move(start)) {}

    /// A handle to the node.
    Handle operator*() const { return Handle(place.getNode()); }

    /// Goes on to the next node, or to the end.
    PelDOMIterator& operator++() {
        place.step();
        return *this;
    }

    /// The same; there is no earlier place to give.
    void operator++(int) { place.step(); }

    /// Whether both are at the end, or copies of one another.
    friend bool operator==(const PelDOMIterator& left, const PelDOMIterator& right) noexcept {
        return left.place == right.place;
    }

    /// Whether they are not.
    friend bool operator!=(const PelDOMIterator& left, const PelDOMIterator& right) noexcept {
        return !(left == right);
    }

private:
    PelDOMPlace place;
};

/// The child elements of an element that have a tag name, for a loop; see PelDOMIterator.
///
/// Owns     a share of what it selects from; nothing is found before a loop begins.
/// Lives    as long as the caller likes, and keeps the tree alive as handles do.
/// Threads  as the handles into the tree.
/// Errors   none.
/// Cost     a loop looks at each child once.
class QRNDOM_API PelDOMElementRange {
public:
    /// The empty range, or the one that `selected` stands for.
    explicit PelDOMElementRange(std::shared_ptr<const PelDOMSelection> selected = nullptr) noexcept
        : selection(std::move(selected)) {}

    /// At the first of the elements that are there now.
    PelDOMIterator<PelDOMElement> begin() const;

    /// The end of every loop.
    PelDOMIterator<PelDOMElement> end() const noexcept { return {}; }

private:
    std::shared_ptr<const PelDOMSelection> selection;
};
