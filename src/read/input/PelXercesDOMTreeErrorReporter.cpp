// SPDX-License-Identifier: MIT
#include "read/input/PelXercesDOMTreeErrorReporter.h"

#include "read/input/PelXercesReadMemory.h"

#include <xercesc/sax/SAXParseException.hpp>

#include <algorithm>
#include <string>
#include <utility>

namespace {

// Line breaks in what a message quotes become spaces.
PelString inOneLine(const PelString& text) {
    std::u16string line(text.view());
    std::replace_if(
        line.begin(), line.end(), [](char16_t unit) { return unit < u' '; }, u' ');
    return PelString(std::move(line));
}

} // namespace

void PelXercesDOMTreeErrorReporter::note(bool isError, const xercesc::SAXParseException& report) {
    PelXercesEntities& entities = memory.getEntities();
    PelString text = report.getMessage();
    // The engine's words for what it cannot open give its own name and no reason.
    if (const auto failure = isError ? entities.takeFailure() : std::nullopt)
        text = entities.isDocument(failure->id)
                   ? failure->reason
                   : entities.nameOf(failure->id) + u": " + failure->reason;
    keep(isError, report.getSystemId(), static_cast<unsigned long>(report.getLineNumber()),
         static_cast<unsigned long>(report.getColumnNumber()), text);
}

void PelXercesDOMTreeErrorReporter::note(bool isError, const XMLCh* text) {
    xercesc::ReaderMgr::LastExtEntityInfo place;
    memory.getStreams().getReaders()->getLastExtEntityInfo(place);
    keep(isError, place.systemId, static_cast<unsigned long>(place.lineNumber),
         static_cast<unsigned long>(place.colNumber), text);
}

void PelXercesDOMTreeErrorReporter::keep(bool isError, const PelString& id, unsigned long line,
                                         unsigned long column, const PelString& text) {
    const bool isFirstError = isError && !sawErrors;
    sawErrors = sawErrors || isError;
    if (messages.size() >= maxMessages) {
        if (!isFirstError || messages.empty())
            return;
        messages.pop_back(); // a warning
    }
    PelXercesEntities& entities = memory.getEntities();
    const xercesc::XMLReader* const reader = memory.getStreams().getReaders()->getCurrentReader();
    if (reader != nullptr && column > 1)
        column = entities.inCharacters(id, PelString(reader->getEncodingStr()).toUtf8().c_str(),
                                       line, column);
    messages.push_back({isError, entities.nameOf(id), line, column, inOneLine(text)});
}
