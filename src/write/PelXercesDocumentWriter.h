// SPDX-License-Identifier: MIT
#pragma once

#include "write/target/PelTextModeStream.h"

#include <qrndom/PelDOMDocument.h>

#include <xercesc/dom/DOMNode.hpp>

#include <optional>

/// One write of a document to a file or into a string. Writes never overlap.
class PelXercesDocumentWriter {
public:
    /// Opens the file that `target` names, if the write is to a file, whatever comes of the write.
    PelXercesDocumentWriter(PelString& target, bool toFile, bool newlines, bool terminator);

    /// NULL_NODE for a document handle over no node; INTERNAL_ERROR when the engine's output fails.
    PelDOM::Error write(const PelDOMDocument& document);

private:
    void writeToFile(const xercesc::DOMNode& document, const std::u16string& encoding);
    void writeToString(const xercesc::DOMNode& document, const std::u16string& encoding);

    PelString& text;
    std::optional<PelTextModeStream> file;
    const bool hasNewlines;
    const bool hasTerminator;
};
