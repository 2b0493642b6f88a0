// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/// A file that is written whole or not at all: what is written goes to a temporary file in the same
/// folder, which takes the file's place when it is complete. Where there is nothing to replace
/// (devices, pipes), or a replacement would part the file from its other names, it is written in
/// place.
class PelPlatformReplacement {
public:
    /// Looks what there is at `path`, and changes nothing.
    explicit PelPlatformReplacement(const std::string& path);

    /// Takes the temporary file away, unless it has found its place.
    ~PelPlatformReplacement();

    PelPlatformReplacement(const PelPlatformReplacement&) = delete;
    PelPlatformReplacement& operator=(const PelPlatformReplacement&) = delete;

    bool isInPlace() const noexcept { return kind == Kind::inPlace; }

    /// Each of these says whether it went well. After one that did not, none may follow.
    bool open();
    bool write(const char* bytes, std::size_t count);

    /// Brings everything to the disk and the new file into the old one's place.
    bool complete();

    /// After that went well: whether the folder has kept its new entry on the disk, too.
    bool isSurelyInPlace() const noexcept { return isFolderSynced; }

    /// What did not go well, for people.
    std::string getErrorText() const;

private:
    enum class Kind { unusable, absent, replaced, inPlace };

    Kind find(std::string path);
    bool enter(const std::string& path);
    Kind judge();
    Kind unusable(int code);
    bool openTemporary();
    bool inherit();
    bool fail();

    int folder; // that the file is in, behind all links
    int file;
    int error = 0;
    bool isTemporaryMissing = false;
    bool isFolderSynced = true;
    std::string name;
    std::string temporary; // empty: there is none
    unsigned mode = 0;     // of the old file, with its owner and group
    unsigned owner = 0;
    unsigned group = 0;
    Kind kind; // the last: finding it out sets others
};
