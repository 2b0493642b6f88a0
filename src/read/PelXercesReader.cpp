// SPDX-License-Identifier: MIT
#include "read/PelXercesReader.h"

#include "core/PelTextConversion.h"
#include "read/input/PelEncodingCheck.h"
#include "read/input/PelXercesSource.h"
#include "read/parse/PelXercesLocator.h"
#include "read/scan/PelPlainScanner.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <cstring>
#include <iostream>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <string_view>

using Method = PelXercesReadSettings::Method;

namespace {

constexpr std::size_t mostUnits = std::numeric_limits<int>::max() / 2; // of a call of ICU

// The name with the order of the bytes, which the mark or the first character shows.
std::u16string exactName(const unsigned char* bytes, std::size_t size, const char16_t* encoding) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const auto begins = [text](std::string_view with) { return text.substr(0, 2) == with; };
    using namespace std::string_view_literals;
    const std::string_view first = text.substr(0, 4);
    if (first == "\xFF\xFE\0\0"sv || first == "<\0\0\0"sv)
        return u"UTF-32LE";
    if (first == "\0\0\xFE\xFF"sv || first == "\0\0\0<"sv)
        return u"UTF-32BE";
    if (begins("\xFF\xFE"sv) || begins("<\0"sv))
        return u"UTF-16LE";
    if (begins("\xFE\xFF"sv) || begins("\0<"sv))
        return u"UTF-16BE";
    return encoding;
}

// Nothing where the converter meets what it does not know, or the way back leads elsewhere.
std::string toUtf8AndBack(const unsigned char* bytes, std::size_t size, const char* name) {
    const PelConverter::Handle converter = PelConverter::open(name);
    if (!converter || size > mostUnits)
        return {};
    const auto* const source = reinterpret_cast<const char*>(bytes);
    const auto length = static_cast<int32_t>(size);
    UErrorCode status = U_ZERO_ERROR;
    std::u16string units(size + 1, u'\0');
    units.resize(static_cast<std::size_t>(ucnv_toUChars(converter.get(), units.data(),
                                                        static_cast<int32_t>(units.size()), source,
                                                        length, &status)));
    std::string back(size + 1, '\0');
    ucnv_reset(converter.get());
    const int32_t backSize =
        ucnv_fromUChars(converter.get(), back.data(), static_cast<int32_t>(back.size()),
                        units.data(), static_cast<int32_t>(units.size()), &status);
    const bool isSame =
        U_SUCCESS(status) && backSize == length && std::memcmp(back.data(), source, size) == 0;
    return isSame ? PelTextConversion::toUtf8(units) : std::string();
}

// The text that a tree keeps: the bytes as UTF-8. Where these would not give the same bytes again
// in their encoding, or are too many, it cannot be cut, and is good for an unchanged document only.
std::unique_ptr<PelXercesKeptSource> makeSource(const std::shared_ptr<const XMLByte[]>& bytes,
                                                std::size_t size, const char16_t* encoding) {
    using Source = PelXercesKeptSource;
    const std::u16string name = exactName(bytes.get(), size, encoding);
    const std::string narrow = PelTextConversion::toUtf8(name);
    if (size > Source::mostBytes)
        return nullptr;
    if (PelEncodingCheck::areSame(narrow.c_str(), "UTF-8") ||
        PelEncodingCheck::areSame(narrow.c_str(), "US-ASCII"))
        return std::make_unique<Source>(bytes, size, name);
    const std::string text = toUtf8AndBack(bytes.get(), size, narrow.c_str());
    if (text.empty() || text.size() > Source::mostBytes)
        return std::make_unique<Source>(bytes, size, name, false);
    std::shared_ptr<unsigned char[]> decoded(new unsigned char[text.size()]);
    std::memcpy(decoded.get(), text.data(), text.size());
    return std::make_unique<Source>(std::move(decoded), text.size(), name);
}

} // namespace

PelXercesReader::PelXercesReader(const PelXercesReadSettings& readSettings)
    : settings(readSettings) {
    limits.setBounds(settings.bounds);
}

