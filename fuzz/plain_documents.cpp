// SPDX-License-Identifier: MIT
// Gives the fuzz target documents made by chance, half of them spoilt afterwards: many more in a
// second than a fuzzer that watches the code.
//
//     plain_documents [COUNT [SEED [FILE...]]]      (FILE: documents to spoil besides)
//
// A document on which the target ends the process is left in plain_documents.last.
#include "support.h"
#include "xerces/engine/PelXercesFields.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <random>
#include <sstream>

extern std::size_t plainInputs; // what the scanner accepted

namespace {

class Writer {
public:
    explicit Writer(unsigned seed) : engine(seed) {}

    std::size_t below(std::size_t limit) { return engine() % limit; }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    template <std::size_t count>
    std::string of(const char* const (&words)[count]) {
        return words[below(count)];
    }

    std::string document() {
        std::string out = oneIn(12) ? "\xEF\xBB\xBF" : "";
        if (oneIn(3)) out += declaration();
        out += outside() + element(0) + outside();
        return out;
    }

    std::string spoilt(std::string text) {
        for (std::size_t i = below(3) + 1; i > 0; --i) spoil(text);
        return text;
    }

private:
    std::string space() {
        static const char* const spaces[] = {" ", "\n", "\t", "\r\n", "\r", "  ", "\n    "};
        return of(spaces);
    }

    std::string someSpace() { return oneIn(6) ? space() : ""; }

    std::string declaration() {
        static const char* const encodings[] = {"UTF-8", "utf-8", "Utf-8", "UTF8", "US-ASCII", "UTF-16", ""};
        const std::string quote = oneIn(4) ? "'" : "\"";
        std::string out = "<?xml" + space() + "version=" + quote + (oneIn(20) ? "1.1" : "1.0") + quote;
        if (!oneIn(4))
            out += space() + "encoding" + someSpace() + "=" + someSpace() + quote +
                   (oneIn(4) ? of(encodings) : "UTF-8") + quote;
        if (oneIn(5)) out += space() + "standalone=" + quote + (oneIn(2) ? "yes" : "no") + quote;
        return out + someSpace() + "?>";
    }

    std::string name() {
        static const char* const names[] = {"a", "b", "c", "item", "x:y", "_", ":", "a-b.c", "xml", "xmlns",
            "xmlns:p", "longer-name-of-24-bytes--", "é", "名前", "aé", "a·", "Ω1", "a1234567", "a12345678"};
        return oneIn(8) ? "n" + std::to_string(below(1000)) : of(names);
    }

    std::string characters(bool isLong) {
        static const char* const pieces[] = {"text", " ", "\n", "\t", "0123456789abcdef", "é", "\u07FF", "語",
            "\u0800", "\uFFFD", "\uE000", "😀", "\U0010FFFF", "]", "]]", ">", "\"", "'", "\r\n", "\r", "-",
            "?", "&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#65;", "&#x41;", "&#xe9;", "&#x1F600;",
            "&#13;", "&#10;", "&#9;", "\x7F", "\u0085", "\u2028", "x", "=", "/"};
        std::string out;
        for (std::size_t i = below(isLong ? 900 : 12); i > 0; --i) {
            out += of(pieces);
            if (isLong && oneIn(16)) out.append(below(200), 'l');
        }
        return out;
    }

    std::string text() { return characters(oneIn(60)); }

    static std::string without(std::string text, std::string_view what) {
        for (std::size_t at = 0; (at = text.find(what)) != text.npos;) text.replace(at, what.size(), "");
        return text;
    }

    std::string comment() {
        std::string inside = without(text(), "-");
        if (oneIn(8)) inside += "-x";
        return "<!--" + inside + "-->";
    }
    std::string cdata() { return "<![CDATA[" + without(text() + (oneIn(8) ? "]" : ""), "]]>") + "]]>"; }
    std::string instruction() {
        return "<?" + (oneIn(12) ? std::string("xml-style") : name()) +
               (oneIn(3) ? "" : space() + without(text(), "?>")) + "?>";
    }

    std::string outside() {
        std::string out;
        while (oneIn(4)) out += oneIn(2) ? space() : oneIn(2) ? comment() : instruction();
        return out;
    }

