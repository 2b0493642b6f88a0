// SPDX-License-Identifier: MIT
#pragma once

class PelDOMNodeImp;

/// The base of the content interfaces, one for each kind of node that has content. A content object
/// reaches its node only through the node implementation that owns it.
class PelDOMNodeContentImp {
public:
    explicit PelDOMNodeContentImp(PelDOMNodeImp* owner) noexcept : nodeImp(owner) {}
    PelDOMNodeContentImp(const PelDOMNodeContentImp&) = delete;
    PelDOMNodeContentImp& operator=(const PelDOMNodeContentImp&) = delete;
    virtual ~PelDOMNodeContentImp() = default;

    void setNodeImp(PelDOMNodeImp* owner) noexcept { nodeImp = owner; }
    PelDOMNodeImp* getNodeImp() const noexcept { return nodeImp; }

private:
    PelDOMNodeImp* nodeImp;
};
