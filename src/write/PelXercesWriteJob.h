// SPDX-License-Identifier: MIT
#pragma once

#include "write/characters/PelXercesCharacterSet.h"
#include "xerces/tree/PelXercesTree.h"

#include <qrndom/PelDOMWriter.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <optional>
#include <ostream>
#include <string>

class PelXercesEncoder;
class PelXercesMarkup;
class PelXercesSerializer;

/// What a PelDOMWriter is set to.
struct PelWriteSettings {
    std::optional<int> indent; ///< Here and below, none: as usual, or as the kept source has it.
    std::optional<PelDOMWriter::LineEnds> lineEnds;
    std::optional<PelString> encoding;
    std::optional<bool> hasDeclaration;
    bool hasDefaultAttributes = false;
    bool isLayoutKept = false;
};

/// One node, and how it is to be written. Throws a PelXercesWriteError or the engine's
/// TranscodingException for an encoding that is of no use, and for what cannot be written.
class PelXercesWriteJob {
public:
    PelXercesWriteJob(const PelWriteSettings& writeSettings, const PelXercesNodeRef& topNode);

    /// May be repeated. Nothing is said of a stream that fails; one that has failed takes no time.
    void to(std::ostream& stream);

    /// Sees that all can be written, and writes nowhere.
    void check() {
        std::ostream nowhere(nullptr);
        to(nowhere);
    }

    /// What is to be said of a write that succeeds; empty if there is nothing.
    const PelString& getRemark() const { return remark; }

private:
    void writeKept(PelXercesMarkup& out, PelXercesEncoder& encoder,
                   PelXercesSerializer& serializer);
    bool leavesOutDefaults() const;
    bool needsMark() const;
    std::u16string declaration() const;

    const PelWriteSettings& settings;
    const xercesc::DOMNode& top;
    const PelXercesTree& tree;
    const xercesc::DOMDocument& document;
    const PelXercesKeptSource* source; // null: its layout is not kept
    PelString remark;
    const std::u16string encoding;
    PelXercesCharacterSet characterSet;
    bool isReadByItself = false; // a document or an element
    bool isDeclared = false;
    bool isVersion11 = false;
};
