// SPDX-License-Identifier: MIT
// Formats and numbers: PelString::format and the filer against snprintf, typed attribute reads
// against strtol and strtod, in the C locale.
#include "support.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <variant>

#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

namespace {

// What snprintf prints, as text; what is not UTF-8 in it becomes U+FFFD, as in any PelString.
template <class... Arguments>
PelString printed(const std::string& pattern, Arguments... arguments) {
    const int length = std::snprintf(nullptr, 0, pattern.c_str(), arguments...);
    std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, '\0');
    std::snprintf(text.data(), text.size(), pattern.c_str(), arguments...);
    return PelString(text.c_str());
}

/// A string argument, in the form that each side takes.
struct Words {
    std::string narrow;
    PelString wide;
};

using Argument = std::variant<int, long, long long, double, long double, Words>;

template <class Number>
Number narrowOf(const Number& number) {
    return number;
}
const char* narrowOf(const Words& words) { return words.narrow.c_str(); }

template <class Number>
Number wideOf(const Number& number) {
    return number;
}
const unsigned short* wideOf(const Words& words) { return words.wide.getStringWAsUnsignedShort(); }

// Takes the arguments one by one until all are passed on with their own types.
template <class... Arguments>
void compare(
    const std::string& pattern, const Argument* rest, std::size_t count, const Arguments&... arguments) {
    if (count == 0) {
        const PelString wide = pattern.c_str();
        expectSame(PelString().format(wide.view().data(), wideOf(arguments)...),
            printed(pattern, narrowOf(arguments)...), "format " + pattern);
    } else if constexpr (sizeof...(Arguments) < 3) {
        std::visit(
            [&](const auto& value) { compare(pattern, rest + 1, count - 1, arguments..., value); }, *rest);
    }
}

// Width or precision: none, digits or an argument.
void addCount(Input& in, std::string& pattern, std::vector<Argument>& arguments) {
    switch (in.below(3)) {
    case 1:
        pattern += std::to_string(in.below(200));
        break;
    case 2:
        pattern += "*";
        arguments.emplace_back(static_cast<int>(in.byte()) - 40);
        break;
    default:
        break;
    }
}

void formatOfKnownKinds(Input& in) {
    std::string pattern;
    std::vector<Argument> arguments;
    while (!in.isAtEnd() && pattern.size() < 200) {
        const std::size_t kind = in.below(7);
        if (kind == 0) { // text
            const PelString text = std::regex_replace(in.text(20), std::regex("%"), "%%").c_str();
            pattern += text.toUtf8();
            continue;
        }
        std::string flags;
        for (std::size_t i = in.below(4); i > 0; --i)
            flags += in.oneOf(std::string(kind < 3 ? "-" : "-+ #0"));
        std::string conversion = "%" + flags;
        std::vector<Argument> own;
        addCount(in, conversion, own);
        if (kind != 1 && in.below(2) == 0) addCount(in, conversion += ".", own);
        if (kind == 1) { // characters beyond ASCII and U+0000 differ by nature
            conversion += "c";
            own.emplace_back(static_cast<int>(1 + in.below(127)));
        } else if (kind == 2) {
            const PelString words = std::regex_replace(in.text(20), std::regex("[^ -~]"), "?").c_str();
            conversion += "s";
            own.emplace_back(Words{words.toUtf8(), words});
        } else if (kind == 3) {
            conversion += in.oneOf(std::array{"", "h", "hh"});
            conversion += in.oneOf(std::string("diuoxX"));
            own.emplace_back(in.number<int>());
        } else if (kind == 4) {
            const std::string length = in.oneOf(std::array{"l", "ll", "j", "z", "t"});
            conversion += length + in.oneOf(std::string("diuoxX"));
            if (length == "ll" || length == "j") // wider than the others on 32 bits
                own.emplace_back(in.number<long long>());
            else
                own.emplace_back(in.number<long>());
        } else {
            double real = 0;
            const auto bits = in.number<unsigned long long>();
            std::memcpy(&real, &bits, sizeof real);
            if (kind == 6)
                own.emplace_back(static_cast<long double>(real));
            else
                own.emplace_back(real);
            conversion += kind == 6 ? "L" : in.oneOf(std::array{"", "l"});
            conversion += in.oneOf(std::string("fFeEgGaA"));
        }
        if (arguments.size() + own.size() > 3) break;
        pattern += conversion;
        arguments.insert(arguments.end(), own.begin(), own.end());
    }
    compare(pattern, arguments.data(), arguments.size());
}

// A caller's format is fit when just one conversion stands in it, of the value's kind.
template <class Number>
void formatOfFiler(Input& in, const char* kinds, const char* modifier) {
    const auto bits = in.number<unsigned long long>();
    Number value = 0;
    std::memcpy(&value, &bits, sizeof value);
    const PelString format = in.text(64).c_str();
    const std::string utf8 = format.toUtf8();
    static const std::regex fit(
        std::string("((?:[^%]|%%)*%[-+ #0]*(?:[0-9]{0,5}|100000)(?:\\.0*(?:[0-9]{0,5}|100000))?)"
                    "(?:hh?|ll?|[jztL])?([") +
        kinds + "](?:[^%]|%%)*)");
    std::smatch parts;
    const bool isFit = utf8.empty() || std::regex_match(utf8, parts, fit);
    const std::string plain = std::string("%") + (*modifier != 0 ? "ld" : "lf");
    PelString expected;
    if (isFit) expected = printed(utf8.empty() ? plain : parts.str(1) + modifier + parts.str(2), value);

    PelDOMDocument document = services().createDocument("r");
    PelDOMFiler filer(document);
    const bool isPrinted = expected.isEmpty() == 0;
    const PelDOM::Error code = isPrinted ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE;
    expectSame(filer.appendElement("e", value, format), code, "append by format " + utf8);
    expectSame(filer.setAttribute("k", value, format), code, "set by format " + utf8);
    PelDOMNodeList children;
    filer.currentElement().getChildNodes(children);
    expectSame(children.length(), isPrinted ? 1 : 0, "children");
    expectSame(filer.currentElement().getNumAttributes(), isPrinted ? 1 : 0, "attributes");
    expectSame(filer.currentElement().getAttribute("k"), expected, "attribute by format " + utf8);
    PelDOMNode child;
    PelString text;
    if (children.item(0, child) == PelDOM::SUCCESS) PelDOMElement(child).getChildTextValue(text);
    expectSame(text, expected, "text by format " + utf8);
}

template <class Number, class Scan>
void typedRead(const std::string& text, Scan scan) {
    const PelDOMDocument document = services().createDocument("r");
    PelDOMElement root = document.getDocumentElement();
    root.setAttribute("k", text.c_str());
    Number value = 42;
    char* end = nullptr;
    const Number number = scan(text.c_str(), &end);
    const bool isNumber = end != text.c_str();
    expectSame(root.getAttribute("k", value), isNumber ? PelDOM::SUCCESS : PelDOM::INVALID_VALUE,
        "code for " + text);
    if (value != value && number != number) return;
    expectSame(value, isNumber ? number : 42, "value of " + text);
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Input in(data, size);
    switch (in.below(4)) {
    case 0:
        formatOfKnownKinds(in);
        break;
    case 1:
        formatOfFiler<long>(in, "diuoxX", "l");
        break;
    case 2:
        formatOfFiler<double>(in, "fFeEgGaA", "");
        break;
    default: {
        const std::string text = in.text();
        typedRead<long>(text, [](const char* from, char** end) { return std::strtol(from, end, 10); });
        typedRead<double>(text, [](const char* from, char** end) { return std::strtod(from, end); });
    }
    }
    return 0;
}
