// SPDX-License-Identifier: MIT
#include "core/PelLog.h"

#include "core/PelPlatform.h"

#include <qrndom/PelDOM.h>

#include <atomic>
#include <cstdint>
#include <string>

const int PelLog::mode = QRNDOM_LOG_MODE;

namespace {

/// The log file: open from the library's load to its unload, and failed for good after the first
/// write that fails.
class LogFile {
public:
    LogFile() : file(PelPlatform::openLog(QRNDOM_LOG_FILE)) {}

    ~LogFile() {
        hasFailed = true;
        if (file != PelPlatform::noLog)
            PelPlatform::closeLog(file);
    }

    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    void append(const std::string& line) noexcept {
        if (file != PelPlatform::noLog && !hasFailed && !PelPlatform::appendToLog(file, line))
            hasFailed = true;
    }

private:
    const int file;
    std::atomic<bool> hasFailed{false};
};

// A load-time object that traces its own life calls in here first, and so is made after the log
// and destroyed before it, whatever the order of the library's sources.
LogFile& errorLog() {
    static LogFile log;
    return log;
}

[[maybe_unused]] const LogFile& openedAtLoad = errorLog();

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

void PelLog::write(const char16_t* message, const void* object) noexcept {
    try {
        PelDOM::error(PelString(message), object);
    } catch (...) {
        // As above.
    }
}
