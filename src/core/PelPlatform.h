// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <cstddef>
#include <string>
#include <string_view>

/// What differs from one operating system to the next. Another system is another source file.
namespace PelPlatform {

constexpr int noLog = -1;

/// Opens and empties the log file at `path`, readable by its owner only and closed on exec.
/// Gives `noLog` where that cannot be done on a regular file of the caller's own: symbolic
/// links, files with a second name, devices and other people's files are refused untouched.
int openLog(const char* path) noexcept;

/// Appends whole lines in one write; false when not all of them were written.
bool appendToLog(int log, std::string_view lines) noexcept;

void closeLog(int log) noexcept;

/// A file name as the file system takes it: UTF-8, whatever the locale.
std::string fileSystemName(const PelString& name);

/// The size of a regular file; 0 for an empty one, for one that only makes its bytes when it is
/// read, and for what is none.
std::size_t regularFileSize(const std::string& path) noexcept;

/// A file open for reading.
class InputFile {
public:
    /// A regular file is one that holds its bytes: none that a kernel makes up, as in /proc.
    /// Nothing else is opened for it, not even for a moment.
    enum class Kind { regularFile, anyButFolder };

    /// Never waits: a FIFO that nobody writes to is an empty file.
    InputFile(const std::string& path, Kind kind) noexcept;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool isOpen() const noexcept { return file >= 0; }

    /// As many bytes as are wanted, fewer at the end; -1 for an error.
    long read(void* memory, std::size_t wanted) noexcept;

private:
    int file;
};

/// What an error number of the system means, in English.
std::string errorText(int error);

/// Why such a file cannot be read, in a few words: "no such file".
PelString whyUnreadable(const std::string& path, InputFile::Kind kind);

/// The process's current directory; empty when it is gone.
PelString currentDirectory();

/// What the calling thread has taken of the processor so far, in seconds.
double processorTime() noexcept;

/// How many bytes the calling thread's stack can still grow by.
std::size_t stackLeft() noexcept;

/// Says that new memory is about to be filled whole, so that the system may bring its pages in
/// at once and not one fault at a time.
void willBeFilled(void* memory, std::size_t size) noexcept;

/// Has every child process that is made from now on find zeros in memory that is static and
/// fills whole pages. False, and nothing changed, where the system cannot do that.
bool emptyInChildren(void* memory, std::size_t size) noexcept;

/// While it lives, the calling thread's numbers are read and printed as in the "C" locale.
class ClassicNumbers {
public:
    ClassicNumbers() noexcept;
    ~ClassicNumbers();
    ClassicNumbers(const ClassicNumbers&) = delete;
    ClassicNumbers& operator=(const ClassicNumbers&) = delete;

private:
    void* previous;
};

} // namespace PelPlatform
