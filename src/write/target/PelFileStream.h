// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelPlatformReplacement.h"

#include <ostream>
#include <streambuf>
#include <vector>

/// A stream into a file that is being replaced. What it holds back is not there until `flush`.
class PelFileStream final : public std::ostream {
public:
    explicit PelFileStream(PelPlatformReplacement& file) : std::ostream(nullptr), buffer(file) {
        init(&buffer);
    }

private:
    class Buffer final : public std::streambuf {
    public:
        explicit Buffer(PelPlatformReplacement& target);

    protected:
        int_type overflow(int_type character) override;
        int sync() override;

    private:
        PelPlatformReplacement& file;
        std::vector<char> bytes;
    };

    Buffer buffer;
};
