// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesValidator.h"

#include "read/input/PelXercesReadMemory.h"

#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDGrammar.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

using xercesc::ContentSpecNode;
using xercesc::DTDElementDecl;
using xercesc::XMLAttDef;
using xercesc::XMLString;
using Work = PelXercesReadLimits::Work;

namespace {

std::size_t countTokens(std::u16string_view list) {
    return static_cast<std::size_t>(std::count(list.begin(), list.end(), u' ')) + 1;
}

/// What the engine has to do to make an automaton of a content model and to look names up in it.
struct ModelCost {
    std::size_t leaves;  ///< Names, as often as they occur.
    std::size_t names;   ///< Different names.
    std::uint64_t steps; ///< What is done but for the automaton's states.
    std::size_t stepsPerState;
};

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

// The engine compares each leaf's name with those of all others. It keeps sets of leaves as bits,
// one for each part, and unites them: for each leaf that can come before another, and in each state
// for each name.
ModelCost costOf(const ContentSpecNode& model) {
    const Parts parts = partsOf(&model, SIZE_MAX);
    std::unordered_set<std::u16string_view> different;
    std::vector<Part> done;
    std::size_t leaves = 0;
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
    const std::size_t names = different.size();
    const std::uint64_t steps = std::uint64_t{leaves} * (std::uint64_t{names} * 10 + characters) +
                                std::uint64_t{unions} * (20 + leaves / 16);
    return {leaves, names, steps, names * (50 + leaves / 25)};
}

} // namespace

std::size_t PelXercesValidator::countParts(const ContentSpecNode* model, std::size_t enough) {
    return partsOf(model, enough).size();
}

void PelXercesValidator::setGrammar(xercesc::Grammar* grammar) {
    memory.getNames().setGrammar(grammar);
    DTDValidator::setGrammar(grammar);
}

// Here the engine looks for each value of a list in the rest of it.
void PelXercesValidator::preContentValidation(bool isReused, bool isToValidateDefaults) {
    auto elements = static_cast<xercesc::DTDGrammar*>(getGrammar())->getElemEnumerator();
    while (elements.hasMoreElements()) {
        const xercesc::XMLAttDefList& list = elements.nextElement().getAttDefList();
        for (XMLSize_t i = 0; i < list.getAttDefCount(); ++i)
            if (const XMLCh* const values = list.getAttDef(i).getEnumeration())
                memory.getLimits().addWork(Work::values,
                                           countTokens(values) * XMLString::stringLen(values) / 2);
    }
    DTDValidator::preContentValidation(isReused, isToValidateDefaults);
}

// The engine looks through the list for each of the values.
void PelXercesValidator::validateAttrValue(const XMLAttDef* attribute, const XMLCh* value,
                                           bool isBeforeContent,
                                           const xercesc::XMLElementDecl* element) {
    const XMLCh* const values = attribute->getEnumeration();
    if (values != nullptr && *values != 0)
        memory.getLimits().addWork(Work::values, std::uint64_t{countTokens(value)} *
                                                     XMLString::stringLen(values));
    const XMLAttDef::AttTypes type = attribute->getType();
    if (type == XMLAttDef::ID || type == XMLAttDef::IDRef || type == XMLAttDef::IDRefs)
        memory.getNames().addIds(*getScanner()->getIDRefList(), value);
    DTDValidator::validateAttrValue(attribute, value, isBeforeContent, element);
}

// The engine looks for each child among the names of the model.
bool PelXercesValidator::checkContent(xercesc::XMLElementDecl* element, xercesc::QName** children,
                                      XMLSize_t childCount, XMLSize_t* failingChild) {
    constexpr std::size_t few = 16;
    const std::size_t count = leavesOf(static_cast<DTDElementDecl&>(*element));
    if (count > few)
        for (XMLSize_t i = 0; i < childCount; ++i)
            memory.getLimits().addWork(
                Work::content,
                std::uint64_t{count} * (4 + XMLString::stringLen(children[i]->getRawName()) / 4));
    return DTDValidator::checkContent(element, children, childCount, failingChild);
}

// The number of a model's leaves. The first time, the engine makes what it needs of the model.
std::size_t PelXercesValidator::leavesOf(DTDElementDecl& element) {
    const auto [entry, isNew] = leaves.try_emplace(&element, 0);
    const ContentSpecNode* const model = element.getContentSpec();
    if (!isNew || model == nullptr)
        return entry->second;
    const ModelCost cost = costOf(*model);
    entry->second = cost.leaves;
    if (element.getModelType() == DTDElementDecl::Children) {
        PelXercesReadLimits& limits = memory.getLimits();
        limits.addWork(Work::models, cost.steps);
        // A state leads on by each name and, for the engine, by the end.
        limits.expectStates((cost.names + 1) * sizeof(unsigned), cost.stepsPerState);
        memory.setCleared(true); // when that fails, the engine deletes what it did not come to fill
        element.getContentModel();
        memory.setCleared(false);
        limits.expectStates(0, 0);
    }
    return cost.leaves;
}
