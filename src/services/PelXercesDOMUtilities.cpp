// SPDX-License-Identifier: MIT
#include "services/PelXercesDOMUtilities.h"

#include "core/PelLog.h"
#include "core/PelThreadMessage.h"
#include "read/scan/PelPlainScanner.h"
#include "write/PelXercesDocumentWriter.h"
#include "xerces/engine/PelXercesEngine.h"
#include "xerces/engine/PelXercesMemory.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelXercesDeclaration.h"
#include "xerces/tree/PelXercesTree.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

#include <new>
#include <optional>
#include <utility>

namespace {

constexpr char textName[] = "text";

PelDOMDocument documentOn(const PelXercesNodeRef& node) {
    return node ? PelDOMDocument(PelXercesDOMNode::make(node)) : PelDOMDocument();
}

bool beginsWithByteOrderMark(const PelString& text) {
    return text.view().substr(0, 1) == u"\uFEFF" || text.view().substr(0, 1) == u"\uFFFE";
}

} // namespace

PelDOMUtilites* PelDOMUtilites::Utilities = nullptr;

PelDOMUtilites* PelDOMUtilites::getUtilities(PelDOM::Platform p) {
    PelDOM::error(u"PelDOMUtilites::getUtilities(PelDOM::Platform p)", nullptr);
    if (Utilities == nullptr && p == PelDOM::PLATFORM_XERCES)
        Utilities = new PelXercesDOMUtilities;
    return Utilities;
}

void PelDOMUtilites::releaseUtilities() {
    PelDOM::error(u"PelDOMUtilites::releaseUtilities()", nullptr);
    delete std::exchange(Utilities, nullptr);
}

PelString PelDOMUtilites::getLastReadMessage() {
    return PelThreadMessage::ofRead().get();
}

PelString PelDOMUtilites::getLastWriteMessage() {
    return PelThreadMessage::ofWrite().get();
}

PelString PelDOMUtilites::describeEngine() {
    return PelXercesEngine::describe();
}

PelDOMUtilites::PelDOMUtilites() = default;
PelDOMUtilites::PelDOMUtilites(const PelDOMUtilites& other) = default;
PelDOMUtilites& PelDOMUtilites::operator=(const PelDOMUtilites& other) = default;
PelDOMUtilites::~PelDOMUtilites() = default;

PelXercesDOMUtilities::~PelXercesDOMUtilities() {
    if (getErrorStatus() != PelDOM::NOT_INITIALIZED)
        PelXercesDOMUtilities::terminate();
}

PelDOM::Error PelXercesDOMUtilities::init() {
    PelLog::trace(u"PelXercesDOMUtilities::init()", this);
    PelDOM::Error status = PelDOM::INITIALIZATION_FAILED;
    try {
        if (PelXercesEngine::start())
            status = PelDOM::SUCCESS;
    } catch (const xercesc::XMLException&) {
        // The status tells.
    }
    setErrorStatus(status);
    return status;
}

PelDOM::Error PelXercesDOMUtilities::terminate() {
    PelLog::trace(u"PelXercesDOMUtilities::terminate()", this);
    PelXercesEngine::stop();
    setErrorStatus(PelDOM::NOT_INITIALIZED);
    return PelDOM::SUCCESS;
}

PelDOMDocument PelXercesDOMUtilities::createDocument(const PelString& rootName) {
    if (!isReadyFor(rootName))
        return PelDOMDocument();
    const PelXercesEngine::Share engine;
    PelXercesDocumentPtr document(xercesc::DOMImplementation::getImplementation()->createDocument(
        nullptr, rootName.view().data(), nullptr, &PelXercesMemory::get()));
    xercesc::DOMNode* const declaration =
        PelXercesDeclaration::create(*document, {u"1.0", u"UTF-8", std::nullopt});
    document->insertBefore(declaration, document->getDocumentElement());
    return documentOn(PelXercesTree::share(engine, {std::move(document)}));
}

PelDOMDocument PelXercesDOMUtilities::readDocument(const PelString& fileName) {
    return read(fileName, [&](PelXercesReader& reader) { return reader.readFile(fileName); });
}

PelDOMDocument PelXercesDOMUtilities::readDocumentFromStringA(PelString text) {
    return read(text, [&](PelXercesReader& reader) {
        return reader.readText(textName, text.getStringA(), text.view().size());
    });
}

PelDOMDocument PelXercesDOMUtilities::readDocumentFromStringW(PelString text) {
    return read(text, [&](PelXercesReader& reader) {
        return reader.readText(textName, text.view().data(), text.view().size() * sizeof(char16_t),
                               beginsWithByteOrderMark(text) ? nullptr
                                                             : PelPlainScanner::nativeUtf16());
    });
}

PelDOM::Error PelXercesDOMUtilities::writeDocument(const PelDOMDocument& document,
                                                   PelString& target, int toFile, int newlines,
                                                   int terminator) {
    PelXercesDocumentWriter writer(target, toFile != 0, newlines != 0, terminator != 0);
    PelLog::trace(u"PelXercesDOMUtilities::writeDocument()", this);
    try {
        return writer.write(document);
    } catch (const xercesc::OutOfMemoryException&) { // also of the engine's own memory
        throw std::bad_alloc();
    }
}

PelDOM::Error PelXercesDOMUtilities::writeDocument(const PelDOMDocument& document,
                                                   const PelString& fileName) {
    if (PelDOM::checkString(fileName, 0) != PelDOM::SUCCESS) {
        PelThreadMessage::ofWrite().set(u"the file has no name");
        return PelDOM::INVALID_VALUE;
    }
    PelString target = fileName;
    return writeDocument(document, target, 1, 1, 0);
}

// Wherever memory runs out, the document is null.
template <class Read>
PelDOMDocument PelXercesDOMUtilities::read(const PelString& argument, Read readBy) {
    try {
        PelLog::trace(u"PelXercesDOMUtilities::readDocument()", this);
        if (!isReadyFor(argument)) {
            PelThreadMessage::ofRead().set(getErrorStatus() == PelDOM::SUCCESS
                                               ? u":0:0: there is nothing to read"
                                               : u":0:0: the engine does not start");
            return PelDOMDocument();
        }
        PelThreadMessage::ofRead().clear();
        PelXercesReader reader;
        if (const PelXercesNodeRef node = readBy(reader))
            return documentOn(node);
        for (const PelDOMMessage& message : reader.getMessages()) {
            if (message.isError)
                PelThreadMessage::ofRead().set(message.toLine().view());
            return PelDOMDocument();
        }
    } catch (const xercesc::OutOfMemoryException&) {
    } catch (const std::bad_alloc&) {
    }
    PelThreadMessage::ofRead().set(u":0:0: not enough memory");
    return PelDOMDocument();
}

// Starts the engine if need be, even for an empty argument.
bool PelXercesDOMUtilities::isReadyFor(const PelString& argument) {
    if (getErrorStatus() != PelDOM::SUCCESS)
        init();
    return getErrorStatus() == PelDOM::SUCCESS &&
           PelDOM::checkString(argument, 0) == PelDOM::SUCCESS;
}
