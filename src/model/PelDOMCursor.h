// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMNodeListImp.h>

#include <memory>

class PelDOMNodeImp;

/// The position of a loop over nodes; its iterators share one.
class PelDOMCursor {
public:
    PelDOMCursor() = default;
    PelDOMCursor(const PelDOMCursor&) = delete;
    PelDOMCursor& operator=(const PelDOMCursor&) = delete;
    virtual ~PelDOMCursor() = default;

    /// Goes to the next node, or, at first, to the first one; false when there is none.
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

/// The library's own lists. The public interface, which users implement, cannot grow.
class PelDOMListImp : public PelDOMNodeListImp {
public:
    /// Whether both are the same list of the same node.
    virtual bool isSameList(const PelDOMListImp& other) const noexcept = 0;

    /// A cursor before the first node.
    virtual std::shared_ptr<PelDOMCursor> walk() const = 0;
};
