// SPDX-License-Identifier: MIT
#include "libraries.h"

#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
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
    void error(const xercesc::SAXParseException& error) override {
        message = error.getMessage();
        ++errors;
    }
    void fatalError(const xercesc::SAXParseException& failure) override { error(failure); }

    int errors = 0;
    std::u16string message;
};

// Null if the document is refused.
Engine::Tree tryToParse(const xercesc::InputSource& source) {
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
    return Engine::Tree(handler.errors == 0 ? parser.adoptDocument() : nullptr);
}

Engine::Tree parse(const xercesc::InputSource& source) {
    Engine::Tree tree = tryToParse(source);
    if (!tree)
        throw std::runtime_error("the engine refused the document");
    return tree;
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

void writeTo(xercesc::XMLFormatTarget& target, const Engine::Tree& tree) {
    const Serializer serializer = makeSerializer();
    const Output output(xercesc::DOMImplementation::getImplementation()->createLSOutput());
    output->setByteStream(&target);
    output->setEncoding(xercesc::XMLUni::fgUTF8EncodingString);
    if (!serializer->write(tree.get(), output.get()))
        throw std::runtime_error("the engine did not write");
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

Engine::Tree Engine::readBytes(const std::string& utf8) {
    return tryToParse(xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(utf8.data()),
                                                 utf8.size(), "bytes"));
}

NodeCount Engine::walk(const Tree& tree) {
    NodeCount count;
    visit(*tree, count);
    return count;
}

void Engine::writeFile(const Tree& tree, const std::string& path) {
    xercesc::LocalFileFormatTarget target(path.c_str());
    writeTo(target, tree);
}

std::string Engine::writeBytes(const Tree& tree) {
    xercesc::MemBufFormatTarget target;
    writeTo(target, tree);
    return {reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen()};
}

std::size_t Engine::writeText(const Tree& tree) {
    return xercesc::XMLString::stringLen(writeToString(tree).get());
}

std::u16string Engine::written(const Tree& tree) {
    return writeToString(tree).get();
}
