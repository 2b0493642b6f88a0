// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <streambuf>
#include <string>

/// A stream whose `write` appends to a string. What the string throws, it throws.
class PelStringStream final : public std::ostream {
public:
    explicit PelStringStream(std::string& bytes) : std::ostream(nullptr), buffer(bytes) {
        init(&buffer);
        exceptions(badbit);
    }

private:
    class Buffer final : public std::streambuf {
    public:
        explicit Buffer(std::string& target) : bytes(target) {}

    protected:
        std::streamsize xsputn(const char* run, std::streamsize count) override {
            bytes.append(run, static_cast<std::size_t>(count));
            return count;
        }

    private:
        std::string& bytes;
    };

    Buffer buffer;
};
