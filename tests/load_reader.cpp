// SPDX-License-Identifier: MIT
// A plug-in that reads while it is loaded, and once more when it goes, with lines of the log that
// wait.
#include <qrndom/QRNDOM.h>

#include <cstdlib>
#include <string>
#include <thread>

static PelString messageOf(const char* text) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    services.readDocumentFromStringA(text);
    return PelDOMUtilites::getLastReadMessage();
}

static struct LastReader {
    ~LastReader() {
        if (messageOf("<a>").isEmpty() == 1)
            std::abort();
        const PelDOMDocument document = PelDOMReader().readBytes("<a><!--c--></a>", 15, "");
        PelDOMUtilites::releaseUtilities();
        PelDOMNode comment;
        document.getDocumentElement().getChildNodes().item(0, comment);
    }
} lastReader;

/// Whether reads succeed and fail as they should, on this thread and on one that ends before.
extern "C" int readsRight() {
    bool isRight = true;
    const auto use = [&] {
        isRight =
            isRight && messageOf("<a>").isEmpty() == 0 &&
            messageOf("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>").isEmpty() == 1 &&
            messageOf("<?xml version='1.0' encoding='Shift_JIS'?><a>\x82</a>").isEmpty() == 0 &&
            messageOf("<a/>").isEmpty() == 1;
        isRight = isRight && messageOf(("<a>" + std::string(5000, 'x')).c_str()).isEmpty() == 0;
    };
    std::thread(use).join();
    use();
    return isRight ? 1 : 0;
}
