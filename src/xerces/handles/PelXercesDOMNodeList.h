// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMListImp.h"
#include "xerces/handles/PelXercesListPlace.h"
#include "xerces/tree/PelXercesNodeRef.h"

#include <string>
#include <string_view>
#include <utility>

/// The list implementation over the engine's tree, which it keeps alive: the children of a node, or
/// its descendant elements with a tag name. It uses none of the engine's own lists, whose every
/// answer walks from the start.
/// It has a place that follows the tree's changes, so that a loop takes one step for each node.
class PelXercesDOMNodeList final : public PelDOMListImp {
public:
    explicit PelXercesDOMNodeList(const PelXercesNodeRef& parent)
        : PelXercesDOMNodeList(PelXercesSelected{parent, PelXercesSelected::CHILDREN, {}}) {}
    PelXercesDOMNodeList(const PelXercesNodeRef& top, std::u16string_view tagName)
        : PelXercesDOMNodeList(
              PelXercesSelected{top, PelXercesSelected::ELEMENTS, std::u16string(tagName)}) {}

    PelDOM::Error item(long index, PelDOMNode& out) override;
    long length() override;
    PelDOMNodeListImp* clone() override;
    bool isSameList(const PelDOMListImp& other) const noexcept override;
    std::shared_ptr<PelDOMCursor> walk() const override;

private:
    explicit PelXercesDOMNodeList(PelXercesSelected listed)
        : selected(std::move(listed)), place(selected) {}
    PelXercesDOMNodeList(const PelXercesDOMNodeList& other)
        : PelDOMListImp(other), selected(other.selected), place(selected, other.place) {}

    const PelXercesSelected selected;
    PelXercesListPlace place;
};
