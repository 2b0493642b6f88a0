// SPDX-License-Identifier: MIT
//
// Sets and deletes what expressions find in a file, and leaves every other byte of it alone. The
// manual page tells more.
//
// It is a program of the library's users: it needs the public headers and the shared library.

#include "matches.h"
#include "shell.h"

#include <algorithm>
#include <cstdio>
#include <getopt.h>
#include <memory>
#include <optional>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr char program[] = "qrndom-edit";

constexpr char usage[] =
    "usage: qrndom-edit [--dry-run | --output OUT] [--] FILE [XPATH=VALUE | --delete XPATH]...\n";

constexpr char help[] =
    "Sets attributes and texts in an XML file, and leaves every other byte as it is. Says what it\n"
    "changed: file:line: <name> \"old\" -> \"new\". A FILE of - is the standard input, which goes "
    "to\n"
    "the standard output.\n"
    "\n"
    "  XPATH=VALUE            give this value to all that the expression finds: attributes, "
    "elements\n"
    "                         that hold nothing but text, texts, comments\n"
    "      --delete XPATH     take out all that the expression finds\n"
    "      --dry-run          write nothing, print the difference that it would make\n"
    "  -o, --output OUT       leave FILE alone and write to OUT, - for the standard output\n"
    "  -h, --help             print this\n"
    "  -V, --version          print the version\n"
    "\n"
    "Changes are made one after the other, all or none. Exits with 0 when all were made, 1 when "
    "an\n"
    "expression finds nothing, a value cannot be set or a file not be read or written, 2 for a\n"
    "wrong call or when the standard output cannot be written.\n";

struct Change {
    std::string expression;
    PelDOMXPath path;
    std::optional<PelString> value; // without one, what is found is deleted
};

struct Call {
    std::optional<std::string> file;
    std::optional<std::string> output;
    int isDryRun = 0; // getopt sets what is an int
    std::vector<Change> changes;
};

// Where the value begins that an expression is to get: at the first '=' outside brackets and
// quotes, of which expressions have their own.
std::size_t findEquals(std::string_view text) {
    char quote = '\0';
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char one = text[i];
        if (quote != '\0')
            quote = one == quote ? '\0' : quote;
        else if (one == '\'' || one == '"')
            quote = one;
        else if (one == '[' || one == '(')
            ++depth;
        else if (one == ']' || one == ')')
            --depth;
        else if (one == '=' && depth == 0)
            return i;
    }
    return std::string_view::npos;
}

void addChange(Call& call, const std::string& expression, const std::optional<PelString>& value) {
    const PelDOMXPath path(expression);
    if (!path)
        throw std::invalid_argument(expression + ": " + path.getMessage().toUtf8());
    if (path.getType() != PelDOMXPath::NODES)
        throw std::invalid_argument(expression + ": gives no nodes");
    call.changes.push_back({expression, path, value});
}

// The file comes first.
void addArgument(Call& call, const std::string& argument) {
    if (!call.file) {
        call.file = argument;
        return;
    }
    const std::size_t equals = findEquals(argument);
    if (equals == std::string::npos)
        throw std::invalid_argument(argument + ": no '=' and value");
    addChange(call, argument.substr(0, equals), PelString(argument.substr(equals + 1)));
}

// In one line, whatever is in it.
std::string quoted(const PelString& value) {
    std::string text = value.toUtf8();
    for (char& one : text)
        if (static_cast<unsigned char>(one) < ' ' || one == '\x7F')
            one = ' ';
    return '"' + text + '"';
}

std::string describe(const Match& match) {
    const PelDOMNode& node = match.node;
    const bool isElement = node.getNodeType() == PelDOM::ELEMENT_NODE;
    const PelDOMElement element(isElement ? node : node.getParentNode());
    std::string text =
        element.getTagName().isEmpty() != 0 ? "" : "<" + element.getTagName().toUtf8() + "> ";
    if (match.attribute.isEmpty() == 0)
        text += "@" + match.attribute.toUtf8() + " ";
    return isElement ? text : text + node.getNodeName().toUtf8() + " ";
}

// Why it cannot be done, or null. Nothing is written then, so what was done by half does not
// matter.
const char* set(const Match& match, const PelString& value) {
    PelDOMNode node = match.node;
    PelDOM::Error outcome = PelDOM::SUCCESS;
    if (match.attribute.isEmpty() == 0) {
        outcome = PelDOMElement(node).putAttribute(match.attribute, value);
    } else if (node.getNodeType() == PelDOM::ELEMENT_NODE) {
        if (PelDOMXPath("node()[not(self::text())]").evaluateBoolean(node))
            return "holds more than text";
        outcome = node.setTextContent(value);
    } else {
        const std::vector<PelDOMNode> nodes = nodesOf(node);
        outcome = node.setNodeValue(value);
        for (std::size_t i = 1; i < nodes.size(); ++i)
            node.getParentNode().removeChild(nodes[i]);
    }
    return outcome == PelDOM::SUCCESS ? nullptr : "cannot have that value";
}

const char* remove(const Match& match) {
    PelDOM::Error outcome = PelDOM::SUCCESS;
    if (match.attribute.isEmpty() == 0)
        outcome = PelDOMElement(match.node).removeAttribute(match.attribute);
    else
        for (const PelDOMNode& node : nodesOf(match.node))
            outcome = node.getParentNode().removeChild(node);
    return outcome == PelDOM::SUCCESS ? nullptr : "cannot be deleted";
}

