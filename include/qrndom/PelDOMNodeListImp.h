// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>
#include <qrndom/export.h>

class PelDOMNode;

/// What stands behind a list handle. Implement it to hand a list of your own to code that takes a
/// PelDOMNodeList.
///
/// Owns     whatever its list needs.
/// Lives    until the handle that owns it lets go of it.
/// Threads  as the handle's.
/// Errors   codes of PelDOM::Error.
/// Cost     `clone` is called for each copy and assignment of a handle.
class QRNDOM_API PelDOMNodeListImp {
public:
    /// The base holds nothing.
    PelDOMNodeListImp();

    /// Nothing to copy.
    PelDOMNodeListImp(const PelDOMNodeListImp& other);

    /// Nothing to assign.
    PelDOMNodeListImp& operator=(const PelDOMNodeListImp& other);

    /// Assigns a handle to the node at `index` to `out`. INDEX_OUT_OF_RANGE, with `out` unchanged,
    /// for an index below 0 or not below length().
    virtual PelDOM::Error item(long index, PelDOMNode& out) = 0;

    /// Called by the handle that owns it.
    virtual ~PelDOMNodeListImp();

    /// The number of nodes in the list now.
    virtual long length() = 0;

    /// A new object over the same list, for the caller to own.
    virtual PelDOMNodeListImp* clone() = 0;
};
