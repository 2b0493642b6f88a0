// SPDX-License-Identifier: MIT
//
// Reads files as the library reads them and says what is wrong with them, a line for each error
// and warning; prints what an expression finds in them; or writes them anew, indented. The manual
// page tells more.
//
// It is a program of the library's users: it needs the public headers and the shared library.

#include "../examples/outline.h"
#include "matches.h"
#include "shell.h"

#include <charconv>
#include <getopt.h>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr char program[] = "qrndom-check";

constexpr int widestIndent = 80;

constexpr char usage[] = "usage: qrndom-check [CHOICE...] [--outline] [--] FILE...\n"
                         "       qrndom-check [CHOICE...] --select XPATH [--text | --count] [-n]\n"
                         "                    [--] FILE...\n"
                         "       qrndom-check [CHOICE...] --format [--indent N] [--encoding NAME]\n"
                         "                    [--in-place | --output OUT] [--] FILE...\n";

constexpr char help[] =
    "Says what keeps the QRNDOM library from reading XML files: file:line:column: message.\n"
    "A FILE of - is the standard input.\n"
    "\n"
    "      --outline          print what is in those that can be read\n"
    "      --select XPATH     print what the expression finds: the markup of nodes, the values of\n"
    "                         attributes; or the text, number or truth value that it gives\n"
    "      --text             print the text of nodes, without markup\n"
    "      --count            print only how much was found in each file\n"
    "  -n, --line-number      print file:line: in front\n"
    "      --format           write each anew, to the standard output\n"
    "      --indent N         indent each level by N spaces, 0 to 80 (2); 0 adds nothing\n"
    "      --encoding NAME    write in this encoding (UTF-8)\n"
    "      --in-place         replace the files themselves, each whole or not at all\n"
    "  -o, --output OUT       write the one FILE to OUT, whole or not at all\n"
    "  -h, --help             print this\n"
    "  -V, --version          print the version\n"
    "\n"
    "A CHOICE says how to read; without one, documents that declare a type have to be valid:\n"
    "\n"
    "      --no-validate      documents need not keep to their document types\n"
    "      --always-validate  all have to keep to one, so those without are refused\n"
    "      --no-external      open no file that a document names, its DTD included\n"
    "      --refuse-doctype   refuse documents with a document type\n"
    "\n"
    "Exits with 0 when all is good, 1 when a file cannot be read or written, 2 for a wrong call\n"
    "or when the standard output cannot be written. With --select: 0 when something was found,\n"
    "1 when nothing was, 2 also when a file cannot be read.\n";

struct Choices {
    PelDOMReader reader;
    int hasOutline = 0; // getopt sets what is an int
    int hasFormat = 0;
    int isInPlace = 0;
    int hasText = 0;
    int hasCount = 0;
    bool hasLines = false;
    PelDOMXPath select;
    std::optional<int> indent;
    std::optional<PelString> encoding;
    std::optional<std::string> output;
};

std::optional<int> parseIndent(std::string_view text) {
    int number = -1;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isGood = result.ec == std::errc() && result.ptr == end;
    return isGood && number >= 0 && number <= widestIndent ? std::optional(number) : std::nullopt;
}

int complain(const std::string& what) {
    std::cerr << what << usage;
    return trouble;
}

bool check(const std::string& file, Choices& choices) {
    const PelDOMDocument document = read(choices.reader, file);
    if (document && choices.hasOutline != 0)
        printOutline(document.getDocumentElement());
    return static_cast<bool>(document);
}