PelXercesReader::ParserSetup::ParserSetup(PelXercesReader& reader)
    : resolver(reader.memory, reader.settings, reader.reporter),
      parser(reader.memory, reader.settings.method != Method::engine) {
    const PelDOMReader::Validation validation = reader.settings.validation;
    parser.setValidationScheme(
        validation == PelDOMReader::NEVER    ? xercesc::AbstractDOMParser::Val_Never
        : validation == PelDOMReader::ALWAYS ? xercesc::AbstractDOMParser::Val_Always
                                             : xercesc::AbstractDOMParser::Val_Auto);
    if (reader.settings.documentType == PelDOMReader::REFUSE)
        parser.refuseDocumentTypes();
    parser.setDoNamespaces(false);
    parser.setDoSchema(false);
    parser.setValidationSchemaFullChecking(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.setIncludeIgnorableWhitespace(reader.settings.isIgnorableWhitespaceKept);
    if (reader.settings.isSourceKept)
        parser.noteReferences();
    parser.setXMLEntityResolver(&resolver);
    references.setEntityExpansionLimit(reader.settings.bounds.entityExpansions);
    parser.setSecurityManager(&references);
    parser.setErrorHandler(&reader.reporter);
    parser.setValidationConstraintFatal(reader.settings.maxMessages <= 1); // one error is enough
}

PelXercesNodeRef PelXercesReader::readFile(const PelString& name) {
    std::optional<PelXercesFile> file;
    const auto scanFile = [&] {
        file.emplace(name, memory);
        if (!file->load(settings.isSourceKept))
            return PelXercesNewDocument();
        keep(file->bytes, file->size);
        return scan(file->bytes.get(), file->size, nullptr, file->id.view().data());
    };
    return read(scanFile, [&](ParserSetup& setup) {
        if (!file) {
            file.emplace(name, memory);
            if (settings.isSourceKept && file->load(true))
                keep(file->bytes, file->size);
        }
        memory.getEntities().addDocument(file->id, name, name);
        setup.parser.parse(PelXercesSource(memory, *file));
    });
}

PelXercesNodeRef PelXercesReader::readText(const PelString& name, const void* bytes,
                                           std::size_t size, const XMLCh* encoding) {
    PelString systemId = u"Dummy";
    if (settings.base.isEmpty() == 0)
        systemId = PelXercesFile(settings.base, memory).id;
    if (settings.isSourceKept) {
        const std::shared_ptr<XMLByte[]> copy(new XMLByte[size]);
        if (size > 0)
            std::memcpy(copy.get(), bytes, size);
        keep(copy, size);
    }
    const auto scanText = [&] { return scan(bytes, size, encoding, systemId.view().data()); };
    return read(scanText, [&](ParserSetup& setup) {
        PelXercesSource source(memory, systemId, bytes, size);
        memory.getEntities().addDocument(systemId, name, settings.base, bytes, size);
        if (encoding != nullptr)
            source.setEncoding(encoding);
        setup.parser.parse(source);
    });
}

PelXercesNewDocument PelXercesReader::scan(const void* bytes, std::size_t size,
                                           const XMLCh* encoding, const XMLCh* systemId) const {
    using Encoding = PelPlainScanner::Encoding;
    if (encoding == nullptr) {
        std::unique_ptr<PelXercesKeptSource> source;
        if (keptBytes)
            source = makeSource(keptBytes, keptSize, xercesc::XMLUni::fgUTF8EncodingString);
        return PelPlainScanner::read(bytes, size, Encoding::utf8, systemId, settings.bounds,
                                     std::move(source));
    }
    if (xercesc::XMLString::equals(encoding, PelPlainScanner::nativeUtf16()))
        return PelPlainScanner::read(bytes, size, Encoding::nativeUtf16, systemId, settings.bounds);
    return {};
}

// What keeps the scanner from reading keeps the engine from it as well, and then there is a
// message. The scanner knows no settings but the bounds.
template <class Scan, class Parse>
PelXercesNodeRef PelXercesReader::read(Scan scanDocument, Parse parse) {
    if (settings.method == Method::plainScanner && settings.validation != PelDOMReader::ALWAYS) {
        PelXercesNewDocument scanned;
        try {
            scanned = scanDocument();
        } catch (...) { // nothing is scanned
        }
        if (scanned.document)
            return PelXercesTree::share(engine, std::move(scanned));
    }
    return readByEngine(parse);
}

template <class Parse>
PelXercesNodeRef PelXercesReader::readByEngine(Parse parse) {
    std::optional<ParserSetup> setup;
    bool hasFailed = true;
    try {
        setup.emplace(*this);
        parse(*setup);
        hasFailed = false;
    } catch (const xercesc::XMLException& exception) {
        note(exception.getMessage());
    } catch (const xercesc::DOMException& exception) {
        if (settings.areExceptionsPrinted)
            std::cerr << "A DOM error occured during parsing\n   DOMException code: "
                      << exception.code << std::endl;
        if (!reporter.getSawErrors())
            note(exception.getMessage());
    } catch (...) {
        if (settings.areExceptionsPrinted && limits.getExcess() == nullptr)
            std::cerr << "An error occured during parsing\n " << std::endl;
        if (setup)
            note(limits.getExcess() != nullptr ? limits.getExcess() : u"not enough memory");
    }
    limits.watchMemory(false);
    memory.getNames().setGrammar(nullptr); // it takes memory while it is destroyed
    if (hasFailed || reporter.getSawErrors())
        return {};
    PelXercesDocumentPtr document(setup->parser.adoptDocument());
    if (!document)
        return {};
    auto source = locate(*document, setup->parser);
    return PelXercesTree::share(engine, {std::move(document),
                                         {},
                                         std::move(source),
                                         setup->parser.saysNotStandalone(),
                                         setup->parser.takeDeclaredIds()});
}

// The nodes of a tree that the engine's parser has made, in what it has read.
std::unique_ptr<PelXercesKeptSource> PelXercesReader::locate(xercesc::DOMDocument& document,
                                                             const PelXercesTreeBuilder& parser) {
    if (!settings.isSourceKept)
        return nullptr;
    std::unique_ptr<PelXercesKeptSource> source;
    if (keptBytes)
        source = makeSource(keptBytes, keptSize, document.getInputEncoding());
    if (source && source->canBeCut() &&
        !PelXercesLocator(*source, document, parser.getBrought()).locate())
        source = std::make_unique<PelXercesKeptSource>(keptBytes, keptSize, source->getEncoding(),
                                                       false);
    if (!source)
        reporter.note(false, u"the source is not kept: it is no file, or over 4 GiB");
    else if (!source->canBeCut())
        reporter.note(false, u"the source is kept as a whole: in its encoding no part can be told");
    return source;
}

// Without memory for a message there is none.
void PelXercesReader::note(const XMLCh* text) noexcept {
    try {
        reporter.note(true, text);
    } catch (const std::bad_alloc&) {
    }
}
