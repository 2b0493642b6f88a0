// SPDX-License-Identifier: MIT
#include "read/parse/PelXercesValidator.h"

#include "read/input/PelXercesReadMemory.h"
#include "read/limits/PelXercesModelCost.h"

#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDGrammar.hpp>

#include <algorithm>
#include <cstdint>
#include <string_view>

using xercesc::DTDElementDecl;
using xercesc::XMLAttDef;
using xercesc::XMLString;
using Work = PelXercesReadLimits::Work;

namespace {

std::size_t countTokens(std::u16string_view list) {
    return static_cast<std::size_t>(std::count(list.begin(), list.end(), u' ')) + 1;
}

} // namespace

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
    const xercesc::ContentSpecNode* const model = element.getContentSpec();
    if (!isNew || model == nullptr)
        return entry->second;
    const PelXercesModelCost cost(*model);
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
