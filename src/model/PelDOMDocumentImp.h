// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOMElement.h>
#include <qrndom/PelDOMText.h>

/// The content of a document. The order of the virtual operations is fixed. Without a node, each
/// gives a null handle.
class PelDOMDocumentImp : public PelDOMNodeContentImp {
public:
    PelDOMDocumentImp() noexcept : PelDOMNodeContentImp(nullptr) {}

    virtual PelDOMElement getDocumentElement() = 0;
    virtual PelDOMElement createElement(const PelString& tagName) = 0;
    virtual PelDOMText createTextNode(const PelString& text) = 0;

    /// A null handle for kinds that cannot be copied.
    virtual PelDOMNode importNode(const PelDOMNode& source, bool deep) = 0;

    /// A null handle for what XML forbids.
    virtual PelDOMNode createComment(const PelString& data) = 0;
    virtual PelDOMNode createCDATASection(const PelString& data) = 0;
    virtual PelDOMNode createProcessingInstruction(const PelString& target,
                                                   const PelString& data) = 0;

    /// Empty when it was not read.
    virtual PelString getInputEncoding() = 0;
};

/// The content of a text. The order of the virtual operations is fixed.
class PelDOMTextImp : public PelDOMNodeContentImp {
public:
    PelDOMTextImp() noexcept : PelDOMNodeContentImp(nullptr) {}

    /// INVALID_VALUE for an empty value, then INTERNAL_ERROR when the content has no node.
    virtual PelDOM::Error setValue(const PelString& value) = 0;

    /// Empty when the content has no node.
    virtual PelString getValue() = 0;
};
