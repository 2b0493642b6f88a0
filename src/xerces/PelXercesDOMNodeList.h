// SPDX-License-Identifier: MIT
#pragma once

#include "xerces/PelXercesList.h"

#include <qrndom/PelDOMNodeListImp.h>

class PelDOMNodeList;

/// The list implementation over the engine's tree. It keeps the tree alive.
class PelXercesDOMNodeList final : public PelDOMNodeListImp {
public:
    explicit PelXercesDOMNodeList(PelXercesList engineList);

    PelDOM::Error item(long index, PelDOMNode& out) override;
    long length() override;
    PelDOMNodeListImp* clone() override;

    /// Puts a handle to `engineList` into a caller's handle.
    static void give(PelXercesList engineList, PelDOMNodeList& out);

private:
    PelXercesList list;
};
