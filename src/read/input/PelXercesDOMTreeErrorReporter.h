// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelDOMMessage.h>

#include <xercesc/sax/ErrorHandler.hpp>

#include <cstddef>
#include <vector>

class PelXercesReadMemory;

/// Notes whether a parse reported an error, and what there is to say about the document. It prints
/// nothing.
class PelXercesDOMTreeErrorReporter final : public xercesc::ErrorHandler {
public:
    /// Keeps `most` messages, an error among them if there is one.
    PelXercesDOMTreeErrorReporter(PelXercesReadMemory& readMemory, std::size_t most)
        : memory(readMemory), maxMessages(most) {}

    void warning(const xercesc::SAXParseException& report) override { note(false, report); }
    void error(const xercesc::SAXParseException& report) override { note(true, report); }
    void fatalError(const xercesc::SAXParseException& report) override { note(true, report); }
    void resetErrors() override {} // once seen, an error stays seen

    /// What no report of the engine says, at the place to which the engine has come.
    void note(bool isError, const XMLCh* text);

    bool getSawErrors() const noexcept { return sawErrors; }

    std::vector<PelDOMMessage>& getMessages() noexcept { return messages; }

private:
    void note(bool isError, const xercesc::SAXParseException& report);
    void keep(bool isError, const PelString& id, unsigned long line, unsigned long column,
              const PelString& text);

    PelXercesReadMemory& memory;
    const std::size_t maxMessages;
    bool sawErrors = false;
    std::vector<PelDOMMessage> messages;
};
