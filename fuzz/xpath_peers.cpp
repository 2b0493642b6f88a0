// SPDX-License-Identifier: MIT
// Makes expressions and documents by chance, and compares what this library, libxml2 and pugixml answer.
// What they are known to answer otherwise, and why, stands below.
//
//     xpath_peers SECONDS [FIRST [COUNT]]      (expressions have numbers; from 0 on, if FIRST is not given)
//     xpath_peers --case NUMBER                (shows one, its document and all answers)
#include "xpath_trees.h"

#include <chrono>
#include <climits>
#include <map>

namespace {

enum Peer { LIBXML2, PUGIXML };

bool has(const std::string& text, std::string_view part) { return text.find(part) != text.npos; }

bool hasAnyOf(const std::string& text, std::initializer_list<std::string_view> parts) {
    return std::any_of(parts.begin(), parts.end(), [&](std::string_view part) { return has(text, part); });
}

struct Case {
    const DocumentByChance& document;
    const std::string& expression;
    const std::string& ours;
    const std::string& theirs;

    bool isRefused(std::string_view reason) const {
        return ours.compare(0, refused.size(), refused) == 0 && has(ours, reason);
    }

    // Numbers, or texts of such, that are the same but for the last digits.
    bool areClose() const {
        const std::size_t begin = ours.find(' ') + 1;
        if (ours.compare(0, begin, theirs, 0, begin) != 0) return false;
        char* ends[2];
        const double one = std::strtod(&ours[begin], &ends[0]);
        const double other = std::strtod(&theirs[begin], &ends[1]);
        return *ends[0] == 0 && *ends[1] == 0 && std::abs(one - other) <= 1e-14 * std::abs(one);
    }

    std::string texts() const { return document.merged + expression; }

    bool isAscii() const {
        const std::string all = texts();
        return std::all_of(all.begin(), all.end(), [](char byte) { return (byte & 0x80) == 0; });
    }

    bool hasLongNumber() const { return hasAnyOf(expression, {"45678", "35996", "99999", "00000"}); }

    bool writesLongNumber() const {
        return areClose() ||
               (has(expression, "string(") && (hasLongNumber() || hasAnyOf(expression, {" div ", "0.1"})));
    }

    bool asksAlong(const std::string& axis) const {
        return hasAnyOf(expression, {axis + "::", axis + " ::"});
    }

