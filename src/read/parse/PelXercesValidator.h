// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/validators/DTD/DTDValidator.hpp>

#include <cstddef>
#include <unordered_map>

class PelXercesReadMemory;

/// The engine's validator of document types, which tells the read's limits what it is about to do.
class PelXercesValidator final : public xercesc::DTDValidator {
public:
    explicit PelXercesValidator(PelXercesReadMemory& readMemory) : memory(readMemory) {}

    /// The parts of a content model: names, groups, ?, *, + and separators; none of no model. Stops
    /// at `enough`.
    static std::size_t countParts(const xercesc::ContentSpecNode* model, std::size_t enough);

    void setGrammar(xercesc::Grammar* grammar) override;
    void preContentValidation(bool isReused, bool isToValidateDefaults) override;
    void validateAttrValue(const xercesc::XMLAttDef* attribute, const XMLCh* value,
                           bool isBeforeContent, const xercesc::XMLElementDecl* element) override;
    bool checkContent(xercesc::XMLElementDecl* element, xercesc::QName** children,
                      XMLSize_t childCount, XMLSize_t* failingChild) override;

private:
    std::size_t leavesOf(xercesc::DTDElementDecl& element);

    PelXercesReadMemory& memory;
    std::unordered_map<const xercesc::XMLElementDecl*, std::size_t> leaves;
};
