// SPDX-License-Identifier: MIT
#include "write/PelXercesDocumentWriter.h"

#include "core/PelPlatform.h"
#include "core/PelThreadMessage.h"
#include "write/PelXercesSerializer.h"
#include "write/characters/PelXercesCharacterSet.h"
#include "write/characters/PelXercesEncoder.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <array>
#include <string>

using xercesc::DOMNode;

namespace {

// The output encoding of the process, empty until its first write. It is neither made nor destroyed
// at run time: in a static build, objects of the program write before this library's are made, and
// after they are gone. Names that are longer than this are of no encoding, cut or not.
std::array<char16_t, 128> outputEncoding;

// The encoding that a document asks for.
std::u16string wantedEncoding(const DOMNode& document) {
    const DOMNode* const first = document.getFirstChild();
    if (first != nullptr && PelXercesDeclaration::isDeclaration(*first)) {
        const PelString named = PelXercesDeclaration::read(*first).encoding;
        if (named.isEmpty() == 0)
            return std::u16string(named.view());
    }
    return u"UTF-8";
}

bool isVersion11(const DOMNode& node) {
    return node.getNodeType() == DOMNode::DOCUMENT_NODE &&
           xercesc::XMLString::equals(
               static_cast<const xercesc::DOMDocument&>(node).getXmlVersion(), u"1.1");
}

/// Line feeds, where they are wanted, in front of elements and behind the children of the document.
class Newlines final : public PelXercesLayout {
public:
    /// Flushes the stream after each child of the document, if there is one.
    Newlines(PelXercesMarkup& markup, bool newlines, std::ostream* flushed)
        : out(markup), areWanted(newlines), stream(flushed) {}

    bool replaces(const DOMNode& node, DOMNode::NodeType type) override {
        if (type == DOMNode::ELEMENT_NODE) {
            newline();
        } else if (type == DOMNode::DOCUMENT_NODE && isVersion11(node)) {
            // Read without its version, the document would be another one, or none.
            writeDeclaration({u"1.1", PelString(), std::nullopt});
            newline();
        } else if (type == DOMNode::PROCESSING_INSTRUCTION_NODE &&
                   PelXercesDeclaration::isDeclaration(node)) {
            writeDeclaration(PelXercesDeclaration::read(node));
            return true;
        }
        return false;
    }

    void endDocumentChild(const DOMNode& /*child*/) override {
        newline();
        out.flush();
        if (stream != nullptr)
            stream->flush();
    }

    void end() override { newline(); }

private:
    void newline() {
        if (areWanted)
            out.markup(u"\n");
    }

    void writeDeclaration(const PelXercesDeclaration& values) {
        const auto add = [this](const char16_t* text) {
            out.add(text, PelXercesEscapes::anywhere);
        };
        out.markup(u"<?xml version=\"");
        add(values.version.view().data());
        out.markup(u"\" encoding=\"");
        add(outputEncoding.data());
        if (values.standalone) {
            out.markup(u"\" standalone=\"");
            add(values.standalone->view().data());
        }
        out.markup(u"\"?>\n");
        newline();
    }

    PelXercesMarkup& out;
    const bool areWanted;
    std::ostream* const stream;
};

} // namespace

PelXercesDocumentWriter::PelXercesDocumentWriter(PelString& target, bool toFile, bool newlines,
                                                 bool terminator)
    : text(target), hasNewlines(newlines), hasTerminator(terminator) {
    if (toFile)
        file.emplace(target);
}

PelDOM::Error PelXercesDocumentWriter::write(const PelDOMDocument& document) {
    const auto fail = [this](const PelString& reason) {
        PelThreadMessage::ofWrite().set(file ? text : PelString(), reason);
    };
    const PelXercesNodeRef node = PelXercesDOMNode::of(document);
    PelThreadMessage::ofWrite().clear();
    if (!node) {
        fail(u"there is no document to write");
        return PelDOM::NULL_NODE;
    }
    if (outputEncoding[0] == 0)
        wantedEncoding(*node.getNode()).copy(outputEncoding.data(), outputEncoding.size() - 1);
    try {
        writeNode(*node.getNode());
    } catch (const PelXercesWriteError& error) {
        fail(error.reason);
        return PelDOM::INTERNAL_ERROR;
    } catch (const xercesc::XMLException& exception) {
        fail(exception.getMessage());
        return PelDOM::INTERNAL_ERROR;
    }
    if (file && !file->close())
        fail(PelPlatform::errorText(file->getError()));
    return PelDOM::SUCCESS;
}

// A string takes the text before it is encoded: decoding it again would give the same. A NUL byte
// at its end would end it, as its own end does.
void PelXercesDocumentWriter::writeNode(const DOMNode& document) {
    PelXercesCharacterSet characterSet(outputEncoding.data());
    std::optional<PelXercesEncoder> encoder;
    if (file) {
        encoder.emplace(outputEncoding.data(), characterSet, *file);
        file->setTextMode(characterSet.hasByteLineFeed());
    }
    PelXercesMarkup out(characterSet, file ? &*encoder : nullptr);
    Newlines layout(out, hasNewlines, file ? &*file : nullptr);
    PelXercesSerializer(out, PelXercesEscapes::asIs(isVersion11(document)), layout)
        .writeNode(document);
    if (!file) {
        text = PelString(out.takeText());
        return;
    }
    out.flush();
    if (hasTerminator)
        *file << std::ends;
    file->flush();
}
