// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelLog.h"
#include "open_files.h"

#include <qrndom/QRNDOM.h>

#include <gtest/gtest.h>
#include <xercesc/dom/DOMException.hpp>

#include <climits>
#include <filesystem>
#include <fstream>
#include <functional>

#ifdef QRNDOM_REMOTE_ENTITIES
constexpr bool areRemoteRead = true; ///< Tests leave out what would call other machines then.
#else
constexpr bool areRemoteRead = false;
#endif

inline PelDOMUtilites& services() {
    return *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
}

/// A document from its text in UTF-8; null when the text is refused.
inline PelDOMDocument parse(const PelString& xml) {
    return services().readDocumentFromStringW(xml);
}

inline PelDOMDocument readFile(const std::string& path) {
    return services().readDocument(path.c_str());
}

inline PelDOMElement rootOf(const PelString& xml) {
    return parse(xml).getDocumentElement();
}

inline PelDOMElement rootOf(const PelDOMDocument& document) {
    return document.getDocumentElement();
}

inline PelDOMNodeList childrenOf(const PelDOMNode& parent) {
    PelDOMNodeList children;
    parent.getChildNodes(children);
    return children;
}

inline PelDOMNode itemOf(const PelDOMNodeList& list, long index) {
    PelDOMNode node;
    list.item(index, node);
    return node;
}

inline PelDOMNode childAt(const PelDOMNode& parent, long index) {
    return itemOf(childrenOf(parent), index);
}

inline void remove(const PelDOMNode& node) {
    node.getParentNode().removeChild(node);
}

/// A subtree as one line: elements with their attributes in map order, |text|, other nodes as
/// #type, or "null".
inline std::string show(const PelDOMNode& node) {
    const PelDOM::NodeType type = node.getNodeType();
    if (type == PelDOM::TEXT_NODE)
        return "|" + PelDOMText(node).getValue().toUtf8() + "|";
    const PelDOMElement element(node);
    const PelDOMNodeList children = childrenOf(node);
    std::string shown = element.getTagName().toUtf8();
    for (long i = 0; i < element.getNumAttributes(); ++i)
        shown += " " + element.getAttributeNameAt(i).toUtf8() + "=" +
                 element.getAttributeValueAt(i).toUtf8();
    if (type != PelDOM::ELEMENT_NODE)
        shown = node.isNull() == 1 ? "null" : "#" + std::to_string(type);
    for (long i = 0; i < children.length(); ++i)
        shown += (i == 0 ? "(" : " ") + show(itemOf(children, i));
    return children.length() == 0 ? shown : shown + ")";
}

/// What one call answered, as text: a code by its name, a string in quotes, a handle by its tree.
struct Answer {
    Answer(PelDOM::Error code) : text(names.at(code)) {}
    Answer(long number) : text(std::to_string(number)) {}
    Answer(const std::string& string) : text("'" + string + "'") {}
    Answer(const PelString& string) : Answer(string.toUtf8()) {}
    Answer(const PelDOMNode& node) : text(show(node)) {}

    static inline const std::map<PelDOM::Error, std::string> names = {
        {PelDOM::SUCCESS, "ok"},
        {PelDOM::NOT_INITIALIZED, "not-started"},
        {PelDOM::INITIALIZATION_FAILED, "start-failed"},
        {PelDOM::NO_IMPLEMENTATION, "no-imp"},
        {PelDOM::NULL_NODE, "null-node"},
        {PelDOM::INVALID_VALUE, "invalid"},
        {PelDOM::INDEX_OUT_OF_RANGE, "outside"},
        {PelDOM::INTERNAL_ERROR, "internal"}};
    std::string text;
};

/// The answers of calls, which are made in the order of the list.
inline std::string answers(std::initializer_list<Answer> list) {
    std::string all;
    for (const Answer& answer : list)
        all += (all.empty() ? "" : " ") + answer.text;
    return all;
}

/// A call and what it answers.
struct Row {
    Row(const Answer& answer, std::string text, int callLine = __builtin_LINE())
        : answered(answer.text), expected(std::move(text)), line(callLine) {}
    std::string answered, expected;
    int line;
};

/// Makes the calls in their order. A failure names the call.
inline void expectAnswers(std::initializer_list<Row> rows, const char* file = __builtin_FILE()) {
    for (const Row& row : rows)
        if (row.answered != row.expected)
            ADD_FAILURE_AT(file, row.line) << "call " << &row - rows.begin() + 1 << " answered "
                                           << row.answered << ", not " << row.expected;
}

/// Runs an append; the engine's code, negative, when it is refused.
inline int append(PelDOMNode parent, PelDOMNode child) {
    try {
        return parent.appendChild(child);
    } catch (const xercesc::DOMException& exception) {
        return -exception.code;
    }
}

inline std::string bytesOf(const std::string& path) {
    return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}

/// The text that the log gains while this lives.
struct LogWatch {
    static inline const std::string file = std::filesystem::absolute(QRNDOM_LOG_FILE);
    const std::size_t before = all().size();
    std::string text() const { return all().substr(before); }
    static std::string all() {
        PelLog::flush();
        return bytesOf(file);
    }
};

struct ScratchFolder {
    std::string path = (std::filesystem::temp_directory_path() / "qrndom.XXXXXX").string();

    ScratchFolder() { EXPECT_NE(mkdtemp(path.data()), nullptr); }
    ~ScratchFolder() { std::filesystem::remove_all(path); }

    std::string file(const std::string& name) const { return path + "/" + name; }

    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(file(name), std::ios::binary) << bytes;
        return file(name);
    }
};
