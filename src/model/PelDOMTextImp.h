// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMNodeContentImp.h"

#include <qrndom/PelDOM.h>

/// The content of a text. The order of the virtual operations is fixed.
class PelDOMTextImp : public PelDOMNodeContentImp {
public:
    PelDOMTextImp() noexcept : PelDOMNodeContentImp(nullptr) {}

    /// INVALID_VALUE for an empty value, then INTERNAL_ERROR when the content has no node.
    virtual PelDOM::Error setValue(const PelString& value) = 0;

    /// Empty when the content has no node.
    virtual PelString getValue() = 0;
};
