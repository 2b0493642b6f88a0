// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMListImp.h"
#include "xerces/PelXercesList.h"

class PelDOMNodeList;

/// The list implementation over the engine's tree. It keeps the tree alive.
class PelXercesDOMNodeList final : public PelDOMListImp {
public:
    explicit PelXercesDOMNodeList(const PelXercesList& engineList) : list(engineList) {}

    /// The children of a node, and the elements below one with a tag name.
    explicit PelXercesDOMNodeList(const PelXercesNodeRef& parent)
        : list(PelXercesList::ofChildren(parent)) {}
    PelXercesDOMNodeList(const PelXercesNodeRef& root, std::u16string_view tagName)
        : list(PelXercesList::ofElements(root, tagName)) {}

    PelDOM::Error item(long index, PelDOMNode& out) override;
    long length() override;
    PelDOMNodeListImp* clone() override;
    bool isSameList(const PelDOMListImp& other) const noexcept override;
    std::shared_ptr<PelDOMCursor> walk() const override;

private:
    PelXercesList list;
};
