// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <locale.h>
#include <memory>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Emptying is left until the file is known to be ours: the path may lie in a shared directory.
bool isOwnRegularFile(int file) {
    struct stat status = {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
           status.st_nlink == 1;
}

bool isOfKind(int file, PelPlatform::InputFile::Kind kind) {
    struct stat status = {};
    return fstat(file, &status) == 0 &&
           (kind == PelPlatform::InputFile::Kind::regularFile ? S_ISREG(status.st_mode)
                                                              : !S_ISDIR(status.st_mode));
}

} // namespace

int PelPlatform::openLog(const char* path) noexcept {
    // Without O_NONBLOCK, a FIFO at the path would block the load of the library.
    const int file =
        open(path, O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY,
             S_IRUSR | S_IWUSR);
    if (file < 0)
        return noLog;
    if (isOwnRegularFile(file) && fchmod(file, S_IRUSR | S_IWUSR) == 0 && ftruncate(file, 0) == 0)
        return file;
    close(file);
    return noLog;
}

bool PelPlatform::appendToLog(int log, std::string_view line) noexcept {
    ssize_t written = 0;
    do {
        written = write(log, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
    return written >= 0 && static_cast<std::size_t>(written) == line.size();
}

void PelPlatform::closeLog(int log) noexcept {
    close(log);
}

std::string PelPlatform::fileSystemName(const PelString& name) {
    const std::string utf8 = name.toUtf8();
    return utf8.substr(0, utf8.find('\0'));
}

std::size_t PelPlatform::regularFileSize(const std::string& path) noexcept {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
               ? static_cast<std::size_t>(status.st_size)
               : 0;
}

// Only the opening must not wait: reads from a pipe wait for what its writer has to say.
PelPlatform::InputFile::InputFile(const std::string& path, Kind kind) noexcept
    : file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
    if (file < 0 || (isOfKind(file, kind) && fcntl(file, F_SETFL, 0) == 0))
        return;
    close(file);
    file = -1;
}

PelPlatform::InputFile::~InputFile() {
    if (file >= 0)
        close(file);
}

long PelPlatform::InputFile::read(void* memory, std::size_t wanted) noexcept {
    std::size_t count = 0;
    while (count < wanted) {
        const ssize_t piece = ::read(file, static_cast<char*>(memory) + count, wanted - count);
        if (piece == 0)
            break;
        if (piece > 0)
            count += static_cast<std::size_t>(piece);
        else if (errno != EINTR)
            return -1;
    }
    return static_cast<long>(count);
}

PelString PelPlatform::currentDirectory() {
    const std::unique_ptr<char, decltype(&std::free)> path(getcwd(nullptr, 0), &std::free);
    return PelString(path.get());
}

void PelPlatform::willBeFilled(void* memory, std::size_t size) noexcept {
#ifdef MADV_POPULATE_WRITE
    // Whole pages only; a system that cannot do it says so, and nothing is lost.
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* begin = memory;
    std::size_t room = size;
    if (std::align(page, page, begin, room) != nullptr)
        madvise(begin, room & ~(page - 1), MADV_POPULATE_WRITE);
#endif
}

// glibc keeps its "C" locale object in static storage: nothing is allocated here, nothing to free.
PelPlatform::ClassicNumbers::ClassicNumbers() noexcept
    : previous(uselocale(newlocale(LC_ALL_MASK, "C", nullptr))) {
}

PelPlatform::ClassicNumbers::~ClassicNumbers() {
    uselocale(static_cast<locale_t>(previous));
}
