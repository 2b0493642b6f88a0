// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMDocumentImp.h"
#include "model/PelDOMElementImp.h"

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

/// The content of an element, over the engine. Names and values are used as they are passed.
class PelXercesDOMElement : public PelDOMElementImp {
public:
    PelDOM::Error removeAttribute(const PelString& name) override;
    long getNumAttributes() override;
    PelString getAttributeValueAt(long index) override;
    PelString getAttributeNameAt(long index) override;
    PelDOM::Error setAttribute(const PelString& name, const PelString& value) override;
    PelDOM::Error appendTextElement(const PelString& name, const PelString& text) override;
    PelString getTagName() override;
    PelString getAttribute(const PelString& name) override;
    int getElementsByTagName(const PelString& name, PelDOMNodeList& out) override;
    PelDOMNodeImp* getElement(PelDOMNodeImp::Relative start, const PelString& name) override;
    PelDOM::Error setTagName(const PelString& name) override;
    bool hasAttribute(const PelString& name) override;
    PelDOM::Error putAttribute(const PelString& name, const PelString& value) override;
    std::shared_ptr<const PelDOMSelection> getChildElements(const PelString& name) override;
    std::vector<PelDOMAttribute> getAttributes() override;
    PelString lookupNamespaceURI(const PelString& prefix) override;
    bool getOnlyText(PelString& value) override;
};
