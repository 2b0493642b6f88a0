// SPDX-License-Identifier: MIT
#include "core/PelFormat.h"

#include <qrndom/PelDOMFiler.h>

#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace {

// Prints a value by a caller's format. False for a format that is not fit for exactly one value of
// its kind.
template <class Number>
bool printByFormat(Number value, const PelString& format, std::u16string_view conversions,
                   std::u16string_view modifier, PelString& printed) {
    const std::u16string pattern = PelFormat::forOneValue(format.view(), conversions, modifier);
    if (pattern.empty())
        return false;
    printed.format(pattern.c_str(), value);
    return true;
}

// The usual text, as "%ld" and "%lf" give it.
template <class... Style>
PelString plain(Style... style) {
    std::array<char, 512> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), style...).ptr;
    return PelString(std::u16string(digits.data(), end));
}

bool print(long value, const PelString& format, PelString& printed) {
    if (format.isEmpty() == 0)
        return printByFormat(value, format, u"diuoxX", u"l", printed);
    printed = plain(value);
    return true;
}

bool print(double value, const PelString& format, PelString& printed) {
    if (format.isEmpty() == 0)
        return printByFormat(value, format, u"fFeEgGaA", u"", printed);
    printed = plain(value, std::chars_format::fixed, 6);
    return true;
}

} // namespace

PelDOMElement PelDOMFiler::InvalidElement;

PelDOMFiler::PelDOMFiler(PelDOMDocument& document) {
    documentField = document;
    currentNodeField = document;
    currentElementField = documentField.getDocumentElement();
}

PelDOMFiler::PelDOMFiler(const PelDOMFiler& other) = default;
PelDOMFiler& PelDOMFiler::operator=(const PelDOMFiler& other) = default;
PelDOMFiler::~PelDOMFiler() = default;

PelDOM::Error PelDOMFiler::setCurrentNode(PelDOMNode& node) {
    currentNodeField = node;
    if (node.getNodeType() == PelDOM::ELEMENT_NODE)
        currentElementField = node;
    return PelDOM::SUCCESS;
}

PelDOM::Error PelDOMFiler::appendElement(const PelString& name, const PelString& value) {
    return currentElementField.appendTextElement(name, value);
}

PelDOM::Error PelDOMFiler::appendElement(const PelString& name, long value, PelString format) {
    PelString text;
    return print(value, format, text) ? appendElement(name, text) : PelDOM::INVALID_VALUE;
}

PelDOM::Error PelDOMFiler::appendElement(const PelString& name, int value, PelString format) {
    return appendElement(name, static_cast<long>(value), std::move(format));
}

PelDOM::Error PelDOMFiler::appendElement(const PelString& name, double value, PelString format) {
    PelString text;
    return print(value, format, text) ? appendElement(name, text) : PelDOM::INVALID_VALUE;
}

PelDOM::Error PelDOMFiler::setAttribute(const PelString& name, const PelString& value) {
    return currentElementField.setAttribute(name, value);
}

PelDOM::Error PelDOMFiler::setAttribute(const PelString& name, long value, PelString format) {
    PelString text;
    return print(value, format, text) ? setAttribute(name, text) : PelDOM::INVALID_VALUE;
}

PelDOM::Error PelDOMFiler::setAttribute(const PelString& name, int value, PelString format) {
    return setAttribute(name, static_cast<long>(value), std::move(format));
}

PelDOM::Error PelDOMFiler::setAttribute(const PelString& name, double value, PelString format) {
    PelString text;
    return print(value, format, text) ? setAttribute(name, text) : PelDOM::INVALID_VALUE;
}
