// SPDX-License-Identifier: MIT
#include "model/PelDOMNodeImp.h"

#include "model/PelDOMNodeContentImp.h"

PelDOMNodeImp::PelDOMNodeImp(PelDOMNodeContentImp* nodeContent) noexcept {
    setContentImp(nodeContent);
}

PelDOMNodeImp::~PelDOMNodeImp() noexcept(false) {
    delete content;
}

void PelDOMNodeImp::setContentImp(PelDOMNodeContentImp* member) noexcept {
    content = member;
    if (content != nullptr)
        content->setNodeImp(this);
}