    std::string attributes() {
        std::string out;
        for (std::size_t i = oneIn(2) ? 0 : below(oneIn(20) ? 40 : 4); i > 0; --i) {
            const std::string quote = oneIn(4) ? "'" : "\"";
            out += space() + (oneIn(2) ? "k" + std::to_string(below(60)) : name()) + someSpace() + "=" +
                   someSpace() + quote + without(text(), quote) + quote;
        }
        return out;
    }

    std::string element(std::size_t depth) {
        const std::string tag = name();
        std::string out = "<" + tag + attributes() + someSpace();
        if (oneIn(4)) return out + "/>";
        out += ">";
        for (std::size_t i = below(5); i > 0; --i) {
            switch (below(depth < 5 ? 8 : 5)) {
            case 0:
                out += comment();
                break;
            case 1:
                out += cdata();
                break;
            case 2:
                out += instruction();
                break;
            case 3:
            case 4:
                out += text();
                break;
            default:
                out += element(depth + 1);
            }
        }
        return out + "</" + tag + someSpace() + ">";
    }

    void spoil(std::string& text) {
        static const char* const tokens[] = {"<", ">", "&", "]]>", "--", "<!--", "-->", "?>", "<?", "<?xml ",
            "<![CDATA[", "<!DOCTYPE a>", "<!", "</", "/>", "&#0;", "&#xD800;", "&#xFFFE;", "&#x110000;",
            "&#;", "&#x;", "&x;", "&amp", "&", "\"", "'", "=", "\x01", "\x1F", "\xC0\x80", "\xED\xA0\x80",
            "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE0\x9F\xBF",
            "\xF0\x8F\xBF\xBF", "\x80", "\xC3", "\xE8\xAA", "\xF0\x9F\x98", "\xFE", "\xEF\xBB\xBF",
            "\xC2\x85", " ", "\n", "\r", "é", "語", "😀", " a='1'", " a='2'", "<a>", "</a>", "<a/>", ":", "-",
            ".", "1", "&#x20;", "&#00000000000000000000065;", "&#x99999999999999999;", " xmlns=''",
            "\xCC\x80"};
        const std::size_t at = below(text.size() + 1);
        const std::size_t size = below(oneIn(4) ? 40 : 4);
        switch (below(7)) {
        case 0:
            text.resize(at);
            break;
        case 1:
            text.erase(at, size + 1);
            break;
        case 2:
            text.insert(at, text.substr(below(text.size() + 1), size + 1));
            break;
        case 3:
            if (at < text.size()) text[at] = static_cast<char>(below(oneIn(2) ? 128 : 256));
            break;
        case 4:
            text.replace(at, std::min(size, text.size() - at), of(tokens));
            break;
        default:
            text.insert(at, of(tokens));
        }
    }

    std::mt19937 engine;
};

std::string lastInput;

void saveLast(int signal) {
    std::ofstream("plain_documents.last", std::ios::binary) << lastInput;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

std::string contentOf(const char* path) {
    return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}

} // namespace

int main(int argc, char** argv) {
    const unsigned long count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 20'000;
    const unsigned long seed = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1;
    std::vector<std::string> documents;
    for (int i = 3; i < argc; ++i) documents.push_back(contentOf(argv[i]));
    std::signal(SIGABRT, saveLast);
    std::signal(SIGSEGV, saveLast);
    Writer writer(static_cast<unsigned>(seed));
    unsigned long bytes = 0;
    for (unsigned long i = 0; i < count; ++i) {
        std::string text = documents.empty() || !writer.oneIn(4) ? writer.document()
                                                                 : documents[writer.below(documents.size())];
        if (writer.oneIn(2)) text = writer.spoilt(text);
        bytes += text.size();
        lastInput = text;
        LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }
    std::cout << count << " documents from seed " << seed << ", " << bytes << " bytes; as UTF-8 or UTF-16, "
              << plainInputs << " times one was plain\n";
    const bool areFew = PelXercesFields::areKnown() && plainInputs <= count / 4;
    return count > 0 && areFew ? 1 : 0;
}
