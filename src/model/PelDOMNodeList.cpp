// SPDX-License-Identifier: MIT
#include <qrndom/PelDOMNodeList.h>
#include <qrndom/PelDOMNodeListImp.h>

#include <utility>

PelDOMNodeList::PelDOMNodeList(PelDOMNodeListImp* implementation) : imp(implementation) {
}

PelDOMNodeList::PelDOMNodeList(const PelDOMNodeList& orig) : imp(nullptr) {
    assign(orig);
}

PelDOMNodeList::~PelDOMNodeList() {
    delete imp;
}

PelDOMNodeList& PelDOMNodeList::operator=(PelDOMNodeList& rhs) {
    *this = std::as_const(rhs);
    return rhs;
}

const PelDOMNodeList& PelDOMNodeList::operator=(const PelDOMNodeList& rhs) {
    if (this != &rhs)
        assign(rhs);
    return rhs;
}

void PelDOMNodeList::assign(const PelDOMNodeList& other) {
    PelDOMNodeListImp* const taken = other.imp != nullptr ? other.imp->clone() : nullptr;
    delete std::exchange(imp, taken);
}

long PelDOMNodeList::length() const {
    return imp != nullptr ? imp->length() : 0;
}

PelDOM::Error PelDOMNodeList::item(long index, PelDOMNode& out) const {
    return imp != nullptr ? imp->item(index, out) : PelDOM::NULL_NODE;
}
