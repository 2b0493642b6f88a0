// SPDX-License-Identifier: MIT
#include "xerces/handles/PelXercesDOMNodeList.h"

#include "xerces/handles/PelXercesDOMNode.h"

#include <qrndom/PelDOMNode.h>

PelDOM::Error PelXercesDOMNodeList::item(long index, PelDOMNode& out) {
    if (index < 0 || index >= length())
        return PelDOM::INDEX_OUT_OF_RANGE;
    PelXercesDOMNode::give(selected.root, place.nodeAt(static_cast<std::size_t>(index)), out);
    return PelDOM::SUCCESS;
}

long PelXercesDOMNodeList::length() {
    return static_cast<long>(place.count());
}

PelDOMNodeListImp* PelXercesDOMNodeList::clone() {
    return new PelXercesDOMNodeList(*this);
}

// Every list of the library is of this class.
bool PelXercesDOMNodeList::isSameList(const PelDOMListImp& other) const noexcept {
    const auto& list = static_cast<const PelXercesDOMNodeList&>(other).selected;
    return selected.root.getNode() == list.root.getNode() && selected.kind == list.kind &&
           selected.name == list.name;
}

std::shared_ptr<PelDOMCursor> PelXercesDOMNodeList::walk() const {
    return std::make_shared<PelXercesCursor>(selected);
}
