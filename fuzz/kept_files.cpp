// SPDX-License-Identifier: MIT
// Reads real files with the source kept and writes them: unchanged, every byte has to come back; after
// one edit, what differs has to be one region as large as the edit (two for a rename or a move), and
// what is written has to read back as the tree in memory. Elements have to know their lines.
//
//     kept_files LIST [POSITIONS]      (LIST: a path in each line; POSITIONS: for each kind of edit, 2)
#include "outline.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string_view>

namespace {

constexpr std::size_t mostShown = 8;
constexpr std::size_t mostEdited = 400'000; // bytes of a file; larger ones are edited once

struct Tally {
    std::size_t checks = 0, failures = 0;
};
std::map<std::string, Tally> tallies;

void count(const std::string& kind, const std::string& failure, const std::string& file) {
    Tally& tally = tallies[kind];
    ++tally.checks;
    if (!failure.empty() && ++tally.failures <= mostShown)
        std::cout << "FAILED " << kind << ": " << file << ": " << failure << std::endl;
}

std::string bytesOf(const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    return (std::ostringstream() << stream.rdbuf()).str();
}

/// Where the elements of a text stand, found without the library.
struct Span {
    std::size_t begin, tagEnd, endTag, end;
};

std::vector<Span> spansOf(const std::string& text) {
    std::vector<Span> spans;
    std::vector<std::size_t> open;
    const auto behind = [&](const char* what, std::size_t at) {
        const std::size_t found = text.find(what, at);
        return found == text.npos ? text.size() : found + std::char_traits<char>::length(what);
    };
    for (std::size_t at = 0; (at = text.find('<', at)) != text.npos;) {
        if (text.compare(at, 4, "<!--") == 0)
            at = behind("-->", at + 4);
        else if (text.compare(at, 9, "<![CDATA[") == 0)
            at = behind("]]>", at);
        else if (text.compare(at, 2, "<?") == 0)
            at = behind("?>", at);
        else if (text.compare(at, 2, "<!") == 0) {
            for (int depth = 0; at < text.size(); ++at) {
                if (text.compare(at, 4, "<!--") == 0)
                    at = behind("-->", at) - 1;
                else if (text.compare(at, 2, "<?") == 0)
                    at = behind("?>", at) - 1;
                else if (text[at] == '"' || text[at] == '\'')
                    at = text.find(text[at], at + 1);
                else if (text[at] == '<')
                    ++depth;
                else if (text[at] == '>' && --depth == 0)
                    break;
            }
        } else if (text.compare(at, 2, "</") == 0) {
            if (open.empty()) return {};
            spans[open.back()].endTag = at;
            spans[open.back()].end = at = behind(">", at);
            open.pop_back();
        } else {
            std::size_t end = at;
            while (end < text.size() && text[end] != '>')
                end = text[end] == '"' || text[end] == '\'' ? behind(text[end] == '"' ? "\"" : "'", end + 1)
                                                            : end + 1;
            ++end;
            const bool isEmpty = text[end - 2] == '/';
            if (!isEmpty) open.push_back(spans.size());
            spans.push_back({at, end, end, end});
            at = end;
        }
    }
    return spans;
}

struct Read {
    PelDOMReader reader;
    PelDOMDocument document;
    std::string bytes;
    std::vector<PelDOMElement> elements;
    std::vector<Span> spans; // empty: not known
};

bool read(const std::string& name, PelDOMReader::Validation validation, Read& result) {
    result.reader.setKeepSource(true);
    result.reader.setValidation(validation);
    result.document = result.reader.readFile(PelString(name.c_str()));
    result.elements.clear();
    for (PelDOMNode node = result.document; node; node = nextInTree(result.document, node))
        if (node.getNodeType() == PelDOM::ELEMENT_NODE) result.elements.emplace_back(node);
    return static_cast<bool>(result.document);
}

void checkLines(const Read& read, const std::string& name) {
    if (read.spans.empty()) return;
    std::string failure;
    unsigned long line = 1, column = 1;
    std::size_t at = read.bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    for (std::size_t i = 0; i < read.spans.size() && failure.empty(); ++i) {
        for (; at < read.spans[i].begin; ++at) {
            const char unit = read.bytes[at];
            if (unit == '\n' || (unit == '\r' && read.bytes[at + 1] != '\n')) {
                ++line;
                column = 1;
            } else if (unit != '\r' && (unit & 0xC0) != 0x80) {
                ++column;
            }
        }
        if (read.elements[i].getLine() != line || read.elements[i].getColumn() != column)
            failure = "element " + std::to_string(i) + " stands at " + std::to_string(line) + ":" +
                      std::to_string(column) + ", not " + std::to_string(read.elements[i].getLine()) + ":" +
                      std::to_string(read.elements[i].getColumn());
    }
    count("line of each element", failure, name);
}

/// What two texts differ in.
struct Region {
    Region(const std::string& one, const std::string& two) {
        const std::size_t shorter = std::min(one.size(), two.size());
        begin = static_cast<std::size_t>(
            std::mismatch(one.begin(), one.begin() + static_cast<long>(shorter), two.begin()).first -
            one.begin());
        std::size_t same = 0;
        while (same < shorter - begin && one[one.size() - 1 - same] == two[two.size() - 1 - same]) ++same;
        end = one.size() - same;
        former = one.substr(begin, end - begin);
        now = two.substr(begin, two.size() - same - begin);
    }
    std::size_t begin, end;
    std::string former, now;
};

std::string withoutSpace(std::string_view text) {
    std::string rest;
    std::copy_if(text.begin(), text.end(), std::back_inserter(rest),
        [](char unit) { return std::string_view(" \t\r\n").find(unit) == std::string_view::npos; });
    return rest;
}

std::string indentationOf(const std::string& text, std::size_t at) {
    const std::size_t line = text.rfind('\n', at) + 1;
    return text.substr(line, at - line);
}

bool isAbout(std::size_t size, std::size_t expected) { return size <= expected + 400; }

/// Makes one edit at an element; what it leads to, or nothing where there is no such thing to edit. A
/// region that is expected is checked by that function.
using Check = std::function<bool(const Region&, const std::string&)>;
struct Edit {
    const char* kind;
    std::function<Check(const Read&, std::size_t)> make;
};

PelDOMNode firstChild(const PelDOMNode& parent, PelDOM::NodeType type) {
    PelDOMNode node = parent.getFirstChild();
    while (node && (node.getNodeType() != type ||
                       (type == PelDOM::TEXT_NODE && withoutSpace(node.getNodeValue().toUtf8()).empty())))
        node = node.getNextSibling();
    return node;
}

const Edit edits[] = {
    {"attribute set",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMElement element = read.elements[i];
            const auto attributes = element.getAttributes();
            if (attributes.empty()) return nullptr;
            const PelString former = attributes[i % attributes.size()].value;
            element.putAttribute(attributes[i % attributes.size()].name, "new \"value\"");
            return [&read, i](const Region& region, const std::string&) {
                return region.now.size() <= 60 &&
                       (read.spans.empty() ||
                           (region.begin > read.spans[i].begin && region.end < read.spans[i].tagEnd));
            };
        }},
    {"attribute added",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMElement(read.elements[i]).putAttribute("added-here", "1");
            return [](const Region& region, const std::string&) {
                return region.former.empty() &&
                       (region.now.size() == 15 || region.now.size() == 30); // in UTF-16
            };
        }},
    {"attribute removed",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMElement element = read.elements[i];
            const auto attributes = element.getAttributes();
            if (attributes.empty()) return nullptr;
            element.removeAttribute(attributes[i % attributes.size()].name);
            if (element.hasAttribute(attributes[i % attributes.size()].name)) return nullptr; // a default
            return [&read, i](const Region& region, const std::string&) {
                return region.now.empty() && (read.spans.empty() || (region.begin > read.spans[i].begin &&
                                                                        region.end <= read.spans[i].tagEnd));
            };
        }},
    {"element renamed",
        [](const Read& read, std::size_t i) -> Check {
            const std::string former = read.elements[i].getTagName().toUtf8();
            PelDOMElement(read.elements[i]).setTagName("renamed-here");
            return [&read, i, former](const Region& region, const std::string& now) {
                if (read.spans.empty()) return isAbout(region.former.size(), read.bytes.size());
                std::string expected = read.bytes;
                const Span& span = read.spans[i];
                if (span.end != span.tagEnd) expected.replace(span.endTag + 2, former.size(), "renamed-here");
                expected.replace(span.begin + 1, former.size(), "renamed-here");
                return now == expected;
            };
        }},
    {"text set",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMNode text = firstChild(read.elements[i], PelDOM::TEXT_NODE);
            if (!text) return nullptr;
            text.setNodeValue("another <text>");
            return [](const Region& region, const std::string&) {
                return region.now.size() <= 22 && region.former.find('<') == std::string::npos;
            };
        }},
    {"comment set",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMNode comment = firstChild(read.elements[i], PelDOM::COMMENT_NODE);
            if (!comment) return nullptr;
            comment.setNodeValue("another comment");
            return [](const Region& region, const std::string&) {
                return region.now.size() <= 15 && region.former.find("-->") == std::string::npos;
            };
        }},
    {"element appended",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMElement element = PelDOMDocument(read.document).createElement("added");
            PelDOMElement(read.elements[i]).appendChild(element);
            return [](const Region& region, const std::string&) {
                return withoutSpace(region.former).size() <= 2 && isAbout(region.now.size(), 8);
            };
        }},
    {"element inserted",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMElement element = PelDOMDocument(read.document).createElement("added");
            if (i == 0) return nullptr;
            read.elements[i].getParentNode().insertBefore(element, read.elements[i]);
            return [](const Region& region, const std::string&) {
                return region.former.empty() && isAbout(region.now.size(), 8);
            };
        }},
    {"element removed",
        [](const Read& read, std::size_t i) -> Check {
            if (i == 0) return nullptr;
            read.elements[i].getParentNode().removeChild(read.elements[i]);
            return [&read, i](const Region& region, const std::string& now) {
                if (!region.now.empty()) return false;
                if (read.spans.empty()) return true;
                const Span& span = read.spans[i];
                return withoutSpace(now) ==
                           withoutSpace(read.bytes.substr(0, span.begin) + read.bytes.substr(span.end)) &&
                       isAbout(region.former.size(), span.end - span.begin);
            };
        }},
    {"element moved",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMElement next = read.elements[i].getNextElement();
            if (i == 0 || !next) return nullptr;
            const auto other = static_cast<std::size_t>(
                std::find(read.elements.begin(), read.elements.end(), next) - read.elements.begin());
            next.getParentNode().insertBefore(next, read.elements[i]);
            return [&read, i, other](const Region& region, const std::string& now) {
                if (read.spans.empty()) return isAbout(region.former.size(), read.bytes.size());
                const std::string& text = read.bytes;
                const Span &one = read.spans[i], &two = read.spans[other];
                const std::string moved = text.substr(two.begin, two.end - two.begin);
                const std::string between = text.substr(one.begin, one.end - one.begin);
                // On a line with another indentation its own lines are indented anew.
                const bool isIndentedAnew = indentationOf(text, one.begin) != indentationOf(text, two.begin);
                return withoutSpace(now) == withoutSpace(text.substr(0, one.begin) + moved +
                                                         text.substr(one.begin, two.begin - one.begin) +
                                                         text.substr(two.end)) &&
                       now.compare(0, one.begin, text, 0, one.begin) == 0 &&
                       (isIndentedAnew || now.find(moved, one.begin) != now.npos) &&
                       now.find(between, one.begin) != now.npos && isAbout(now.size(), text.size()) &&
                       isAbout(text.size(), now.size());
            };
        }},
    {"nothing changed",
        [](const Read& read, std::size_t i) -> Check {
            PelDOMElement element = read.elements[i];
            for (const PelDOMAttribute& attribute : element.getAttributes())
                if (attribute.value != element.getAttribute(attribute.name)) return nullptr;
            element.setTagName(element.getTagName());
            PelDOMNode parent = element.getParentNode(), next = element.getNextSibling();
            parent.removeChild(element);
            if (next)
                parent.insertBefore(element, next);
            else
                parent.appendChild(element);
            return [](const Region& region, const std::string&) {
                return region.former.empty() && region.now.empty();
            };
        }},
};

