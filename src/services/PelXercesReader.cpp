// SPDX-License-Identifier: MIT
#include "services/PelXercesReader.h"

#include "services/PelXercesFileSource.h"
#include "xerces/PelXercesTree.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/XMLException.hpp>

#include <iostream>

PelXercesReader::PelXercesReader(PelXercesTreeBuilder::Road road) : parser(memory, limits, road) {
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
    return read([&] {
        const PelXercesFileSource source(name, limits);
        parser.parse(source);
    });
}

PelXercesNodeRef PelXercesReader::readText(const void* bytes, std::size_t size,
                                           const XMLCh* encoding) {
    limits.addInput(size);
    xercesc::MemBufInputSource source(static_cast<const XMLByte*>(bytes), size, "Dummy");
    if (encoding != nullptr)
        source.setEncoding(encoding);
    return read([&] { parser.parse(source); });
}

template <class Parse>
PelXercesNodeRef PelXercesReader::read(Parse parse) {
    bool hasFailed = false;
    try {
        parse();
        hasFailed = parser.getErrorCount() > 0;
    } catch (const xercesc::XMLException&) {
        hasFailed = true;
    } catch (const xercesc::DOMException& exception) {
        std::cerr << "A DOM error occured during parsing\n   DOMException code: " << exception.code
                  << std::endl;
        hasFailed = true;
    } catch (...) {
        if (!limits.wereExceeded())
            std::cerr << "An error occured during parsing\n " << std::endl;
        hasFailed = true;
    }
    limits.watchMemory(false);
    if (hasFailed || reporter.getSawErrors())
        return {};
    PelXercesDocumentPtr document(parser.adoptDocument());
    return document ? PelXercesTree::share(engine, std::move(document)) : PelXercesNodeRef();
}
