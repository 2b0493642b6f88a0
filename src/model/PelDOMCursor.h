// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

class PelDOMNodeImp;

/// What stands behind the iterators of a loop over nodes.
class PelDOMCursor {
public:
    PelDOMCursor() = default;
    PelDOMCursor(const PelDOMCursor&) = delete;
    PelDOMCursor& operator=(const PelDOMCursor&) = delete;
    virtual ~PelDOMCursor() = default;

    /// Goes on to the next node, at first to the first one; false when there is none.
    virtual bool step() = 0;

    /// A new object over the present node, for the caller to own; null before the first and after
    /// the last.
    virtual PelDOMNodeImp* getNode() const = 0;
};

/// Nodes that loops can go through.
class PelDOMSelection {
public:
    PelDOMSelection() = default;
    PelDOMSelection(const PelDOMSelection&) = delete;
    PelDOMSelection& operator=(const PelDOMSelection&) = delete;
    virtual ~PelDOMSelection() = default;

    /// A cursor before the first node.
    virtual std::shared_ptr<PelDOMCursor> walk() const = 0;
};
