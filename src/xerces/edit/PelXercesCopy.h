// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesNodeRef.h"

/// Copies of nodes.
class PelXercesCopy {
public:
    /// A copy of `source`, of any tree, and, if `isDeep`, of all below it, in the tree of `owner`
    /// and without a parent. None for kinds of which a document has one at most, and where a name
    /// is only allowed in the other document's version of XML.
    static PelXercesNodeRef make(const PelXercesNodeRef& owner, const PelXercesNodeRef& source,
                                 bool isDeep);
};
