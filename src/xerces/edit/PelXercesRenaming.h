// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/tree/PelXercesNodePool.h"

/// The renaming of an element in place, with the attributes that its document's type adds.
class PelXercesRenaming {
public:
    /// Gives `element` a name that XML allows. When no memory is left for that, the exception finds
    /// it as it was.
    static void rename(xercesc::DOMElementImpl& element, const XMLCh* name,
                       PelXercesNodePool& nodes);
};
