// SPDX-License-Identifier: MIT
#include "model/PelDOMNodeImp.h"

#include "model/PelDOMNodeContentImp.h"

PelDOMNodeImp::PelDOMNodeImp(PelDOMNodeContentImp* nodeContent) noexcept : content(nodeContent) {
    if (content != nullptr)
        content->setNodeImp(this);
}

PelDOMNodeImp::~PelDOMNodeImp() noexcept(false) {
    delete content;
}
