// SPDX-License-Identifier: MIT
// Spoils documents without a document type by chance, and compares whether this library and libxml2
// take them for well-formed. What they are known to judge differently, and why, stands below.
//
//     verdicts SECONDS [FIRST [COUNT]]      (documents have numbers; from 0 on, if FIRST is not given)
#include "support.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <filesystem>
#include <fstream>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <map>
#include <random>
#include <sstream>

namespace {

using Seeds = std::vector<std::string>;

bool beginsWith(const std::string& bytes, std::string_view start) {
    return bytes.compare(0, start.size(), start) == 0;
}

struct Verdict {
    bool isGood;
    int code;
    std::string message;
};

struct Case {
    const std::string& bytes;
    const Verdict& ours;
    const Verdict& theirs;

    bool isUtf16() const { return unit() == 2; }
    bool isUcs4() const { return unit() == 4; }

private:
    // By the NULs around the first character.
    int unit() const {
        if (beginsWith(bytes, std::string_view("\xFF\xFE\0\0", 4)) ||
            beginsWith(bytes, std::string_view("\0\0\xFE\xFF", 4)) ||
            beginsWith(bytes, std::string_view("\0\0\0<", 4)) ||
            beginsWith(bytes, std::string_view("<\0\0\0", 4)))
            return 4;
        return beginsWith(bytes, "\xFF\xFE") || beginsWith(bytes, "\xFE\xFF") ||
                       beginsWith(bytes, std::string_view("\0<", 2)) ||
                       beginsWith(bytes, std::string_view("<\0", 2))
                   ? 2
                   : 1;
    }
};

bool has(const std::string& text, std::string_view part) { return text.find(part) != text.npos; }

std::string withoutNuls(std::string bytes) {
    bytes.erase(std::remove(bytes.begin(), bytes.end(), '\0'), bytes.end());
    return bytes;
}

// The declaration, whatever the size of its characters.
std::string declarationOf(const std::string& bytes) {
    const std::string plain = withoutNuls(bytes.substr(0, 1000));
    const std::size_t end = plain.find('>');
    const std::size_t begin = plain.find("<?xml");
    return begin < 4 && end != plain.npos ? plain.substr(begin, end - begin) : "";
}

Verdict judge(const std::string& bytes) {
    std::u16string units;
    for (const char byte : bytes) units.push_back(static_cast<unsigned char>(byte));
    const PelDOMDocument document = services().readDocumentFromStringA(PelString(std::move(units)));
    return {document.isNull() == 0, 0, PelDOMUtilites::getLastReadMessage().toUtf8()};
}

struct Allowance {
    const char* reason;
    bool (*isMeant)(const Case& one);
};

// Theirs are libxml2 2.9's.
const Allowance allowances[] = {
    {"they end at a NUL",
        [](const Case& one) {
            return one.theirs.isGood && has(one.ours.message, "code point 0x0 is invalid for");
        }},
    {"they overlook an odd byte or half a pair at the end of UTF-16",
        [](const Case& one) {
            const std::string end =
                one.bytes.substr(one.bytes.size() - std::min<std::size_t>(4, one.bytes.size()));
            return one.theirs.isGood && one.isUtf16() &&
                   (has(one.ours.message, "invalid multi-byte sequence") ||
                       std::any_of(end.begin(), end.end(), [](char byte) { return (byte & 0xFC) == 0xD8; }));
        }},
    {"they believe the bytes of UTF-16, whatever the declaration names",
        [](const Case& one) {
            return one.theirs.isGood && one.isUtf16() &&
                   has(one.ours.message, "is unknown or not that of the bytes");
        }},
    {"they do not know UCS-4", [](const Case& one) { return one.ours.isGood && one.isUcs4(); }},
    {"they overlook what is undecodable after the root",
        [](const Case& one) {
            if (!one.theirs.isGood || !has(declarationOf(one.bytes), "encoding")) return false;
            for (std::size_t at = 0; at < one.bytes.size(); ++at)
                if ((one.bytes[at] & 0x80) != 0 && judge(one.bytes.substr(0, at)).isGood) return true;
            return false;
        }},
    {"they convert from a UTF-8- that drops bytes",
        [](const Case& one) { return one.theirs.isGood && has(declarationOf(one.bytes), "\"UTF-8-\""); }},
    {"they convert Shift_JIS and windows-1252 by other tables",
        [](const Case& one) {
            const std::string declaration = declarationOf(one.bytes);
            return (has(declaration, "Shift_JIS") || has(declaration, "windows-1252")) &&
                   (one.ours.isGood ? one.theirs.code == XML_ERR_TAG_NOT_FINISHED ||
                                          (one.theirs.code == XML_ERR_INVALID_CHAR &&
                                              has(one.bytes, "\x1C")) // U+007F to us
                                    : has(one.ours.message, "invalid character 0x1A"));
        }},
    {"we take no character outside the basic plane for part of a name",
        [](const Case& one) {
            return one.theirs.isGood && has(one.bytes, "\xF0") &&
                   has(one.ours.message, "invalid or illegal XML character");
        }},
    {"they need no space behind UTF-8",
        [](const Case& one) {
            const std::string declaration = declarationOf(one.bytes);
            return one.theirs.isGood && has(one.ours.message, "whitespace expected") &&
                   (has(declaration, "'standalone") || has(declaration, "\"standalone"));
        }},
    {"they know EBCDIC by less than a whole declaration",
        [](const Case& one) {
            return one.theirs.isGood && beginsWith(one.bytes, "Lo\xA7\x94") &&
                   has(one.ours.message, ":1:1: ");
        }},
    {"we read no version but 1.0 and 1.1",
        [](const Case& one) { return one.theirs.isGood && one.theirs.code == XML_WAR_UNKNOWN_VERSION; }},
    {"they know no XML 1.1", [](const Case& one) { return has(declarationOf(one.bytes), "1.1"); }},
};

const char* const ownSeeds[] = {"<a/>", "<?xml version='1.0'?><a>text</a>",
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone='yes' ?>\n<!-- c --><?p i?>\n<a b='c' "
    "d=\"&lt;&#65;&#x1F600;\">t<b/>"
    "<![CDATA[<&]]>]]&gt;</a>\n<!-- e --><?q?>\n",
    "<n:a xmlns:n='u' xmlns='v' n:b='' xml:space='preserve' xml:lang='en'><n:c/>&amp;&apos;&quot;&gt;</n:a>",
    "\xEF\xBB\xBF<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>",
    "<\xC3\xA9l\xC3\xA9ment \xD0\xB6='\xE4\xB8\xAD'/>",
    "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'>\xE9</a>",
    "<?xml version='1.0' encoding='Shift_JIS'?><a>\x82\xA0\x83\x5C</a>",
    "<?xml version='1.0' encoding='US-ASCII'?><a>&#233;</a>", "<a>\r\n\t<b>\r</b>\n<c d='\r\n'/></a>\r\n"};

Seeds readSeeds() {
    Seeds seeds(std::begin(ownSeeds), std::end(ownSeeds));
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(QRNDOM_SEEDS)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files)
        seeds.push_back((std::ostringstream() << std::ifstream(file, std::ios::binary).rdbuf()).str());
    return seeds;
}

