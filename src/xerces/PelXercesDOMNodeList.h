// SPDX-License-Identifier: MIT
#pragma once

#include "model/PelDOMListImp.h"
#include "xerces/PelXercesList.h"

class PelDOMNodeList;

/// The list implementation over the engine's tree. It keeps the tree alive.
class PelXercesDOMNodeList final : public PelDOMListImp {
public:
    explicit PelXercesDOMNodeList(PelXercesList engineList);

    PelDOM::Error item(long index, PelDOMNode& out) override;
    long length() override;
    PelDOMNodeListImp* clone() override;
    bool isSameList(const PelDOMListImp& other) const noexcept override;
    std::shared_ptr<PelDOMCursor> walk() const override;

    /// Puts a handle to `engineList` into a caller's handle.
    static void give(PelXercesList engineList, PelDOMNodeList& out);

private:
    PelXercesList list;
};