// Makes one change everywhere; gives a line for each place.
std::string apply(const Change& change, const PelDOMDocument& document, const std::string& file) {
    const std::string where = placeIn(file, 0) + " " + change.expression;
    const std::vector<Match> matches = findMatches(change.path, document, where);
    if (matches.empty())
        throw std::runtime_error(where + ": nothing is found");
    std::string report;
    for (const Match& match : matches) {
        const std::string place = placeIn(file, match.node.getLine()) + " " + describe(match);
        const PelString old = valueOf(match);
        if (change.value && old == *change.value)
            continue;
        const char* const failure = change.value ? set(match, *change.value) : remove(match);
        if (failure != nullptr)
            throw std::runtime_error(place + failure);
        report += place +
                  (change.value ? quoted(old) + " -> " + quoted(*change.value) : "deleted") + "\n";
    }
    return report;
}

// Compares a file with bytes that stand in another. diff finds the smallest difference, and writes
// it as people and patch read it, in fewer lines than it would take here.
bool runDiff(const std::string& file, std::FILE* changed) {
    std::vector<std::string> words = {"diff", "-a", "-u", "-L", file, "-L", file, "--", file, "-"};
    std::vector<char*> arguments(words.size() + 1); // ends with a null pointer
    std::transform(words.begin(), words.end(), arguments.begin(),
                   [](std::string& word) { return word.data(); });
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fileno(changed), STDIN_FILENO);
    pid_t child = 0;
    int status = -1;
    if (posix_spawnp(&child, "diff", &actions, nullptr, arguments.data(), environ) == 0)
        waitpid(child, &status, 0);
    posix_spawn_file_actions_destroy(&actions);
    return WIFEXITED(status) && WEXITSTATUS(status) <= 1; // 1: they differ
}

int printDifference(const std::string& file, const std::string& bytes) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> changed(std::tmpfile(), std::fclose);
    if (changed && std::fwrite(bytes.data(), 1, bytes.size(), changed.get()) == bytes.size() &&
        std::fseek(changed.get(), 0, SEEK_SET) == 0 && runDiff(file, changed.get()))
        return good;
    std::cerr << program << ": diff fails\n";
    return trouble;
}

// The report is printed once it is true, unless the document takes its place.
int write(const Call& call, const PelDOMDocument& document, const std::string& report) {
    PelDOMWriter writer;
    writer.setKeepLayout(true);
    const std::string output = call.output.value_or(*call.file);
    std::string bytes;
    PelDOM::Error outcome = PelDOM::SUCCESS;
    if (call.isDryRun != 0)
        outcome = writer.writeBytes(document, bytes);
    else if (output == "-")
        outcome = writer.writeStream(document, std::cout);
    else if (call.output || !report.empty())
        outcome = writer.writeFile(document, output);
    if (writer.getMessage().isEmpty() == 0)
        std::cerr << writer.getMessage() << "\n";
    if (outcome != PelDOM::SUCCESS)
        return bad;
    if (call.isDryRun != 0)
        return printDifference(*call.file, bytes);
    if (output != "-")
        std::cout << report;
    return good;
}

int edit(const Call& call) {
    PelDOMReader reader;
    reader.setValidation(PelDOMReader::NEVER); // its type may be out of reach
    reader.setKeepSource(true);
    const PelDOMDocument document = read(reader, *call.file);
    if (!document)
        return bad;
    try {
        std::string report;
        for (const Change& change : call.changes)
            report += apply(change, document, *call.file);
        return write(call, document, report);
    } catch (const std::runtime_error& error) {
        std::cerr << error.what() << "\n";
        return bad;
    }
}

// Throws what is wrong with the call; a status where nothing is to be done.
std::optional<int> parse(int argc, char** argv, Call& call) {
    enum { isSet, inOrder = 1, deleting };
    const option options[] = {{"delete", required_argument, nullptr, deleting},
                              {"dry-run", no_argument, &call.isDryRun, 1},
                              {"output", required_argument, nullptr, 'o'},
                              {"help", no_argument, nullptr, 'h'},
                              {"version", no_argument, nullptr, 'V'},
                              {nullptr, 0, nullptr, 0}};
    // With the hyphen what is no option comes as well, as a 1, in the order of the call.
    for (int one = 0; (one = getopt_long(argc, argv, "-o:hV", options, nullptr)) != -1;) {
        switch (one) {
        case isSet:
            break;
        case inOrder:
            addArgument(call, optarg);
            break;
        case deleting:
            addChange(call, optarg, std::nullopt);
            break;
        case 'o':
            call.output = optarg;
            break;
        case 'h':
            std::cout << usage << "\n" << help;
            return good;
        case 'V':
            std::cout << program << " " QRNDOM_VERSION "\n"
                      << PelDOMUtilites::describeEngine() << "\n";
            return good;
        default:
            throw std::invalid_argument("");
        }
    }
    for (char** argument = argv + optind; argument != argv + argc; ++argument)
        addArgument(call, *argument);
    if (!call.file || call.changes.empty())
        throw std::invalid_argument("a file and a change are needed");
    if (call.isDryRun != 0 && (call.output || *call.file == "-"))
        throw std::invalid_argument("--dry-run takes a file, and no --output");
    return std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
    Call call;
    try {
        if (const std::optional<int> status = parse(argc, argv, call))
            return finish(program, *status);
    } catch (const std::invalid_argument& error) {
        if (*error.what() != '\0') // getopt has said the rest
            std::cerr << program << ": " << error.what() << "\n";
        std::cerr << usage;
        return trouble;
    }
    if (!startEngine(program))
        return trouble;
    const int status = edit(call);
    PelDOMUtilites::releaseUtilities();
    return finish(program, status);
}
