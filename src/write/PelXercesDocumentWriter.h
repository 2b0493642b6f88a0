// SPDX-License-Identifier: MIT
#pragma once

#include "write/target/PelByteStream.h"

#include <qrndom/PelDOMDocument.h>

#include <xercesc/dom/DOMNode.hpp>

#include <optional>

/// One write of a document by the services, to a file or into a string. Writes never overlap.
class PelXercesDocumentWriter {
public:
    /// Opens the file that `target` names, if the write is to a file, whatever comes of the write.
    PelXercesDocumentWriter(PelString& target, bool toFile, bool newlines, bool terminator);

    /// NULL_NODE for a document handle over no node; INTERNAL_ERROR when the engine's output fails.
    PelDOM::Error write(const PelDOMDocument& document);

private:
    void writeNode(const xercesc::DOMNode& document);

    PelString& text;
    std::optional<PelTextModeStream> file;
    const bool hasNewlines;
    const bool hasTerminator;
};
