// SPDX-License-Identifier: MIT
#include "xerces/PelXercesDOMNodeList.h"

#include "xerces/PelXercesCursor.h"
#include "xerces/PelXercesDOMNode.h"

#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMNodeList.h>

#include <utility>

PelDOM::Error PelXercesDOMNodeList::item(long index, PelDOMNode& out) {
    if (index < 0 || index >= length())
        return PelDOM::INDEX_OUT_OF_RANGE;
    PelXercesDOMNode::give(list.getRoot(), list.item(static_cast<std::size_t>(index)), out);
    return PelDOM::SUCCESS;
}

long PelXercesDOMNodeList::length() {
    return static_cast<long>(list.length());
}

PelDOMNodeListImp* PelXercesDOMNodeList::clone() {
    return new PelXercesDOMNodeList(list);
}

// Every list of the library is of this class.
bool PelXercesDOMNodeList::isSameList(const PelDOMListImp& other) const noexcept {
    return list.isSame(static_cast<const PelXercesDOMNodeList&>(other).list);
}

std::shared_ptr<PelDOMCursor> PelXercesDOMNodeList::walk() const {
    return std::make_shared<PelXercesCursor>(list.getSelected());
}
