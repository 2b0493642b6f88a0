// SPDX-License-Identifier: MIT
#include "xerces/tree/PelXercesDeclaration.h"

#include <xercesc/dom/DOMProcessingInstruction.hpp>

#include <string_view>

namespace {

constexpr std::u16string_view target = u"xml";

// The value of `name="value"` in the text of a declaration; `name` ends with the quote.
std::optional<PelString> valueOf(std::u16string_view words, std::u16string_view name) {
    const std::size_t begin = words.find(name);
    if (begin == words.npos)
        return std::nullopt;
    words.remove_prefix(begin + name.size());
    return PelString(words.substr(0, words.find(u'"')));
}

} // namespace

xercesc::DOMNode* PelXercesDeclaration::create(xercesc::DOMDocument& document,
                                               const PelXercesDeclaration& values) {
    PelString words = u"version=\"" + values.version + u"\" encoding=\"" + values.encoding + u"\"";
    if (values.standalone)
        words += u" standalone=\"" + *values.standalone + u"\"";
    return document.createProcessingInstruction(target.data(), words.view().data());
}

bool PelXercesDeclaration::isDeclaration(const xercesc::DOMNode& node) {
    return node.getNodeType() == xercesc::DOMNode::PROCESSING_INSTRUCTION_NODE &&
           node.getNodeName() == target;
}

PelXercesDeclaration PelXercesDeclaration::read(const xercesc::DOMNode& node) {
    const std::u16string_view words = node.getNodeValue();
    PelXercesDeclaration values;
    values.version = valueOf(words, u"version=\"").value_or(PelString());
    values.encoding = valueOf(words, u" encoding=\"").value_or(PelString());
    values.standalone = valueOf(words, u" standalone=\"");
    return values;
}
