// SPDX-License-Identifier: MIT
#include "write/PelXercesWriteJob.h"

#include "write/PelXercesIndent.h"
#include "write/characters/PelXercesEncoder.h"
#include "xerces/tree/PelXercesDeclaration.h"

#include <algorithm>
#include <optional>
#include <string_view>

using xercesc::DOMNode;

namespace {

bool isAsciiLetter(char16_t unit) {
    return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
}

// The engine knows more names than a declaration may hold.
std::u16string requireName(const PelString& encoding) {
    const std::u16string_view name = encoding.view();
    const auto isPart = [](char16_t unit) {
        return isAsciiLetter(unit) ||
               std::u16string_view(u"0123456789._-").find(unit) != std::u16string_view::npos;
    };
    if (name.empty() || !isAsciiLetter(name[0]) || !std::all_of(name.begin(), name.end(), isPart))
        throw PelXercesWriteError{u"'" + encoding + u"' is no name of an encoding"};
    return std::u16string(name);
}

bool hasByteOrder(std::u16string_view encoding) {
    const std::u16string_view end =
        encoding.substr(encoding.size() - std::min<std::size_t>(2, encoding.size()));
    return end == u"LE" || end == u"BE" || end == u"le" || end == u"be";
}

const xercesc::DOMDocument& documentOf(const DOMNode& node) {
    return node.getNodeType() == DOMNode::DOCUMENT_NODE
               ? static_cast<const xercesc::DOMDocument&>(node)
               : *node.getOwnerDocument();
}

// What a created document declares.
std::optional<PelXercesDeclaration> declarationOf(const xercesc::DOMDocument& document) {
    for (const DOMNode* child = document.getFirstChild(); child != nullptr;
         child = child->getNextSibling())
        if (PelXercesDeclaration::isDeclaration(*child))
            return PelXercesDeclaration::read(*child);
    return std::nullopt;
}

} // namespace

PelXercesWriteJob::PelXercesWriteJob(const PelWriteSettings& writeSettings, const DOMNode& topNode)
    : settings(writeSettings), top(topNode), document(documentOf(topNode)),
      encoding(requireName(settings.encoding)), characterSet(encoding) {
    const bool isDocument = top.getNodeType() == DOMNode::DOCUMENT_NODE;
    isReadByItself = isDocument || top.getNodeType() == DOMNode::ELEMENT_NODE;
    const XMLCh* const version = document.getXmlVersion();
    isVersion11 = version != nullptr && std::u16string_view(version) == u"1.1";
    const bool isNeeded = isVersion11 || !(characterSet.isUtf8() || characterSet.isUtf16());
    isDeclared = PelXercesDeclaration::isDeclaration(top) ||
                 (settings.hasDeclaration && isReadByItself && (isDocument || isNeeded));
    if (isReadByItself && !isDeclared)
        isVersion11 = false;
    if (isDeclared && !characterSet.isRecognised())
        throw PelXercesWriteError{u"no reader would recognise the encoding '" + settings.encoding +
                                  u"'"};
}

void PelXercesWriteJob::to(std::ostream& stream) {
    PelXercesEncoder encoder(encoding, characterSet, stream);
    encoder.setHasReturns(settings.lineEnds == PelDOMWriter::CRLF);
    PelXercesMarkup out(characterSet, &encoder);
    if (needsMark())
        out.addKnown(u"\uFEFF", 1);
    if (isDeclared)
        out.add(declaration().c_str(), PelXercesEscapes::anywhere);
    if (!PelXercesDeclaration::isDeclaration(top)) {
        PelXercesIndent layout(out, settings.indent, top);
        PelXercesSerializer(out, PelXercesEscapes::strict(isVersion11), layout).writeNode(top);
    }
    out.flush();
}

// The names that say in which order the bytes stand forbid the mark where they are declared.
bool PelXercesWriteJob::needsMark() const {
    return isReadByItself && characterSet.isUtf16() && !(isDeclared && hasByteOrder(encoding));
}

std::u16string PelXercesWriteJob::declaration() const {
    const std::optional<PelXercesDeclaration> declared = declarationOf(document);
    const PelString word = declared ? declared->standalone.value_or(PelString()) : PelString();
    std::u16string text = u"<?xml version=\"";
    text += isVersion11 ? u"1.1" : u"1.0";
    text += u"\" encoding=\"" + encoding + u"\"";
    // White space that is added may break the promise that nothing outside the document changes it.
    const bool isPromiseKept = settings.indent <= 0 || document.getDoctype() == nullptr;
    if (isPromiseKept && (document.getXmlStandalone() || word == PelString("yes")))
        text += u" standalone=\"yes\"";
    else if (word == PelString("no"))
        text += u" standalone=\"no\"";
    return text + u"?>\n";
}
