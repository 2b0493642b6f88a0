// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMDocumentImp.h"

/// The content of a document, over the engine.
class PelXercesDOMDocument : public PelDOMDocumentImp {
public:
    PelDOMElement getDocumentElement() override;
    PelDOMElement createElement(const PelString& tagName) override;
    PelDOMText createTextNode(const PelString& text) override;
    PelDOMNode importNode(const PelDOMNode& source, bool deep) override;
    PelDOMNode createComment(const PelString& data) override;
    PelDOMNode createCDATASection(const PelString& data) override;
    PelDOMNode createProcessingInstruction(const PelString& target, const PelString& data) override;
    PelString getInputEncoding() override;
};

/// The content of a text, over the engine.
class PelXercesDOMText : public PelDOMTextImp {
public:
    PelDOM::Error setValue(const PelString& value) override;
    PelString getValue() override;
};
