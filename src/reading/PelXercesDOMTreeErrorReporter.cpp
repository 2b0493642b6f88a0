// SPDX-License-Identifier: MIT
#include "reading/PelXercesDOMTreeErrorReporter.h"

#include "reading/PelReadMessage.h"

#include <xercesc/sax/SAXParseException.hpp>

#include <utility>

PelXercesDOMTreeErrorReporter::PelXercesDOMTreeErrorReporter(Observer reportObserver)
    : observer(std::move(reportObserver)) {
}

void PelXercesDOMTreeErrorReporter::warning(const xercesc::SAXParseException& report) {
    if (observer)
        note(false, report);
}

void PelXercesDOMTreeErrorReporter::error(const xercesc::SAXParseException& report) {
    note(true, report);
}

void PelXercesDOMTreeErrorReporter::fatalError(const xercesc::SAXParseException& report) {
    note(true, report);
}

void PelXercesDOMTreeErrorReporter::note(bool isError, const xercesc::SAXParseException& report) {
    if (!observer && sawErrors)
        return;
    const PelString place = report.getSystemId();
    const bool isDocument = place.isEmpty() != 0 || place == systemId;
    const PelString line = PelReadMessage::line(isDocument ? name : place, report.getLineNumber(),
                                                report.getColumnNumber(), report.getMessage());
    if (observer)
        observer(isError, line);
    if (isError && !sawErrors)
        firstError = line;
    sawErrors = sawErrors || isError;
}
