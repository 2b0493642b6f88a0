// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>
#include <qrndom/PelDOMRanges.h>
#include <qrndom/export.h>

class PelDOMNode;
class PelDOMNodeListImp;

/// A handle to a live list of nodes: the children of a node, or the elements with a tag name.
///
/// Owns     one implementation object, or none: then it is an empty handle.
/// Lives    as long as the caller likes, and keeps the tree alive as node handles do.
/// Threads  one thread at a time for all handles into one tree; separate trees are independent.
/// Errors   codes of PelDOM::Error; it keeps no status.
/// Cost     each step of a loop makes one implementation object, by begin and end or by item; a
///          loop of length and item over n nodes takes n steps, whatever other lists are in use.
///          Every change of the tree shows at once.
class QRNDOM_API PelDOMNodeList {
public:
    PelDOMNodeList(const PelDOMNodeList& orig);     ///< A second handle to the same live list.
    PelDOMNodeList(PelDOMNodeList&& orig) noexcept; ///< Leaves `orig` an empty handle.

    /// An empty handle, or one that owns `implementation`: a list of your own.
    explicit PelDOMNodeList(PelDOMNodeListImp* implementation = nullptr);

    /// Lets go of the list; the tree goes with the last handle into it.
    virtual ~PelDOMNodeList();

    /// Lets go of the own list and refers to that of `rhs`. The value of the expression is `rhs`,
    /// not this handle.
    PelDOMNodeList& operator=(PelDOMNodeList& rhs);

    /// The same for const handles and temporaries.
    const PelDOMNodeList& operator=(const PelDOMNodeList& rhs);

    /// Takes the list of `rhs` over and leaves `rhs` an empty handle. The value is this handle.
    PelDOMNodeList& operator=(PelDOMNodeList&& rhs) noexcept;

    /// False for an empty handle. A list without nodes is not one.
    explicit operator bool() const noexcept { return imp != nullptr; }

    /// Whether both are the children of the same node, or the elements with the same name below the
    /// same node; or both are empty handles. A list of your own is equal to itself alone.
    bool isSameList(const PelDOMNodeList& other) const noexcept;

    /// As isSameList.
    friend bool operator==(const PelDOMNodeList& left, const PelDOMNodeList& right) noexcept {
        return left.isSameList(right);
    }

    /// Whether they are different lists.
    friend bool operator!=(const PelDOMNodeList& left, const PelDOMNodeList& right) noexcept {
        return !left.isSameList(right);
    }

    /// The number of nodes in the list now; 0 for an empty handle.
    virtual long length() const;

    /// Makes `out` a handle to the node at a position from 0 to length() - 1. INDEX_OUT_OF_RANGE
    /// for any other position and NULL_NODE for an empty handle, both leaving `out` as it was.
    virtual PelDOM::Error item(long index, PelDOMNode& out) const;

    /// At the first node that is in the list now; for a loop, see PelDOMIterator. A list of your
    /// own is gone through by its positions.
    PelDOMIterator<PelDOMNode> begin() const;

    /// The end of every loop.
    PelDOMIterator<PelDOMNode> end() const noexcept { return {}; }

protected:
    /// Refers to the list of `other` from now on. When no memory is left for that, the exception
    /// finds this handle unchanged.
    void assign(const PelDOMNodeList& other);

private:
    PelDOMNodeListImp* imp;
};