bool format(const std::string& file, Choices& choices) {
    const PelDOMDocument document = read(choices.reader, file);
    if (!document)
        return false;
    PelDOMWriter writer;
    writer.setIndent(choices.indent.value_or(2));
    if (choices.encoding)
        writer.setEncoding(*choices.encoding);
    const bool isIntoFile = choices.isInPlace != 0 || choices.output;
    const PelDOM::Error outcome = isIntoFile
                                      ? writer.writeFile(document, choices.output.value_or(file))
                                      : writer.writeStream(document, std::cout);
    // The stream's own failure is told at the end.
    const bool isWritten = outcome == PelDOM::SUCCESS || !std::cout;
    if (!isWritten)
        std::cerr << (isIntoFile ? "" : file + ": ") << writer.getMessage() << "\n";
    return isWritten;
}

// A line of what was found, which may end one itself.
void printFound(const std::string& place, const std::string& found) {
    std::cout << place << found << (!found.empty() && found.back() == '\n' ? "" : "\n");
}

std::string markupOf(const PelDOMNode& match, const std::string& file) {
    std::string markup;
    for (const PelDOMNode& node : nodesOf(match)) {
        PelDOMWriter writer;
        std::string bytes;
        if (writer.writeBytes(node, bytes) != PelDOM::SUCCESS)
            throw std::runtime_error(file + ": " + writer.getMessage().toUtf8());
        markup += bytes;
    }
    return markup;
}

void printMatches(const std::vector<Match>& matches, const std::string& file,
                  const Choices& choices) {
    for (const Match& match : matches) {
        const bool isMarkup = choices.hasText == 0 && match.attribute.isEmpty() != 0;
        printFound(choices.hasLines ? placeIn(file, match.node.getLine()) : "",
                   isMarkup ? markupOf(match.node, file) : valueOf(match).toUtf8());
    }
}

// Whether the answer is true, as a set is that holds something.
bool select(const PelDOMDocument& document, const std::string& file, const Choices& choices) {
    const PelDOMXPath& path = choices.select;
    const std::string place = choices.hasLines ? placeIn(file, 0) : "";
    if (path.getType() != PelDOMXPath::NODES) {
        const PelString value = path.evaluateString(document);
        throwMessage(path, file);
        printFound(place, value.toUtf8());
        return path.evaluateBoolean(document);
    }
    const std::vector<Match> matches = findMatches(path, document, file);
    if (choices.hasCount != 0)
        std::cout << place << matches.size() << "\n";
    else
        printMatches(matches, file, choices);
    return !matches.empty();
}

// As grep ends: trouble with one file outweighs what was found in others.
int selectAll(Choices& choices, char** first, char** end) {
    choices.reader.setKeepSource(choices.hasLines);
    bool hasMatch = false;
    bool hasTrouble = false;
    for (char** file = first; file != end && std::cout; ++file) {
        const PelDOMDocument document = read(choices.reader, *file);
        try {
            hasMatch = (document && select(document, *file, choices)) || hasMatch;
            hasTrouble = hasTrouble || !document;
        } catch (const std::runtime_error& error) {
            std::cerr << error.what() << "\n";
            hasTrouble = true;
        }
    }
    return hasTrouble ? trouble : hasMatch ? good : bad;
}

int checkAll(Choices& choices, char** first, char** end) {
    bool areAllGood = true;
    for (char** file = first; file != end && std::cout; ++file)
        areAllGood =
            (choices.hasFormat != 0 ? format(*file, choices) : check(*file, choices)) && areAllGood;
    return areAllGood ? good : bad;
}

int run(Choices& choices, char** first, char** end) {
    if (!startEngine(program))
        return trouble;
    // White space that nothing takes the place of is not left out.
    choices.reader.setKeepIgnorableWhitespace(choices.select || choices.indent == 0);
    const int status =
        choices.select ? selectAll(choices, first, end) : checkAll(choices, first, end);
    PelDOMUtilites::releaseUtilities();
    return status;
}