std::string shortened(const std::string& text) {
    return "'" + (text.size() > 160 ? text.substr(0, 100) + " … " + text.substr(text.size() - 60) : text) +
           "'";
}

void checkEdit(const Edit& edit, const Read& read, std::size_t position, const std::string& name) {
    const Check check = edit.make(read, position);
    if (!check) return;
    PelDOMWriter writer;
    writer.setKeepLayout(true);
    std::string now, failure;
    if (writer.writeBytes(read.document, now) != PelDOM::SUCCESS) {
        count(edit.kind, "not written: " + writer.getMessage().toUtf8(), name);
        return;
    }
    const Region region(read.bytes, now);
    const std::string& former = region.former;
    // A reference is written out once something that it brought has changed.
    if (!former.empty() && former.front() == '&' && former.find(';') == former.size() - 1)
        ++tallies["(a reference written out)"].checks;
    else if (!check(region, now))
        failure = "element " + std::to_string(position) + " of " + std::to_string(read.elements.size()) +
                  ", at " + std::to_string(region.begin) + " " + shortened(region.former) + " became " +
                  shortened(region.now) + " " + writer.getMessage().toUtf8();
    count(edit.kind, failure, name);
    PelDOMReader reader;
    reader.setValidation(PelDOMReader::NEVER);
    reader.setBase(PelString(name.c_str()));
    const PelDOMDocument back = reader.readBytes(now.data(), now.size(), PelString(name.c_str()));
    const std::string expected = outlineOf(read.document);
    const std::string got = back ? outlineOf(back) : reader.getMessages().back().toLine().toUtf8();
    if (got == expected)
        failure.clear();
    else {
        const Region lines(expected, got);
        failure = std::string(edit.kind) + " at element " + std::to_string(position) + ": " +
                  shortened(lines.former) + " became " + shortened(lines.now);
    }
    count("read back", failure, name);
}

