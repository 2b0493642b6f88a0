// SPDX-License-Identifier: MIT
#include "read/input/PelXercesDOMTreeErrorReporter.h"

#include "read/input/PelXercesReadMemory.h"

#include <xercesc/sax/SAXParseException.hpp>

#include <algorithm>
#include <string>
#include <utility>

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
    memory.getStreams().readers->getLastExtEntityInfo(place);
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
    const xercesc::XMLReader* const reader = memory.getStreams().readers->getCurrentReader();
    if (reader != nullptr && column > 1)
        column = entities.inCharacters(id, PelString(reader->getEncodingStr()).toUtf8().c_str(),
                                       line, column);
    std::u16string oneLine(text.view()); // what it quotes may have line breaks
    std::replace_if(
        oneLine.begin(), oneLine.end(), [](char16_t unit) { return unit < u' '; }, u' ');
    messages.push_back({isError, entities.nameOf(id), line, column, std::move(oneLine)});
}
