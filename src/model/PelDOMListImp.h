// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMCursor.h"

#include <qrndom/PelDOMNodeListImp.h>

#include <memory>

/// What the library's own lists can do beyond those that users implement. Its virtual operations
/// come after those of the public interface, which cannot grow.
class PelDOMListImp : public PelDOMNodeListImp {
public:
    /// Whether both are the same list of the same node.
    virtual bool isSameList(const PelDOMListImp& other) const noexcept = 0;

    /// A cursor before the first node.
    virtual std::shared_ptr<PelDOMCursor> walk() const = 0;
};
