// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/sax/ErrorHandler.hpp>

/// Notes whether a parse reported an error. It prints nothing and takes no notice of warnings.
class PelXercesDOMTreeErrorReporter final : public xercesc::ErrorHandler {
public:
    void warning(const xercesc::SAXParseException& /*report*/) override {}
    void error(const xercesc::SAXParseException& /*report*/) override { sawErrors = true; }
    void fatalError(const xercesc::SAXParseException& /*report*/) override { sawErrors = true; }
    void resetErrors() override {} // once seen, an error stays seen

    bool getSawErrors() const noexcept { return sawErrors; }

private:
    bool sawErrors = false;
};
