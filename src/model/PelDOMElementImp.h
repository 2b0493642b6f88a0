// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMNodeImp.h"

#include <qrndom/PelDOM.h>
#include <qrndom/PelDOMRanges.h>

#include <memory>
#include <vector>

class PelDOMNode;
class PelDOMNodeList;

/// The content of an element. The order of the virtual operations is fixed.
///
/// Changing operations answer INVALID_VALUE for an empty name, then for an empty value or text,
/// then INTERNAL_ERROR when the content has no node; reading ones answer empty or 0 there.
class PelDOMElementImp : public PelDOMNodeContentImp {
public:
    PelDOMElementImp() noexcept : PelDOMNodeContentImp(nullptr) {}

    virtual PelDOM::Error removeAttribute(const PelString& name) = 0;
    virtual long getNumAttributes() = 0;
    virtual PelString getAttributeValueAt(long index) = 0;
    virtual PelString getAttributeNameAt(long index) = 0;
    virtual PelDOM::Error setAttribute(const PelString& name, const PelString& value) = 0;
    virtual PelDOM::Error appendTextElement(const PelString& name, const PelString& text) = 0;
    virtual PelString getTagName() = 0;
    virtual PelString getAttribute(const PelString& name) = 0;

    /// Assigns the live list to `out` and gives its length; leaves `out` alone without a node.
    virtual int getElementsByTagName(const PelString& name, PelDOMNodeList& out) = 0;

    /// The relative, or the nearest node beyond it in the same direction, that is an element with a
    /// tag name ("*": any): a new object for the caller to own; null when there is none.
    virtual PelDOMNodeImp* getElement(PelDOMNodeImp::Relative start, const PelString& name) = 0;

    /// INVALID_VALUE for a name that XML forbids.
    virtual PelDOM::Error setTagName(const PelString& name) = 0;

    virtual bool hasAttribute(const PelString& name) = 0;

    /// INTERNAL_ERROR without a node, then INVALID_VALUE for a name or value that XML forbids. The
    /// value may be empty.
    virtual PelDOM::Error putAttribute(const PelString& name, const PelString& value) = 0;

    /// The child elements with a tag name ("*": all), for loops; null without a node.
    virtual std::shared_ptr<const PelDOMSelection> getChildElements(const PelString& name) = 0;

    virtual std::vector<PelDOMAttribute> getAttributes() = 0;

    virtual PelString lookupNamespaceURI(const PelString& prefix) = 0;

    /// Sets `value` to the text that is the only child; false, with `value` as it was, when there
    /// is no such child. Writes no line to the log.
    virtual bool getOnlyText(PelString& value) = 0;
};

/// The attribute-map handle, which nothing makes: attributes are reached through the element
/// handle.
class PelDOMNamedNodeMap {
public:
    virtual ~PelDOMNamedNodeMap() = default;
};

/// The interface of an attribute map.
class PelDOMNamedNodeMapImp {
public:
    virtual ~PelDOMNamedNodeMapImp() = default;

    virtual PelDOM::Error getNamedItem(const PelString& name, PelDOMNode& out) = 0;
    virtual PelDOM::Error item(long index, PelDOMNode& out) = 0;
    virtual long length() = 0;
};