void checkFile(const std::string& name, std::size_t positions) {
    Read first;
    PelDOMReader::Validation validation = PelDOMReader::IF_DECLARED;
    first.bytes = bytesOf(name);
    if (!read(name, validation, first) && !read(name, validation = PelDOMReader::NEVER, first)) {
        ++tallies["(cannot be read)"].checks;
        return;
    }
    PelDOMWriter writer;
    writer.setKeepLayout(true);
    std::string bytes;
    const bool isWritten = writer.writeBytes(first.document, bytes) == PelDOM::SUCCESS;
    count("unchanged", isWritten && bytes == first.bytes ? "" : "differs " + writer.getMessage().toUtf8(),
        name);

    std::string encoding = first.document.getInputEncoding().toUtf8();
    for (char& letter : encoding)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    if (encoding == "UTF-8" || encoding == "US-ASCII") first.spans = spansOf(first.bytes);
    if (first.spans.size() != first.elements.size()) first.spans.clear();
    if (first.spans.empty()) ++tallies["(places not compared)"].checks;
    checkLines(first, name);
    std::size_t hash = std::hash<std::string>()(name);
    for (const Edit& edit : edits)
        for (std::size_t i = 0;
             i < std::min<std::size_t>(positions, first.bytes.size() > mostEdited ? 1 : positions); ++i) {
            Read changed;
            if (!read(name, validation, changed)) continue;
            changed.bytes = first.bytes;
            changed.spans = first.spans;
            hash = hash * 6364136223846793005U + 1442695040888963407U;
            checkEdit(
                edit, changed, i == 1 && hash % 4 == 0 ? 0 : (hash >> 20U) % changed.elements.size(), name);
        }
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t positions = argc > 2 ? std::stoul(argv[2]) : 2;
    std::ifstream list(argc > 1 ? argv[1] : "");
    std::size_t files = 0, failures = 0;
    for (std::string name; std::getline(list, name); ++files) checkFile(name, positions);
    std::cout << files << " files\n";
    for (const auto& [kind, tally] : tallies) {
        std::cout << kind << ": " << tally.checks << " checks, " << tally.failures << " failures\n";
        failures += tally.failures;
    }
    return files > 0 && failures == 0 ? 0 : 1;
}
