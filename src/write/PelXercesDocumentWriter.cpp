// SPDX-License-Identifier: MIT
#include "write/PelXercesDocumentWriter.h"

#include "core/PelPlatform.h"
#include "core/PelThreadMessage.h"
#include "write/PelOutputSettings.h"
#include "write/PelXercesMarkup.h"
#include "write/PelXercesNodeWriter.h"
#include "write/PelXercesRefusal.h"
#include "write/characters/PelXercesCharacterSet.h"
#include "write/characters/PelXercesEncoder.h"
#include "xerces/handles/PelXercesDOMNode.h"
#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/util/XMLException.hpp>

#include <string>

namespace {

// The encoding that a document asks for.
std::u16string wantedEncoding(const xercesc::DOMNode& document) {
    const xercesc::DOMNode* const first = document.getFirstChild();
    if (first != nullptr && PelXercesDeclaration::isDeclaration(*first)) {
        const PelString named = PelXercesDeclaration::read(*first).encoding;
        if (named.isEmpty() == 0)
            return std::u16string(named.view());
    }
    return u"UTF-8";
}

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
    const PelDOMNodeImp* const imp = document.getNodeImp();
    const PelXercesNodeRef node = imp != nullptr ? PelXercesDOMNode::of(*imp) : PelXercesNodeRef();
    PelThreadMessage::ofWrite().clear();
    if (!node) {
        fail(u"there is no document to write");
        return PelDOM::NULL_NODE;
    }
    const std::u16string encoding = PelOutputSettings::encoding(wantedEncoding(*node.getNode()));
    try {
        if (file)
            writeToFile(*node.getNode(), encoding);
        else
            writeToString(*node.getNode(), encoding);
    } catch (const PelXercesRefusal& refusal) {
        fail(refusal.reason);
        return PelDOM::INTERNAL_ERROR;
    } catch (const xercesc::XMLException& exception) {
        fail(exception.getMessage());
        return PelDOM::INTERNAL_ERROR;
    }
    if (file && !file->close())
        fail(PelPlatform::errorText(file->getError()));
    return PelDOM::SUCCESS;
}

void PelXercesDocumentWriter::writeToFile(const xercesc::DOMNode& document,
                                          const std::u16string& encoding) {
    PelXercesCharacterSet repertoire(encoding);
    PelXercesEncoder encoder(encoding, repertoire, *file);
    PelXercesMarkup out(repertoire, &encoder);
    file->setTextMode(repertoire.hasByteLineFeed());
    PelXercesNodeWriter(out, encoding, hasNewlines).writeNode(*file, document);
    if (hasNewlines)
        out.markup(u"\n");
    out.flush();
    if (hasTerminator)
        *file << std::ends;
    file->flush();
}

// Encoding the text and decoding it again would give the same text, so neither is done. A NUL byte
// at the end would end the string, as a string's own end does.
void PelXercesDocumentWriter::writeToString(const xercesc::DOMNode& document,
                                            const std::u16string& encoding) {
    PelXercesCharacterSet repertoire(encoding);
    PelXercesMarkup out(repertoire, nullptr);
    std::ostream nowhere(nullptr);
    PelXercesNodeWriter(out, encoding, hasNewlines).writeNode(nowhere, document);
    if (hasNewlines)
        out.markup(u"\n");
    text = PelString(out.takeText());
}
