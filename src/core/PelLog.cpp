// SPDX-License-Identifier: MIT
#include "core/PelLog.h"

#include "core/PelPlatform.h"

#include <qrndom/PelDOM.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

const int PelLog::mode = QRNDOM_LOG_MODE;
const std::size_t PelLog::limit = QRNDOM_LOG_LIMIT;

namespace {

constexpr std::string_view limitNotice = "The log is full: further lines are dropped.\n";

/// The log file: open from the library's load to its unload, and failed for good after the first
/// write that fails.
///
/// It needs no destructor: what is destroyed when the log is closed already may still call it.
class LogFile {
public:
    LogFile() : file(PelPlatform::openLog(QRNDOM_LOG_FILE)) {}
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// Drops all further lines.
    void close() noexcept {
        hasFailed = true;
        if (file != PelPlatform::noLog)
            PelPlatform::closeLog(file);
    }

    bool takesLines() const noexcept {
        return file != PelPlatform::noLog && !hasFailed && size <= room;
    }

    // One caller alone meets the line that no longer fits, and writes the notice in its place.
    void append(const std::string& line) noexcept {
        if (!takesLines())
            return;
        const std::size_t before = size.fetch_add(line.size());
        if (before > room)
            return;
        const bool fits = line.size() <= room - before;
        if (!PelPlatform::appendToLog(file, fits ? line : limitNotice))
            hasFailed = true;
    }

private:
    static constexpr std::size_t room = QRNDOM_LOG_LIMIT - limitNotice.size();
    static_assert(QRNDOM_LOG_LIMIT >= limitNotice.size(), "not even the notice fits");

    const int file;
    std::atomic<bool> hasFailed{false};
    std::atomic<std::size_t> size{0}; // with the first line that did not fit
};

static_assert(std::is_trivially_destructible_v<LogFile>);

LogFile& errorLog() {
    static LogFile log;
    return log;
}

// Before all other objects of the library and, where it is part of a program, of the program are
// made; and after they have been destroyed.
[[gnu::constructor(101)]] void openAtLoad() {
    errorLog();
}

[[gnu::destructor(101)]] void closeAtUnload() {
    errorLog().close();
}

} // namespace

void PelDOM::error(const PelString& message, const void* context) noexcept {
    const bool withContext = PelLog::mode == 3 || (PelLog::mode == 2 && context != nullptr);
    const bool plain = PelLog::mode == 1 && context == nullptr;
    if (!withContext && !plain)
        return;
    try {
        std::string line;
        if (withContext)
            line = std::to_string(reinterpret_cast<std::uintptr_t>(context)) + ':';
        line += message.toUtf8();
        line += '\n';
        errorLog().append(line);
    } catch (...) {
        // A line that cannot be built is dropped like one that cannot be written.
    }
}

bool PelLog::takesMessages() noexcept {
    return (mode == 1 || mode == 3) && errorLog().takesLines();
}

void PelLog::write(const char16_t* message, const void* object) noexcept {
    try {
        PelDOM::error(PelString(message), object);
    } catch (...) {
        // As above.
    }
}
