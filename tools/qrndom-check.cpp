// SPDX-License-Identifier: MIT
//
// Reads files as the library reads them and says what is wrong with them, a line for each error
// and warning; or writes them anew, indented. The manual page tells more.
//
// It is a program of the library's users: it needs the public headers and the shared library.

#include "../examples/outline.h"

#include <qrndom/QRNDOM.h>

#include <charconv>
#include <getopt.h>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace {

enum Status { good, refused, misused };

constexpr int widestIndent = 80;

constexpr char usage[] = "usage: qrndom-check [CHOICE...] [--outline] [--] FILE...\n"
                         "       qrndom-check [CHOICE...] --format [--indent N] [--encoding NAME]\n"
                         "                    [--in-place | --output OUT] [--] FILE...\n";

constexpr char help[] =
    "Says what keeps the QRNDOM library from reading XML files: file:line:column: message.\n"
    "A FILE of - is the standard input.\n"
    "\n"
    "      --outline          print what is in those that can be read\n"
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
    "or when the standard output cannot be written.\n";

struct Choices {
    PelDOMReader reader;
    int hasOutline = 0; // getopt sets what is an int
    int hasFormat = 0;
    int isInPlace = 0;
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

int complain(const char* what) {
    std::cerr << what << usage;
    return misused;
}

// What is about a file as a whole has no line.
void print(const PelDOMMessage& message) {
    std::cerr << (message.line > 0 ? message.toLine() : message.file + ": " + message.text)
              << (message.isError ? "" : " (warning)") << "\n";
}

// The document, null when it is refused; what there is to say about it is printed.
PelDOMDocument read(const std::string& file, Choices& choices) {
    PelDOMReader& reader = choices.reader;
    // White space that nothing takes the place of is not left out.
    reader.setKeepIgnorableWhitespace(choices.indent == 0);
    PelDOMDocument document =
        file == "-" ? reader.readStream(std::cin, file) : reader.readFile(file);
    for (const PelDOMMessage& message : reader.getMessages())
        print(message);
    return document;
}

bool check(const std::string& file, Choices& choices) {
    const PelDOMDocument document = read(file, choices);
    if (document && choices.hasOutline != 0)
        printOutline(document.getDocumentElement());
    return static_cast<bool>(document);
}

bool format(const std::string& file, Choices& choices) {
    const PelDOMDocument document = read(file, choices);
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

int run(Choices& choices, char** first, char** end) {
    if (PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES)->init() != PelDOM::SUCCESS) {
        std::cerr << "qrndom-check: the engine does not start\n";
        return misused;
    }
    bool areAllGood = true;
    for (char** file = first; file != end && std::cout; ++file)
        areAllGood =
            (choices.hasFormat != 0 ? format(*file, choices) : check(*file, choices)) && areAllGood;
    PelDOMUtilites::releaseUtilities();
    return areAllGood ? good : refused;
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
    for (; choices.isInPlace != 0 && first != end; ++first)
        if (std::string_view(*first) == "-")
            return "qrndom-check: the standard input has no place\n";
    return nullptr;
}

// The status, unless what was printed is lost.
int finish(int status) {
    if (std::cout.flush())
        return status;
    std::cerr << "qrndom-check: the standard output cannot be written\n";
    return misused;
}

} // namespace

int main(int argc, char** argv) {
    enum { isSet, indent, encoding, noValidate, alwaysValidate, noExternal, refuseDoctype };
    Choices choices;
    const option options[] = {{"outline", no_argument, &choices.hasOutline, 1},
                              {"format", no_argument, &choices.hasFormat, 1},
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
    for (int one = 0; (one = getopt_long(argc, argv, "o:hV", options, nullptr)) != -1;) {
        switch (one) {
        case isSet:
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
            return finish(good);
        case 'V':
            std::cout << "qrndom-check " QRNDOM_VERSION "\n"
                      << PelDOMUtilites::describeEngine() << "\n";
            return finish(good);
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
    return finish(run(choices, first, end));
}
