// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

/// What a reader has to say about a document: an error, which refuses it, or a warning.
struct PelDOMMessage {
    bool isError = true;      ///< Else a warning, with which the document is read.
    PelString file;           ///< As the caller named it; an entity as found from there.
    unsigned long line = 0;   ///< From 1; 0 for what has no place in the text.
    unsigned long column = 0; ///< In characters, from 1; 0 likewise.
    PelString text;           ///< For people, in one line.

    /// "file:line:column: text".
    QRNDOM_API PelString toLine() const;
};
