// SPDX-License-Identifier: MIT
#pragma once

#include <qrndom/PelString.h>

#include <cstddef>
#include <string>

/// What differs from one operating system to the next. Another system is another source file.
class PelPlatform {
public:
    static constexpr int noLog = -1;

    /// Opens and empties the log file at `path`, readable by its owner only and closed on exec.
    /// Gives `noLog` where that cannot be done on a regular file of the caller's own: symbolic
    /// links, files with a second name, devices and other people's files are refused untouched.
    static int openLog(const char* path) noexcept;

    /// Appends a whole line in one write; false when not all of it was written.
    static bool appendToLog(int log, const std::string& line) noexcept;

    static void closeLog(int log) noexcept;

    /// A file name as the file system takes it: UTF-8, whatever the locale.
    static std::string fileSystemName(const PelString& name);

    /// The process's current directory; empty when it is gone.
    static PelString currentDirectory();

    /// Says that new memory is about to be filled whole, so that the system may bring its pages in
    /// at once and not one fault at a time.
    static void willBeFilled(void* memory, std::size_t size) noexcept;

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
};
