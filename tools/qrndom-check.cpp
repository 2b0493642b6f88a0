// SPDX-License-Identifier: MIT
//
// Reads files as the library reads them and says what is wrong with them, a line for each error
// and warning; or writes them anew, indented. The manual page tells more.

#include "../examples/outline.h"

#include <qrndom/QRNDOM.h>

#include <charconv>
#include <getopt.h>
#include <iostream>
#include <optional>
#include <string_view>
#include <system_error>

namespace {

enum Status { good, refused, misused };

constexpr int widestIndent = 80;

constexpr char usage[] = "usage: qrndom-check [--outline] [--] FILE...\n"
                         "       qrndom-check --format [--indent N] [--in-place] [--] FILE...\n";

constexpr char help[] =
    "Says what keeps the QRNDOM library from reading XML files: file:line:column: message.\n"
    "A FILE of - is the standard input.\n"
    "\n"
    "  --outline    also print what is in those that can be read\n"
    "  --format     write each anew, in UTF-8, to the standard output\n"
    "  --indent N   indent each level by N spaces, 0 to 80 (2); 0 adds nothing\n"
    "  --in-place   replace the files themselves, each whole or not at all\n"
    "  --help       print this\n"
    "  --version    print the version\n"
    "\n"
    "Exits with 0 when all is good, 1 when a file cannot be read or replaced, 2 for a wrong\n"
    "call or when the standard output cannot be written.\n";

struct Choices {
    bool hasOutline = false;
    bool hasFormat = false;
    bool isInPlace = false;
    std::optional<int> indent;
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

// The document, null when it is refused; what there is to say about it goes to `messages`.
PelDOMDocument read(const std::string& file, std::ostream& messages) {
    PelDOMReader reader;
    PelDOMDocument document =
        file == "-" ? reader.readStream(std::cin, file) : reader.readFile(file);
    for (const PelDOMMessage& message : reader.getMessages())
        messages << message.toLine() << (message.isError ? "" : " (warning)") << "\n";
    return document;
}

bool check(const std::string& file, bool hasOutline) {
    const PelDOMDocument document = read(file, std::cout);
    if (document && hasOutline)
        printOutline(document.getDocumentElement());
    return static_cast<bool>(document);
}

bool format(const std::string& file, const Choices& choices) {
    const PelDOMDocument document = read(file, std::cerr);
    if (!document)
        return false;
    PelDOMWriter writer;
    writer.setIndent(choices.indent.value_or(2));
    const PelDOM::Error outcome = choices.isInPlace ? writer.writeFile(document, file)
                                                    : writer.writeStream(document, std::cout);
    // The stream's own failure is told at the end.
    const bool isWritten = outcome == PelDOM::SUCCESS || !std::cout;
    if (!isWritten)
        std::cerr << (choices.isInPlace ? "" : file + ": ") << writer.getMessage() << "\n";
    return isWritten;
}

int run(const Choices& choices, char** first, char** end) {
    if (PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES)->init() != PelDOM::SUCCESS) {
        std::cerr << "qrndom-check: the engine does not start\n";
        return misused;
    }
    bool areAllGood = true;
    for (char** file = first; file != end && std::cout; ++file)
        areAllGood =
            (choices.hasFormat ? format(*file, choices) : check(*file, choices.hasOutline)) &&
            areAllGood;
    PelDOMUtilites::releaseUtilities();
    return areAllGood ? good : refused;
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
    enum { outline, formatting, indent, inPlace, showHelp, showVersion };
    constexpr option options[] = {{"outline", no_argument, nullptr, outline},
                                  {"format", no_argument, nullptr, formatting},
                                  {"indent", required_argument, nullptr, indent},
                                  {"in-place", no_argument, nullptr, inPlace},
                                  {"help", no_argument, nullptr, showHelp},
                                  {"version", no_argument, nullptr, showVersion},
                                  {nullptr, 0, nullptr, 0}};
    Choices choices;
    for (int one = 0; (one = getopt_long(argc, argv, "", options, nullptr)) != -1;) {
        switch (one) {
        case outline:
            choices.hasOutline = true;
            break;
        case formatting:
            choices.hasFormat = true;
            break;
        case indent:
            choices.indent = parseIndent(optarg);
            if (!choices.indent)
                return complain("qrndom-check: --indent takes a number from 0 to 80\n");
            break;
        case inPlace:
            choices.isInPlace = true;
            break;
        case showHelp:
            std::cout << usage << "\n" << help;
            return finish(good);
        case showVersion:
            std::cout << "qrndom-check " QRNDOM_VERSION "\n";
            return finish(good);
        default:
            return complain("");
        }
    }
    if (optind == argc)
        return complain("");
    if (choices.hasFormat ? choices.hasOutline : choices.isInPlace || choices.indent)
        return complain(
            "qrndom-check: --indent and --in-place go with --format, --outline does not\n");
    for (int i = optind; choices.isInPlace && i < argc; ++i)
        if (std::string_view(argv[i]) == "-")
            return complain("qrndom-check: the standard input has no place\n");
    return finish(run(choices, argv + optind, argv + argc));
}
