// SPDX-License-Identifier: MIT
#include "read/PelXercesReader.h"
#include "read/input/PelXercesReadSettings.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <qrndom/PelDOMReader.h>

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include <array>
#include <istream>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace {

constexpr std::size_t usualMaxMessages = 100;

using Bounds = PelXercesReadLimits::Bounds;

// In the order of PelDOMReader::Limit.
constexpr std::size_t Bounds::*boundsByLimit[] = {&Bounds::work,
                                                  &Bounds::workPerByte,
                                                  &Bounds::memory,
                                                  &Bounds::memoryPerByte,
                                                  &Bounds::milliseconds,
                                                  &Bounds::nanosecondsPerByte,
                                                  &Bounds::expansion,
                                                  &Bounds::expansionPerByte,
                                                  &Bounds::entityExpansions,
                                                  &Bounds::references,
                                                  &Bounds::names,
                                                  &Bounds::modelParts,
                                                  &Bounds::listCharacters,
                                                  &Bounds::reportCharacters};

static_assert(std::size(boundsByLimit) == PelDOMReader::MESSAGE_CHARACTERS + 1);

bool isLimit(PelDOMReader::Limit limit) {
    return static_cast<std::size_t>(limit) < std::size(boundsByLimit);
}

// All that comes; nothing when the stream cannot be read. The stream's own calls could throw what
// its user has asked for.
std::optional<std::string> bytesOf(std::istream& stream) {
    std::optional<std::string> bytes(std::in_place);
    if (!stream.good())
        return std::nullopt;
    std::array<char, 0x10000> piece{};
    try {
        while (const auto count = stream.rdbuf()->sgetn(piece.data(), piece.size()))
            bytes->append(piece.data(), static_cast<std::size_t>(count));
        stream.setstate(std::ios_base::eofbit); // may throw, if its user has asked for it
    } catch (const std::ios_base::failure&) {
        return bytes;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace

PelString PelDOMMessage::toLine() const {
    return PelString().format(u"%s:%lu:%lu: %s", file.view().data(), line, column,
                              text.view().data());
}

struct PelDOMReader::Body {
    PelXercesReadSettings settings;
    std::vector<PelDOMMessage> messages;
    std::optional<PelXercesEngine::Share> engine;

    void fail(const PelString& name, const char16_t* text) {
        messages = {PelDOMMessage{true, name, 0, 0, text}};
    }

    template <class Read>
    PelDOMDocument read(const PelString& name, Read readBy) {
        messages.clear();
        if (!startEngine()) {
            fail(name, u"the engine does not start");
            return PelDOMDocument();
        }
        try {
            PelXercesReader reader(settings);
            const PelXercesNodeRef node = readBy(reader);
            messages = std::move(reader.getMessages());
            if (!node && messages.empty() && settings.maxMessages > 0)
                fail(name, u"not enough memory");
            return node ? PelDOMDocument(PelXercesDOMNode::make(node)) : PelDOMDocument();
        } catch (const xercesc::OutOfMemoryException&) {
            throw std::bad_alloc();
        }
    }

    bool startEngine() {
        try {
            if (!engine)
                engine.emplace();
            return true;
        } catch (const xercesc::XMLException&) {
        } catch (const xercesc::OutOfMemoryException&) {
        }
        return false;
    }
};

PelDOMReader::PelDOMReader() : body(std::make_unique<Body>()) {
    body->settings.maxMessages = usualMaxMessages;
    body->settings.areExceptionsPrinted = false;
}

PelDOMReader::PelDOMReader(const PelDOMReader& other) : body(std::make_unique<Body>()) {
    body->settings = other.body->settings;
}

PelDOMReader& PelDOMReader::operator=(const PelDOMReader& other) {
    if (this != &other) {
        body->settings = other.body->settings;
        body->messages.clear();
    }
    return *this;
}

PelDOMReader::~PelDOMReader() = default;

void PelDOMReader::setValidation(Validation validation) noexcept {
    body->settings.validation = validation;
}

PelDOMReader::Validation PelDOMReader::getValidation() const noexcept {
    return body->settings.validation;
}

void PelDOMReader::setDocumentType(DocumentType choice) noexcept {
    body->settings.documentType = choice;
}

PelDOMReader::DocumentType PelDOMReader::getDocumentType() const noexcept {
    return body->settings.documentType;
}

void PelDOMReader::setExternalDTD(bool isRead) noexcept {
    body->settings.isExternalDTDRead = isRead;
}

bool PelDOMReader::getExternalDTD() const noexcept {
    return body->settings.isExternalDTDRead;
}

void PelDOMReader::setExternalEntities(bool areRead) noexcept {
    body->settings.areExternalEntitiesRead = areRead;
}

bool PelDOMReader::getExternalEntities() const noexcept {
    return body->settings.areExternalEntitiesRead;
}

void PelDOMReader::setKeepIgnorableWhitespace(bool isKept) noexcept {
    body->settings.isIgnorableWhitespaceKept = isKept;
}

bool PelDOMReader::getKeepIgnorableWhitespace() const noexcept {
    return body->settings.isIgnorableWhitespaceKept;
}

void PelDOMReader::setKeepSource(bool isKept) noexcept {
    body->settings.isSourceKept = isKept;
}

bool PelDOMReader::getKeepSource() const noexcept {
    return body->settings.isSourceKept;
}

void PelDOMReader::setBase(const PelString& fileName) {
    body->settings.base = fileName;
}

PelString PelDOMReader::getBase() const {
    return body->settings.base;
}

void PelDOMReader::setMaxMessages(std::size_t count) noexcept {
    body->settings.maxMessages = count;
}

std::size_t PelDOMReader::getMaxMessages() const noexcept {
    return body->settings.maxMessages;
}

void PelDOMReader::setLimit(Limit limit, std::size_t value) noexcept {
    if (isLimit(limit))
        body->settings.bounds.*boundsByLimit[limit] = value;
}

std::size_t PelDOMReader::getLimit(Limit limit) const noexcept {
    return isLimit(limit) ? body->settings.bounds.*boundsByLimit[limit] : 0;
}

PelDOMDocument PelDOMReader::readFile(const PelString& name) {
    if (name.isEmpty() != 0) {
        body->fail(name, u"there is nothing to read");
        return PelDOMDocument();
    }
    return body->read(name, [&](PelXercesReader& reader) { return reader.readFile(name); });
}

PelDOMDocument PelDOMReader::readBytes(const void* bytes, std::size_t size, const PelString& name) {
    return body->read(name,
                      [&](PelXercesReader& reader) { return reader.readText(name, bytes, size); });
}

PelDOMDocument PelDOMReader::readStream(std::istream& stream, const PelString& name) {
    const std::optional<std::string> bytes = bytesOf(stream);
    if (bytes)
        return readBytes(bytes->data(), bytes->size(), name);
    body->fail(name, u"the stream cannot be read");
    return PelDOMDocument();
}

const std::vector<PelDOMMessage>& PelDOMReader::getMessages() const noexcept {
    return body->messages;
}
