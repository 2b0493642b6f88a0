// SPDX-License-Identifier: MIT
#pragma once

#include "core/PelPlatformReplacement.h"

#include <qrndom/PelString.h>

#include <cstddef>
#include <fstream>
#include <ostream>
#include <streambuf>
#include <string>

/// A stream that hands on what it is given, and fails when that does. Of its operations, only those
/// that write bytes and `flush` do something.
class PelByteStream : public std::ostream, private std::streambuf {
protected:
    PelByteStream() : std::ostream(nullptr) { init(this); }

private:
    virtual bool store(const char* bytes, std::size_t count) = 0;
    virtual bool storeRest() { return true; } ///< what `store` has kept back

    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int overflow(int byte) override;
    int sync() override { return storeRest() ? 0 : -1; }
};

/// Appends to a string. What the string throws, it throws.
class PelStringStream final : public PelByteStream {
public:
    explicit PelStringStream(std::string& target) : written(target) { exceptions(badbit); }

private:
    bool store(const char* bytes, std::size_t count) override {
        written.append(bytes, count);
        return true;
    }

    std::string& written;
};

/// Writes to a file that is being replaced. What it holds back is not there until `flush`.
class PelFileStream final : public PelByteStream {
public:
    explicit PelFileStream(PelPlatformReplacement& target) : file(target) {
        // Here, as a lack of memory in `store` would pass for a fault of the file. There is room
        // for two pieces of the encoder's.
        gathered.reserve(std::size_t{96} * 1024);
    }

private:
    bool store(const char* bytes, std::size_t count) override;
    bool storeRest() override;

    PelPlatformReplacement& file;
    std::string gathered;
};

/// Writes to a file, created or emptied. In text mode, each line feed is stored as CR LF, on every
/// system.
class PelTextModeStream final : public PelByteStream {
public:
    /// A file that cannot be opened leaves a failed stream, which takes what it is given and stores
    /// nothing.
    explicit PelTextModeStream(const PelString& name);

    /// Off until it is set: the bytes are stored as they are.
    void setTextMode(bool isWanted) { isText = isWanted; }

    /// Whether everything has arrived in the file, which is closed.
    bool close();

    /// The system's number of the first error.
    int getError() const { return error; }

private:
    bool store(const char* bytes, std::size_t count) override;
    bool storeRest() override;

    // Keeps the number of the first error.
    template <class Step>
    bool attempt(Step step);

    std::filebuf file;
    bool isText = false;
    int error = 0;
    std::string converted; // kept for its capacity
};
