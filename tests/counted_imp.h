// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMNodeImp.h"
#include "support.h"

/// An implementation without an engine, which counts its kind and logs its life.
struct CountedImp : PelDOMNodeImp {
    static inline int alive = 0;
    static inline bool failsToClone = false;
    const bool throwsAtEnd;

    explicit CountedImp(bool throws = false) : PelDOMNodeImp(nullptr), throwsAtEnd(throws) {
        ++alive;
    }
    ~CountedImp() noexcept(false) override {
        --alive;
        PelDOM::error(u"gone", nullptr);
        if (throwsAtEnd)
            throw std::runtime_error("at the end");
    }
    PelDOM::Error getOwnerDocument(PelDOMDocument&) override { return PelDOM::SUCCESS; }
    PelDOM::Error appendChild(PelDOMNode&) override { return PelDOM::SUCCESS; }
    PelDOM::Error getParentNode(PelDOMNode&) override { return PelDOM::SUCCESS; }
    PelDOM::NodeType getNodeType() override { return PelDOM::COMMENT_NODE; }
    PelDOM::Error getChildNodes(PelDOMNodeList&) override { return PelDOM::SUCCESS; }
    PelDOMNodeImp* clone() override {
        if (failsToClone)
            throw std::bad_alloc();
        PelDOM::error(u"cloned", nullptr);
        return new CountedImp;
    }
    PelDOMNodeContentImp* createContentImp(const PelDOM::NodeType&) override { return nullptr; }
};
