// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

/// Why what the calling thread's last write by the services did not arrive whole: one line, "file:
/// reason", empty after a write that did.
class PelWriteMessage {
public:
    static PelString get();

    /// Without the name where it is empty.
    static void set(const PelString& file, const PelString& reason) noexcept;

    static void clear() noexcept;
};
