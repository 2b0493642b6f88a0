// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOM.h>

class PelDOMNode;

/// The attribute-map handle: a place kept in the model. Attributes are reached through the element
/// handle, so nothing makes one.
class PelDOMNamedNodeMap {
public:
    virtual ~PelDOMNamedNodeMap() = default;
};

/// What would stand behind it.
class PelDOMNamedNodeMapImp {
public:
    virtual ~PelDOMNamedNodeMapImp() = default;

    virtual PelDOM::Error getNamedItem(const PelString& name, PelDOMNode& out) = 0;
    virtual PelDOM::Error item(long index, PelDOMNode& out) = 0;
    virtual long length() = 0;
};
