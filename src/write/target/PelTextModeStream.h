// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <fstream>
#include <ostream>
#include <streambuf>
#include <string>

/// A file opened for writing, created or emptied. In text mode, each line feed is stored as CR LF,
/// on every system.
class PelTextModeStream final : public std::ostream {
public:
    /// A file that cannot be opened leaves a failed stream, which takes what it is given and stores
    /// nothing.
    explicit PelTextModeStream(const PelString& name);

    /// Off until it is set: the bytes are stored as they are.
    void setTextMode(bool isText) { buffer.isText = isText; }

    /// Whether everything has arrived in the file, which is closed.
    bool close();

    /// The system's number of the first error.
    int getError() const { return buffer.error; }

private:
    class Buffer final : public std::streambuf {
    public:
        bool isText = false;
        std::filebuf file;
        int error = 0;

        /// Keeps the reason of the first failure.
        bool check(bool isGood);

    protected:
        int_type overflow(int_type character) override;
        std::streamsize xsputn(const char* bytes, std::streamsize count) override;
        int sync() override;

    private:
        bool store(const char* bytes, std::streamsize count);

        std::string converted; // kept for its room
    };

    Buffer buffer;
};
