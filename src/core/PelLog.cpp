// SPDX-License-Identifier: MIT
#include "core/PelLog.h"

#include "core/PelPlatform.h"

#include <qrndom/PelDOM.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <type_traits>

const int PelLog::mode = QRNDOM_LOG_MODE;

namespace {

constexpr std::string_view limitNotice = "The log is full: further lines are dropped.\n";
constexpr std::string_view leftOutNotice = "A line is left out: the log has no room for it.\n";

/// The lines that wait to be written.
///
/// A child process finds all of it zero: no lines, which are its parent's to write, and a lock that
/// nobody holds. So it fills whole pages.
struct alignas(4096) WaitingLines {
    std::mutex lock; // of all that changes in the log
    std::size_t length = 0;
    std::array<char, 4096 - sizeof(std::mutex) - sizeof(std::size_t)> bytes{};
};

static_assert(sizeof(WaitingLines) == 4096);

WaitingLines waiting;

/// The log file: open from the library's load to its unload, and failed for good after the first
/// write that fails.
///
/// It needs no destructor: what is destroyed when the log is closed already may still call it.
class LogFile {
public:
    LogFile()
        : file(PelPlatform::openLog(QRNDOM_LOG_FILE)),
          mayLinesWait(PelPlatform::emptyInChildren(&waiting, sizeof waiting)) {}
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// Drops all further lines.
    void close() {
        const std::lock_guard<std::mutex> guard(waiting.lock);
        writeWaiting();
        hasFailed = true;
        if (file != PelPlatform::noLog)
            PelPlatform::closeLog(file);
    }

    bool takesLines() const noexcept {
        return file != PelPlatform::noLog && !hasFailed && size <= room;
    }

    /// Whether it takes a line of that length. If not, it says so itself.
    bool takesLine(std::size_t length) {
        if (length == 0 || !takesLines())
            return takesLines();
        const std::lock_guard<std::mutex> guard(waiting.lock);
        return fits(length);
    }

    void append(std::string_view line, bool mayWait) {
        if (!takesLines())
            return;
        const std::lock_guard<std::mutex> guard(waiting.lock);
        if (!fits(line.size()))
            return;
        add(line);
        if (!mayWait || !mayLinesWait)
            writeWaiting();
    }

    void flush() {
        if (!takesLines())
            return;
        const std::lock_guard<std::mutex> guard(waiting.lock);
        writeWaiting();
    }

private:
    static constexpr std::size_t room = QRNDOM_LOG_LIMIT - limitNotice.size();
    static_assert(QRNDOM_LOG_LIMIT >= limitNotice.size(), "not even the notice fits");

    // A line that is long for what is left does not end the log: shorter ones still fit.
    bool fits(std::size_t length) {
        if (!takesLines())
            return false;
        const std::size_t left = room - size;
        if (length <= left)
            return true;
        if (leftOutNotice.size() < length && leftOutNotice.size() <= left) {
            add(leftOutNotice);
        } else {
            add(limitNotice);
            size = room + 1;
        }
        writeWaiting();
        return false;
    }

    void add(std::string_view line) {
        size += line.size();
        if (line.size() > waiting.bytes.size() - waiting.length)
            writeWaiting();
        if (line.size() > waiting.bytes.size()) {
            write(line);
            return;
        }
        std::memcpy(&waiting.bytes[waiting.length], line.data(), line.size());
        waiting.length += line.size();
    }

    void writeWaiting() {
        if (waiting.length > 0)
            write({waiting.bytes.data(), waiting.length});
        waiting.length = 0;
    }

    void write(std::string_view lines) {
        if (!hasFailed && !PelPlatform::appendToLog(file, lines))
            hasFailed = true;
    }

    const int file;
    const bool mayLinesWait;
    std::atomic<bool> hasFailed{false};
    std::atomic<std::size_t> size{0}; // beyond the room: it is full
};

static_assert(std::is_trivially_destructible_v<LogFile> &&
              std::is_trivially_destructible_v<WaitingLines>);

LogFile& errorLog() {
    static LogFile log;
    return log;
}

// Before all other objects of the library and, where it is part of a program, of the program are
// made; and after they have been destroyed.
[[gnu::constructor(101)]] void openAtLoad() {
    errorLog();
    // Nothing is destroyed by such an end. Where it cannot be watched, what waits is lost by it.
    static_cast<void>(std::at_quick_exit([] { PelLog::flush(); }));
}

[[gnu::destructor(101)]] void closeAtUnload() {
    errorLog().close();
}

bool isRecorded(const void* context) {
    return PelLog::mode == 3 || PelLog::mode == (context != nullptr ? 2 : 1);
}

void append(std::string_view message, const void* context, bool mayWait) {
    std::string line;
    if (PelLog::mode >= 2)
        line = std::to_string(reinterpret_cast<std::uintptr_t>(context)) + ':';
    line += message;
    line += '\n';
    errorLog().append(line, mayWait);
}

} // namespace

void PelDOM::error(const PelString& message, const void* context) noexcept {
    try {
        if (isRecorded(context))
            append(message.toUtf8(), context, false);
    } catch (...) {
        // A line that cannot be built is dropped like one that cannot be written.
    }
}

bool PelLog::takesMessages(std::size_t length) noexcept {
    return isRecorded(nullptr) && errorLog().takesLine(length);
}

void PelLog::gather(std::string_view message) noexcept {
    try {
        if (isRecorded(nullptr))
            append(message, nullptr, true);
    } catch (...) {
        // As above.
    }
}

void PelLog::flush() noexcept {
    errorLog().flush();
}

void PelLog::write(const char16_t* message, const void* object) noexcept {
    try {
        PelDOM::error(PelString(message), object);
    } catch (...) {
        // As above.
    }
}
