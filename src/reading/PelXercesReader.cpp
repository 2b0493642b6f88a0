// SPDX-License-Identifier: MIT
#include "reading/PelXercesReader.h"

#include "reading/PelPlainScanner.h"
#include "reading/PelReadMessage.h"
#include "reading/PelXercesChecked.h"
#include "reading/PelXercesFileSource.h"
#include "xerces/PelXercesTree.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <iostream>
#include <optional>
#include <utility>

PelXercesReader::PelXercesReader(PelXercesTreeBuilder::Road ownRoad, Observer ownObserver)
    : road(ownRoad), observer(std::move(ownObserver)) {
}

PelXercesReader::Machine::Machine(PelXercesReader& reader)
    : resolver(reader.memory), parser(reader.memory, reader.road), reporter(reader.observer) {
    parser.setValidationScheme(PelXercesTreeBuilder::Val_Auto);
    parser.setDoNamespaces(false);
    parser.setDoSchema(false);
    parser.setValidationSchemaFullChecking(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.setIncludeIgnorableWhitespace(false);
    parser.setXMLEntityResolver(&resolver);
    parser.setSecurityManager(&references); // at its default of 50,000 entity expansions
    parser.setErrorHandler(&reporter);
}

PelXercesNodeRef PelXercesReader::readFile(const PelString& name) {
    std::optional<PelXercesFileSource> source;
    const auto scanFile = [&] {
        source.emplace(name, memory);
        return source->load()
                   ? scan(source->getBytes(), source->getSize(), nullptr, source->getSystemId())
                   : nullptr;
    };
    return read(name, scanFile, [&](Machine& machine) {
        if (!source)
            source.emplace(name, memory);
        machine.reporter.setName(name, source->getSystemId());
        machine.parser.parse(*source);
    });
}

PelXercesNodeRef PelXercesReader::readText(const void* bytes, std::size_t size,
                                           const XMLCh* encoding) {
    constexpr char name[] = "text";
    constexpr char16_t systemId[] = u"Dummy";
    const auto scanText = [&] { return scan(bytes, size, encoding, systemId); };
    return read(name, scanText, [&](Machine& machine) {
        limits.addInput(size);
        PelXercesChecked<xercesc::MemBufInputSource> source(
            memory, static_cast<const XMLByte*>(bytes), size, systemId, false);
        machine.reporter.setName(name, systemId);
        if (encoding != nullptr)
            source.setEncoding(encoding);
        machine.parser.parse(source);
    });
}

PelXercesDocumentPtr PelXercesReader::scan(const void* bytes, std::size_t size,
                                           const XMLCh* encoding, const XMLCh* systemId) {
    using Encoding = PelPlainScanner::Encoding;
    if (encoding == nullptr)
        return PelPlainScanner::read(bytes, size, Encoding::utf8, systemId);
    if (xercesc::XMLString::equals(encoding, PelPlainScanner::nativeUtf16()))
        return PelPlainScanner::read(bytes, size, Encoding::nativeUtf16, systemId);
    return nullptr;
}

// What keeps the scanner from reading keeps the engine from it as well, and then there is a
// message.
template <class Scan, class Parse>
PelXercesNodeRef PelXercesReader::read(const PelString& name, Scan scanDocument, Parse parse) {
    PelReadMessage::clear();
    if (road == PelXercesTreeBuilder::Road::plain) {
        PelXercesDocumentPtr document;
        try {
            document = scanDocument();
        } catch (...) {
            document = nullptr;
        }
        if (document)
            return PelXercesTree::share(engine, std::move(document));
    }
    return readByEngine(name, parse);
}

template <class Parse>
PelXercesNodeRef PelXercesReader::readByEngine(const PelString& name, Parse parse) {
    Machine machine(*this);
    bool hasFailed = true;
    try {
        parse(machine);
        hasFailed = false;
    } catch (const xercesc::XMLException& exception) {
        PelReadMessage::set(name, exception.getMessage());
    } catch (const xercesc::DOMException& exception) {
        std::cerr << "A DOM error occured during parsing\n   DOMException code: " << exception.code
                  << std::endl;
        PelReadMessage::set(name, exception.getMessage());
    } catch (...) {
        if (limits.getExcess() == nullptr)
            std::cerr << "An error occured during parsing\n " << std::endl;
        PelReadMessage::set(name, limits.getExcess() != nullptr ? limits.getExcess()
                                                                : u"not enough memory");
    }
    limits.watchMemory(false);
    const PelXercesDOMTreeErrorReporter& reporter = machine.reporter;
    if (reporter.getSawErrors())
        PelReadMessage::set(reporter.getFirstError());
    if (hasFailed || reporter.getSawErrors())
        return {};
    PelXercesDocumentPtr document(machine.parser.adoptDocument());
    return document ? PelXercesTree::share(engine, std::move(document)) : PelXercesNodeRef();
}
