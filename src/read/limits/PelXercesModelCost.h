// SPDX-License-Identifier: MIT
#pragma once

#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <cstddef>
#include <cstdint>

/// What the engine has to do to make an automaton of a content model and to look names up in it, in
/// steps of about a nanosecond.
struct PelXercesModelCost {
    /// Of a model that has any parts.
    explicit PelXercesModelCost(const xercesc::ContentSpecNode& model);

    /// The parts of a model: names, groups, ?, *, + and separators; none of no model. Stops at
    /// `enough`.
    static std::size_t countParts(const xercesc::ContentSpecNode* model, std::size_t enough);

    std::size_t leaves = 0;  ///< Names, as often as they occur.
    std::size_t names = 0;   ///< Different names.
    std::uint64_t steps = 0; ///< What is done but for the automaton's states.
    std::size_t stepsPerState = 0;
};
