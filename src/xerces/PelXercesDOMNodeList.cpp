// SPDX-License-Identifier: MIT
#include "xerces/PelXercesDOMNodeList.h"

#include "xerces/PelXercesDOMNode.h"

#include <qrndom/PelDOMNode.h>
#include <qrndom/PelDOMNodeList.h>

PelXercesDOMNodeList::PelXercesDOMNodeList(const PelXercesList& engineList) : list(engineList) {
}

PelDOM::Error PelXercesDOMNodeList::item(long index, PelDOMNode& out) {
    if (index < 0 || index >= length())
        return PelDOM::INDEX_OUT_OF_RANGE;
    PelXercesDOMNode::give(list.item(static_cast<std::size_t>(index)), out);
    return PelDOM::SUCCESS;
}

long PelXercesDOMNodeList::length() {
    return static_cast<long>(list.length());
}

PelDOMNodeListImp* PelXercesDOMNodeList::clone() {
    return new PelXercesDOMNodeList(list);
}

void PelXercesDOMNodeList::give(const PelXercesList& engineList, PelDOMNodeList& out) {
    PelDOMNodeList temporary(new PelXercesDOMNodeList(engineList));
    out = temporary;
}
