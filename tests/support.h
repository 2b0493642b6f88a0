// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/QRNDOM.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// The services object of the test's process.
inline PelDOMUtilites& services() {
    return *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
}

/// A document from its text in UTF-8; null when the text is refused.
inline PelDOMDocument parse(const PelString& xml) {
    return services().readDocumentFromStringW(xml);
}

inline PelDOMNode childAt(const PelDOMNode& parent, long index) {
    PelDOMNodeList children;
    PelDOMNode child;
    parent.getChildNodes(children);
    children.item(index, child);
    return child;
}

/// A whole subtree as one line, seen through handles: elements with their attributes in map order,
/// text between bars, other nodes as #type.
inline std::string show(const PelDOMNode& node) {
    std::string shown;
    const PelDOM::NodeType type = node.getNodeType();
    if (type == PelDOM::TEXT_NODE)
        return "|" + PelDOMText(node).getValue().toUtf8() + "|";
    if (type == PelDOM::ELEMENT_NODE) {
        const PelDOMElement element(node);
        shown = element.getTagName().toUtf8();
        for (long i = 0; i < element.getNumAttributes(); ++i)
            shown += " " + element.getAttributeNameAt(i).toUtf8() + "=" +
                     element.getAttributeValueAt(i).toUtf8();
    } else
        shown = "#" + std::to_string(type);
    PelDOMNodeList children;
    node.getChildNodes(children);
    if (children.length() == 0)
        return shown;
    shown += "(";
    for (long i = 0; i < children.length(); ++i)
        shown += (i > 0 ? " " : "") + show(childAt(node, i));
    return shown + ")";
}

inline std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines that the log gains while this lives.
class LogWatch {
public:
    LogWatch() : before(bytesOf(QRNDOM_LOG_FILE).size()) {}

    std::vector<std::string> lines() const {
        std::vector<std::string> gained;
        std::string text = bytesOf(QRNDOM_LOG_FILE).substr(before);
        for (std::size_t end = 0; (end = text.find('\n')) != text.npos; text.erase(0, end + 1))
            gained.push_back(text.substr(0, end));
        return gained;
    }

private:
    std::size_t before;
};

/// A folder of the test's own, gone at its end.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "qrndom.XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    ~ScratchFolder() { std::filesystem::remove_all(path); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string file(const std::string& name) const { return path + "/" + name; }

    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(file(name), std::ios::binary) << bytes;
        return file(name);
    }

private:
    std::string path;
};
