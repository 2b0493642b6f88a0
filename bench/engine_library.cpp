// SPDX-License-Identifier: MIT
#include "libraries.h"

#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <stdexcept>

namespace {

class ErrorCount : public xercesc::HandlerBase {
public:
    void error(const xercesc::SAXParseException&) override { ++errors; }
    void fatalError(const xercesc::SAXParseException&) override { ++errors; }

    int errors = 0;
};

Engine::Tree parse(const xercesc::InputSource& source) {
    ErrorCount handler;
    xercesc::SecurityManager limits;
    xercesc::XercesDOMParser parser;
    parser.setValidationScheme(xercesc::XercesDOMParser::Val_Auto);
    parser.setDoNamespaces(false);
    parser.setDoSchema(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.setIncludeIgnorableWhitespace(false);
    parser.setSecurityManager(&limits);
    parser.setErrorHandler(&handler);
    parser.parse(source);
    if (handler.errors > 0)
        throw std::runtime_error("the engine refused the document");
    return Engine::Tree(parser.adoptDocument());
}

void visit(const xercesc::DOMNode& node, NodeCount& count) {
    for (const xercesc::DOMNode* child = node.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        if (child->getNodeType() == xercesc::DOMNode::ELEMENT_NODE) {
            ++count.elements;
            visit(*child, count);
        } else {
            ++count.others;
        }
    }
}

struct Release {
    template <class Object>
    void operator()(Object* object) const {
        object->release();
    }
};

using Serializer = std::unique_ptr<xercesc::DOMLSSerializer, Release>;
using Output = std::unique_ptr<xercesc::DOMLSOutput, Release>;

// A document that was read has no node for its declaration, so none is written.
Serializer makeSerializer() {
    Serializer serializer(xercesc::DOMImplementation::getImplementation()->createLSSerializer());
    serializer->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMXMLDeclaration, false);
    return serializer;
}

struct StringRelease {
    void operator()(XMLCh* text) const { xercesc::XMLString::release(&text); }
};

using WrittenText = std::unique_ptr<XMLCh, StringRelease>;

WrittenText writeToString(const Engine::Tree& tree) {
    WrittenText text(makeSerializer()->writeToString(tree.get()));
    if (!text)
        throw std::runtime_error("the engine wrote nothing");
    return text;
}

} // namespace

Engine::Tree Engine::readFile(const Document& document) {
    return parse(xercesc::LocalFileInputSource(PelString(document.path.c_str()).view().data()));
}

Engine::Tree Engine::readText(const std::u16string& text, bool) {
    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()),
                                      text.size() * sizeof(char16_t), "text");
    source.setEncoding(xercesc::XMLUni::fgUTF16LEncodingString);
    return parse(source);
}

NodeCount Engine::walk(const Tree& tree) {
    NodeCount count;
    visit(*tree, count);
    return count;
}

void Engine::writeFile(const Tree& tree, const std::string& path) {
    const Serializer serializer = makeSerializer();
    xercesc::LocalFileFormatTarget target(path.c_str());
    const Output output(xercesc::DOMImplementation::getImplementation()->createLSOutput());
    output->setByteStream(&target);
    output->setEncoding(xercesc::XMLUni::fgUTF8EncodingString);
    if (!serializer->write(tree.get(), output.get()))
        throw std::runtime_error("the engine did not write");
}

std::size_t Engine::writeText(const Tree& tree) {
    return xercesc::XMLString::stringLen(writeToString(tree).get());
}

std::u16string Engine::written(const Tree& tree) {
    return writeToString(tree).get();
}