/// Draws a document; the same one for the same number.
class Spoiler {
public:
    Spoiler(const Seeds& allSeeds, unsigned long long number) : seeds(allSeeds), engine(number) {}

    std::size_t below(std::size_t limit) { return engine() % limit; }

    template <class Choices>
    const auto& oneOf(const Choices& choices) {
        return choices[below(std::size(choices))];
    }

    std::string document() {
        std::string text = oneOf(seeds).substr(0, 3000);
        if (below(4) == 0) text = widened(text);
        for (std::size_t i = below(4) + (below(8) == 0 ? 4 : 0); i > 0; --i) spoil(text);
        return text;
    }

private:
    // The bytes as characters of UTF-16, with or without a mark.
    std::string widened(const std::string& text) {
        const bool isBig = below(2) == 0;
        std::string wide = below(4) == 0 ? "" : isBig ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : text) wide += isBig ? std::string{'\0', c} : std::string{c, '\0'};
        return wide;
    }

    void spoil(std::string& text) {
        static const std::string pieces[] = {"<", ">", "&", ";", "/", "'", "\"", "=", " ", "\n", "]]>", "--",
            "-->", "?>", "<!--", "<![CDATA[", "<?", "<?xml ", "</", "/>", "&#0;", "&#x1;", "&#xD800;",
            "&#xFFFE;", "&#x110000;", "&#38;", "&lt;", "&none;", std::string("\0", 1), std::string("\0\0", 2),
            "\x01", "\x7F", "\xC2\x85", "\xE2\x80\xA8", "\xEF\xBF\xBE", "\xEF\xBB\xBF", "\xFE\xFF",
            "\xFF\xFE", "\xC3", "\xE2\x82", "\xED\xA0\x80", "\xF0\x9F\x98\x80", "\xF4\x90\x80\x80",
            "\xF5\x80\x80\x80", "\xC0\x80", "\xFF", "\x80", "UTF-8", "UTF-16", "ISO-8859-1", "encoding='x'",
            "version='1.0'", "1.1", "xml", ":", "a:b", "xmlns", "standalone='no'", "\r", "\t", "a", "<a>",
            "</a>", "b='1'"};
        const std::size_t at = below(text.size() + 1);
        const std::size_t count = std::min(below(4) == 0 ? below(40) : below(3) + 1, text.size() - at);
        switch (below(9)) {
        case 0:
            text.insert(at, oneOf(pieces));
            break;
        case 1:
            text.replace(at, count, oneOf(pieces));
            break;
        case 2:
            text.erase(at, count);
            break;
        case 3:
            text.insert(below(text.size() + 1), text.substr(at, count));
            break;
        case 4:
            text.resize(at);
            break;
        case 5:
            text.insert(at, below(5) == 0 ? 20000 : 1 + below(60), 'x');
            break;
        case 6:
            text += oneOf(pieces);
            break;
        case 7:
            if (at < text.size()) text[at] = static_cast<char>(below(256));
            break;
        default:
            if (at < text.size()) text[at] = static_cast<char>(text[at] ^ 1 << below(8));
            break;
        }
    }

    const Seeds& seeds;
    std::mt19937_64 engine;
};

