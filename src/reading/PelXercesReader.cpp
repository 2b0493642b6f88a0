// SPDX-License-Identifier: MIT
#include "reading/PelXercesReader.h"

#include "reading/PelReadMessage.h"
#include "reading/PelXercesFileSource.h"
#include "xerces/PelXercesTree.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/XMLException.hpp>

#include <iostream>
#include <utility>

PelXercesReader::PelXercesReader(PelXercesTreeBuilder::Road road, Observer observer)
    : parser(memory, road), reporter(std::move(observer)) {
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
    return read(name, [&] {
        const PelXercesFileSource source(name, memory);
        reporter.setName(name, source.getSystemId());
        parser.parse(source);
    });
}

PelXercesNodeRef PelXercesReader::readText(const void* bytes, std::size_t size,
                                           const XMLCh* encoding) {
    constexpr char name[] = "text";
    constexpr char16_t systemId[] = u"Dummy";
    limits.addInput(size);
    return read(name, [&] {
        xercesc::MemBufInputSource source(static_cast<const XMLByte*>(bytes), size, systemId, false,
                                          &memory);
        reporter.setName(name, systemId);
        if (encoding != nullptr)
            source.setEncoding(encoding);
        parser.parse(source);
    });
}

template <class Parse>
PelXercesNodeRef PelXercesReader::read(const PelString& name, Parse parse) {
    bool hasFailed = true;
    PelReadMessage::clear();
    try {
        parse();
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
    if (reporter.getSawErrors())
        PelReadMessage::set(reporter.getFirstError());
    if (hasFailed || reporter.getSawErrors())
        return {};
    PelXercesDocumentPtr document(parser.adoptDocument());
    return document ? PelXercesTree::share(engine, std::move(document)) : PelXercesNodeRef();
}