    bool asksAttributes() const { return hasAnyOf(expression, {"@", "attribute"}); }
};

struct Allowance {
    Peer peer;
    const char* reason;
    bool (*isMeant)(const Case& one);
};

// Theirs are libxml2 2.9's and pugixml 1.13's. An expression of the kind that one of them answers otherwise
// is let pass, unless both agree against this library and only one has a reason.
const Allowance allowances[] = {
    {LIBXML2, "rounds by adding a half",
        [](const Case& one) {
            return has(one.expression, "99999") && hasAnyOf(one.expression, {"round(", "substring("});
        }},
    {LIBXML2, "reads and writes numbers with 15 digits, and writes exponents",
        [](const Case& one) { return one.writesLongNumber() || one.hasLongNumber(); }},
    {LIBXML2, "takes exponents in texts for numbers, and a lone minus for 0",
        [](const Case& one) {
            return has(one.texts(), "1e1") ||
                   (has(one.texts(), "-") && hasAnyOf(one.expression, {"substring", "translate"}));
        }},
    // "1div2", "f(", "/ /" and "///"; the longest word is a name, though an operator begins it.
    {LIBXML2, "takes what the grammar has not",
        [](const Case& one) {
            return one.isRefused("is missing") || one.isRefused("a character that means nothing");
        }},
    {LIBXML2, "sees no unknown prefix, function, number of arguments or wrong type where it is not evaluated",
        [](const Case& one) {
            return one.isRefused(" stands for nothing") || one.isRefused("no function has this name") ||
                   one.isRefused("another number of arguments") || one.isRefused("only a set of nodes");
        }},
    {LIBXML2, "leaves out the children of an attribute's element on following",
        [](const Case& one) { return one.asksAlong("following") && one.asksAttributes(); }},
    {LIBXML2, "leaves out the document's first child on preceding",
        [](const Case& one) { return one.asksAlong("preceding"); }},
    {LIBXML2, "takes //. for less than descendants and self",
        [](const Case& one) { return has(one.expression, "//."); }},
    {LIBXML2, "finds no first ID behind white space",
        [](const Case& one) { return has(one.expression, "id("); }},
    {PUGIXML, "writes numbers with 16 digits", [](const Case& one) { return one.writesLongNumber(); }},
    {PUGIXML, "rounds by adding a half",
        [](const Case& one) { return has(one.expression, "99999") || has(one.expression, "35996"); }},
    {PUGIXML, "takes prefixes as written, known or not, and no default namespace",
        [](const Case& one) {
            return one.isRefused(" stands for nothing") || !one.document.hasPlainNames ||
                   (has(one.expression, "namespace-uri(") && has(one.document.merged, "xml:lang"));
        }},
    {PUGIXML, "knows no types of attributes, which part their words by one space",
        [](const Case& one) {
            return has(one.document.merged, "<!DOCTYPE") &&
                   hasAnyOf(one.document.merged, {"k=' 2 '", "k=' '"});
        }},
    {PUGIXML, "counts bytes",
        [](const Case& one) {
            return !one.isAscii() && hasAnyOf(one.expression, {"string-length", "substring(", "translate"});
        }},
    {PUGIXML, "takes sets as numbers when truth values are to be greater or less",
        [](const Case& one) { return has(one.expression, "<") || has(one.expression, ">"); }},
    {PUGIXML, "knows no language of attributes",
        [](const Case& one) { return has(one.expression, "lang(") && one.asksAttributes(); }},
};

/// Asks all three, and counts how they answer.
class Comparison {
public:
    /// False where a difference was found that is not known.
    bool run(unsigned long long number) {
        constexpr unsigned long long asksOfOne = 50;
        if (!trees || number / asksOfOne != documentNumber) {
            documentNumber = number / asksOfOne;
            trees = std::make_unique<Trees>(documentNumber);
        }
        Chance chance(ULLONG_MAX - number); // unlike that of the expression
        context = trees->ours.anyNode(chance.oneIn(2) ? chance.below(1000) : 0);
        expression = ExpressionByChance(number).get();
        ours = trees->ours.ask(expression, context);
        theirs[LIBXML2] = trees->libxml2.ask(expression, context);
        theirs[PUGIXML] = trees->pugixml.ask(expression, context);
        const std::string reasons[] = {reasonOf(LIBXML2), reasonOf(PUGIXML)};
        ++counts["libxml2 " + reasons[LIBXML2]];
        ++counts["pugixml " + reasons[PUGIXML]];
        return !reasons[LIBXML2].empty() && !reasons[PUGIXML].empty();
    }

    void show() const {
        std::cout << "  " << trees->made.sectioned << "\n  from " << context << ": " << expression
                  << "\n  this library: " << ours << "\n  libxml2:      " << theirs[LIBXML2]
                  << "\n  pugixml:      " << theirs[PUGIXML] << "\n";
    }

    void showCounts() const {
        for (const auto& [what, count] : counts) std::cout << count << " " << what << "\n";
    }

private:
    // Of its answer; empty for a difference that is not known.
    std::string reasonOf(Peer peer) const {
        if (peer == PUGIXML && has(expression, "id(")) return "has no id()";
        const Case one{trees->made, expression, ours, theirs[peer]};
        if (theirs[peer] == ours) return "answers the same";
        if (theirs[peer] == refused && one.isRefused("")) return "refuses too";
        for (const Allowance& allowance : allowances)
            if (allowance.peer == peer && allowance.isMeant(one)) return allowance.reason;
        return {};
    }

    std::unique_ptr<Trees> trees;
    unsigned long long documentNumber = 0;
    std::string expression;
    std::size_t context = 0;
    std::string ours;
    std::string theirs[2];
    std::map<std::string, std::size_t> counts;
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: xpath_peers SECONDS [FIRST [COUNT]] | --case NUMBER\n";
        return 2;
    }
    services(); // starts the engine
    Comparison comparison;
    if (std::string_view(argv[1]) == "--case" && argc > 2) {
        const bool isKnown = comparison.run(std::strtoull(argv[2], nullptr, 10));
        comparison.show();
        comparison.showCounts();
        return isKnown ? 0 : 1;
    }
    constexpr int enough = 20;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::atoll(argv[1]));
    const unsigned long long first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 0;
    const unsigned long long last = argc > 3 ? first + std::strtoull(argv[3], nullptr, 10) : ULLONG_MAX;
    unsigned long long number = first;
    int differences = 0;
    while (number < last && differences < enough && std::chrono::steady_clock::now() < end)
        if (!comparison.run(number++)) {
            std::cout << "DIFFERENCE " << number - 1 << "\n";
            comparison.show();
            ++differences;
        }
    std::cout << number - first << " expressions\n";
    comparison.showCounts();
    std::cout << differences << " differences" << std::endl;
    return differences == 0 ? 0 : 1;
}
