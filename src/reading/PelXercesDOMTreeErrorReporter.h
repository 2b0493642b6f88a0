// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <xercesc/sax/ErrorHandler.hpp>

#include <functional>

/// Notes whether a parse reported an error, and the first one's message. It prints nothing, and
/// warnings are for its observer only.
class PelXercesDOMTreeErrorReporter final : public xercesc::ErrorHandler {
public:
    /// Hears of each error and warning, as "file:line:column: message".
    using Observer = std::function<void(bool isError, const PelString& line)>;

    explicit PelXercesDOMTreeErrorReporter(Observer reportObserver = {});

    void warning(const xercesc::SAXParseException& report) override;
    void error(const xercesc::SAXParseException& report) override;
    void fatalError(const xercesc::SAXParseException& report) override;
    void resetErrors() override {} // once seen, an error stays seen

    /// The name by which the caller knows the document with the system identifier `id`.
    void setName(const PelString& ownName, const PelString& id) {
        name = ownName;
        systemId = id;
    }

    bool getSawErrors() const noexcept { return sawErrors; }

    const PelString& getFirstError() const noexcept { return firstError; }

private:
    void note(bool isError, const xercesc::SAXParseException& report);

    const Observer observer;
    PelString name;
    PelString systemId;
    bool sawErrors = false;
    PelString firstError;
};
