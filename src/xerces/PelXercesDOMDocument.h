// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMDocumentImp.h"

/// The content of a document, over the engine.
class PelXercesDOMDocument : public PelDOMDocumentImp {
public:
    PelDOMElement getDocumentElement() override;
    PelDOMElement createElement(const PelString& tagName) override;
    PelDOMText createTextNode(const PelString& text) override;
};
