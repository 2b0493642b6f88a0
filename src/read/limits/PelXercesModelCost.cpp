// SPDX-License-Identifier: MIT
#include "read/limits/PelXercesModelCost.h"

#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

using xercesc::ContentSpecNode;

namespace {

// How many of a part's leaves can come last in it, and whether it can be empty.
struct Part {
    std::size_t last;
    bool isNullable;
};

using Parts = std::vector<const ContentSpecNode*>;

// The parts of a model, each before its own; of a large one, the first of them. Recursion would
// take as much stack as the model is deep.
Parts partsOf(const ContentSpecNode* model, std::size_t enough) {
    Parts open = {model};
    Parts parts;
    while (!open.empty() && parts.size() < enough) {
        const ContentSpecNode* const part = open.back();
        open.pop_back();
        if (part == nullptr)
            continue;
        parts.push_back(part);
        open.push_back(part->getFirst());
        open.push_back(part->getSecond());
    }
    return parts;
}

} // namespace

std::size_t PelXercesModelCost::countParts(const ContentSpecNode* model, std::size_t enough) {
    return partsOf(model, enough).size();
}

// The engine compares each leaf's name with those of all others. It keeps sets of leaves as bits,
// one for each part, and unites them: for each leaf that can come before another, and in each state
// for each name.
PelXercesModelCost::PelXercesModelCost(const ContentSpecNode& model) {
    const Parts parts = partsOf(&model, SIZE_MAX);
    std::unordered_set<std::u16string_view> different;
    std::vector<Part> done;
    std::size_t characters = 0;
    std::size_t unions = parts.size();
    for (std::size_t i = parts.size(); i-- > 0;) {
        const ContentSpecNode& part = *parts[i];
        if (part.getType() == ContentSpecNode::Leaf) {
            const std::u16string_view name = part.getElement()->getRawName();
            different.insert(name);
            characters += name.size();
            ++leaves;
            done.push_back({1, false});
            continue;
        }
        const Part last = done.back();
        if (part.getSecond() == nullptr) {
            const bool isRepeated = part.getType() != ContentSpecNode::ZeroOrOne;
            unions += isRepeated ? last.last : 0;
            done.back().isNullable =
                last.isNullable || part.getType() != ContentSpecNode::OneOrMore;
            continue;
        }
        done.pop_back();
        const Part first = done.back();
        if (part.getType() == ContentSpecNode::Sequence) {
            unions += first.last;
            done.back() = {last.last + (last.isNullable ? first.last : 0),
                           first.isNullable && last.isNullable};
        } else {
            done.back() = {first.last + last.last, first.isNullable || last.isNullable};
        }
    }
    names = different.size();
    steps = std::uint64_t{leaves} * (std::uint64_t{names} * 10 + characters) +
            std::uint64_t{unions} * (20 + leaves / 16);
    stepsPerState = names * (50 + leaves / 25);
}
