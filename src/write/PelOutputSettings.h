// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// What all writes of the process share, without a lock: the output encoding, settled by the first
/// write that reaches a document and fixed from then on. It outlives the engine.
class PelOutputSettings {
public:
    /// The process's output encoding; `wanted` becomes it when there is none yet.
    static std::u16string encoding(const std::u16string& wanted);
};
