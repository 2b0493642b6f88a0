// SPDX-License-Identifier: MIT
#pragma once

#include "write/characters/PelXercesCharacterSet.h"

#include <qrndom/PelDOMWriter.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <ostream>
#include <string>

/// What a PelDOMWriter is set to.
struct PelWriteSettings {
    int indent = 0;
    PelDOMWriter::LineEnds lineEnds = PelDOMWriter::LF;
    PelString encoding = u"UTF-8";
    bool hasDeclaration = true;
};

/// One node, and how it is to be written. Throws a PelXercesWriteError or the engine's
/// TranscodingException for an encoding that is of no use, and for what cannot be written.
class PelXercesWriteJob {
public:
    PelXercesWriteJob(const PelWriteSettings& writeSettings, const xercesc::DOMNode& topNode);

    /// May be repeated. Nothing is said of a stream that fails; one that has failed takes no time.
    void to(std::ostream& stream);

    /// Sees that all can be written, and writes nowhere.
    void check() {
        std::ostream nowhere(nullptr);
        to(nowhere);
    }

private:
    bool needsMark() const;
    std::u16string declaration() const;

    const PelWriteSettings& settings;
    const xercesc::DOMNode& top;
    const xercesc::DOMDocument& document;
    const std::u16string encoding;
    PelXercesCharacterSet characterSet;
    bool isReadByItself = false; // a document or an element
    bool isDeclared = false;
    bool isVersion11 = false;
};
