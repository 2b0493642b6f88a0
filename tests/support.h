// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelLog.h"
#include "open_files.h"
#include "xerces/handles/PelXercesDOMNode.h"

#include <qrndom/QRNDOM.h>

#include <gtest/gtest.h>
#include <xercesc/dom/DOMException.hpp>

#include <climits>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

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

/// The same from its bytes in any encoding.
inline PelDOMDocument parseBytes(const std::string& bytes) {
    return services().readDocumentFromStringA(PelString::fromLatin1(bytes.data(), bytes.size()));
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

inline xercesc::DOMDocument& engineOf(const PelDOMNode& node) {
    return *PelXercesDOMNode::of(*node.getNodeImp()).getDocument();
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

/// Calls of which each answers the same.
inline void expectEach(const std::string& expected, std::initializer_list<Answer> calls,
                       const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    for (const Answer& call : calls)
        if (call.text != expected)
            ADD_FAILURE_AT(file, line) << "call " << &call - calls.begin() + 1 << " answered "
                                       << call.text << ", not " << expected;
}

/// Runs an append; the engine's code, negative, when it is refused.
inline int append(PelDOMNode parent, PelDOMNode child) {
    try {
        return parent.appendChild(child);
    } catch (const xercesc::DOMException& exception) {
        return -exception.code;
    }
}

inline std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    while (times-- > 0)
        all += text;
    return all;
}

inline bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != text.npos;
}

inline std::string replaced(std::string text, const std::string& old, const std::string& fresh) {
    for (std::size_t at = 0; (at = text.find(old, at)) != text.npos; at += fresh.size())
        text.replace(at, old.size(), fresh);
    return text;
}

/// The bytes of UTF-16, the lower one of each unit first or last.
inline std::string utf16Bytes(const std::u16string& text, bool isLowFirst = true) {
    std::string bytes;
    for (const char16_t unit : text)
        for (const bool isLow : {isLowFirst, !isLowFirst})
            bytes += static_cast<char>(isLow ? unit & 0xFF : unit >> 8);
    return bytes;
}

/// How a process of its own ends that does this; with 1 when an expectation failed.
inline int statusOfProcess(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        std::cout.flush();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
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