// Their verdict, and whether the document has a type.
Verdict judgeByLibxml2(const std::string& bytes, bool& hasType) {
    xmlResetLastError();
    xmlParserCtxt* const context = xmlNewParserCtxt();
    xmlDoc* const document =
        xmlCtxtReadMemory(context, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
            XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    const xmlError* const error = xmlCtxtGetLastError(context);
    hasType = context->hasExternalSubset != 0 || context->intSubName != nullptr ||
              (document != nullptr && document->intSubset != nullptr);
    Verdict verdict{document != nullptr, error != nullptr ? error->code : 0,
        error != nullptr && error->message != nullptr ? error->message : ""};
    xmlFreeDoc(document);
    xmlFreeParserCtxt(context);
    return verdict;
}

extern "C" void sayNothing(void*, const char*, ...) {} // NOLINT(cert-dcl50-cpp): as libxml2 calls it

std::string escaped(const std::string& bytes) {
    std::ostringstream out;
    for (const char c : bytes)
        if (c >= ' ' && c < 0x7F && c != '\\')
            out << c;
        else
            out << "\\x" << std::hex << std::uppercase << (static_cast<unsigned char>(c) >> 4) << (c & 15)
                << std::dec;
    return out.str();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: verdicts SECONDS [FIRST [COUNT]]\n";
        return 2;
    }
    constexpr int enough = 20;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::atoll(argv[1]));
    const unsigned long long first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
    const unsigned long long last = argc > 3 ? first + std::strtoull(argv[3], nullptr, 10) : ULLONG_MAX;
    unsigned long long number = first;
    xmlSetGenericErrorFunc(nullptr, sayNothing);
    std::cerr.setstate(std::ios::failbit); // what reads print
    const Seeds seeds = readSeeds();
    std::map<std::string, std::size_t> counts;
    int differences = 0;
    while (number < last && differences < enough && std::chrono::steady_clock::now() < end) {
        const std::string bytes = Spoiler(seeds, number++).document();
        bool hasType = false;
        if (bytes.empty() || has(withoutNuls(bytes), "<!DOCTYPE")) continue;
        const Verdict theirs = judgeByLibxml2(bytes, hasType);
        if (hasType) continue;
        const Verdict ours = judge(bytes);
        ++counts[ours.isGood == theirs.isGood ? ours.isGood ? "both read" : "both refuse" : ""];
        if (ours.isGood == theirs.isGood) continue;
        const Case one{bytes, ours, theirs};
        const auto* const allowed = std::find_if(std::begin(allowances), std::end(allowances),
            [&](const Allowance& allowance) { return allowance.isMeant(one); });
        if (allowed != std::end(allowances)) {
            ++counts[allowed->reason];
            continue;
        }
        std::cout << "DIFFERENCE " << number - 1 << ": " << (ours.isGood ? "we read" : "we refuse")
                  << "\n  ours:   " << ours.message << "\n  theirs: " << theirs.code << " " << theirs.message
                  << "\n  " << escaped(bytes.size() > 2000 ? bytes.substr(0, 600) : bytes) << "\n";
        ++differences;
    }
    xmlCleanupParser();
    std::cout << number - first << " documents\n";
    counts.erase("");
    for (const auto& [what, count] : counts) std::cout << count << " " << what << "\n";
    std::cout << differences << " differences" << std::endl;
    return differences == 0 ? 0 : 1;
}