// What is wrong with choices that do not go together, or null.
const char* findConflict(const Choices& choices, char** first, char** end) {
    const bool hasWriting =
        choices.isInPlace != 0 || choices.indent || choices.encoding || choices.output;
    if (choices.hasFormat != 0 ? choices.hasOutline != 0 : hasWriting)
        return "qrndom-check: --indent, --encoding, --in-place and --output go with --format, "
               "--outline does not\n";
    if (choices.output && (choices.isInPlace != 0 || end - first > 1))
        return "qrndom-check: --output takes one FILE, and no --in-place\n";
    const bool hasPrinting = choices.hasText != 0 || choices.hasCount != 0 || choices.hasLines;
    if (choices.select ? choices.hasFormat != 0 || choices.hasOutline != 0 : hasPrinting)
        return "qrndom-check: --text, --count and -n go with --select, --format and --outline do "
               "not\n";
    if (choices.hasCount != 0 &&
        (choices.hasText != 0 || choices.select.getType() != PelDOMXPath::NODES))
        return "qrndom-check: --count takes an expression that gives nodes, and no --text\n";
    for (; choices.isInPlace != 0 && first != end; ++first)
        if (std::string_view(*first) == "-")
            return "qrndom-check: the standard input has no place\n";
    return nullptr;
}

} // namespace

int main(int argc, char** argv) {
    enum { isSet, indent, encoding, noValidate, alwaysValidate, noExternal, refuseDoctype, select };
    Choices choices;
    const option options[] = {{"outline", no_argument, &choices.hasOutline, 1},
                              {"format", no_argument, &choices.hasFormat, 1},
                              {"select", required_argument, nullptr, select},
                              {"text", no_argument, &choices.hasText, 1},
                              {"count", no_argument, &choices.hasCount, 1},
                              {"line-number", no_argument, nullptr, 'n'},
                              {"indent", required_argument, nullptr, indent},
                              {"encoding", required_argument, nullptr, encoding},
                              {"in-place", no_argument, &choices.isInPlace, 1},
                              {"output", required_argument, nullptr, 'o'},
                              {"no-validate", no_argument, nullptr, noValidate},
                              {"always-validate", no_argument, nullptr, alwaysValidate},
                              {"no-external", no_argument, nullptr, noExternal},
                              {"refuse-doctype", no_argument, nullptr, refuseDoctype},
                              {"help", no_argument, nullptr, 'h'},
                              {"version", no_argument, nullptr, 'V'},
                              {nullptr, 0, nullptr, 0}};
    for (int one = 0; (one = getopt_long(argc, argv, "no:hV", options, nullptr)) != -1;) {
        switch (one) {
        case isSet:
            break;
        case select:
            choices.select = PelDOMXPath(optarg);
            if (!choices.select)
                return complain("qrndom-check: --select: " + choices.select.getMessage().toUtf8() +
                                "\n");
            break;
        case 'n':
            choices.hasLines = true;
            break;
        case indent:
            choices.indent = parseIndent(optarg);
            if (!choices.indent)
                return complain("qrndom-check: --indent takes a number from 0 to 80\n");
            break;
        case encoding:
            choices.encoding = optarg;
            break;
        case 'o':
            if (std::string_view(optarg) != "-")
                choices.output = optarg;
            break;
        case noValidate:
            choices.reader.setValidation(PelDOMReader::NEVER);
            break;
        case alwaysValidate:
            choices.reader.setValidation(PelDOMReader::ALWAYS);
            break;
        case noExternal:
            choices.reader.setExternalEntities(false);
            break;
        case refuseDoctype:
            choices.reader.setDocumentType(PelDOMReader::REFUSE);
            break;
        case 'h':
            std::cout << usage << "\n" << help;
            return finish(program, good);
        case 'V':
            std::cout << "qrndom-check " QRNDOM_VERSION "\n"
                      << PelDOMUtilites::describeEngine() << "\n";
            return finish(program, good);
        default:
            return complain("");
        }
    }
    char** const first = argv + optind;
    char** const end = argv + argc;
    if (first == end)
        return complain("");
    if (const char* conflict = findConflict(choices, first, end))
        return complain(conflict);
    return finish(program, run(choices, first, end));
}
