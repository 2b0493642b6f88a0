// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMTextImp.h"

/// The content of a text, over the engine.
class PelXercesDOMText : public PelDOMTextImp {
public:
    PelDOM::Error setValue(const PelString& value) override;
    PelString getValue() override;
};
