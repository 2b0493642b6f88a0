// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <linux/magic.h>
#include <locale.h>
#include <memory>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

// Emptying is left until the file is known to be ours: the path may lie in a shared directory.
bool isOwnRegularFile(int file) {
    struct stat status = {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
           status.st_nlink == 1;
}

// Files of these are not what they are made to look like: reading some of them waits for news or
// takes it from others.
bool isOfKernel(const char* path) {
    struct statfs system = {};
    return statfs(path, &system) != 0 || system.f_type == PROC_SUPER_MAGIC ||
           system.f_type == SYSFS_MAGIC || system.f_type == DEBUGFS_MAGIC ||
           system.f_type == TRACEFS_MAGIC;
}

// Opening alone can do something to a device or to who waits for a FIFO's reader, so what a file is
// is looked at first. It must not have become another until it is open.
int openRegularFile(const char* path, int flags) {
    struct stat seen = {};
    struct stat opened = {};
    if (stat(path, &seen) != 0 || !S_ISREG(seen.st_mode) || isOfKernel(path))
        return -1;
    const int file = open(path, flags);
    if (file < 0 ||
        (fstat(file, &opened) == 0 && opened.st_dev == seen.st_dev && opened.st_ino == seen.st_ino))
        return file;
    close(file);
    return -1;
}

// Only the opening must not wait: reads from a pipe wait for what its writer has to say.
int openAnyButFolder(const char* path, int flags) {
    struct stat opened = {};
    const int file = open(path, flags);
    if (file < 0 ||
        (fstat(file, &opened) == 0 && !S_ISDIR(opened.st_mode) && fcntl(file, F_SETFL, 0) == 0))
        return file;
    close(file);
    return -1;
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

bool PelPlatform::appendToLog(int log, std::string_view lines) noexcept {
    ssize_t written = 0;
    do {
        written = write(log, lines.data(), lines.size());
    } while (written < 0 && errno == EINTR);
    return written >= 0 && static_cast<std::size_t>(written) == lines.size();
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

PelPlatform::InputFile::InputFile(const std::string& path, Kind kind) noexcept
    : file((kind == Kind::regularFile ? openRegularFile : openAnyButFolder)(
          path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
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

std::string PelPlatform::errorText(int error) {
    const char* const text = strerrordesc_np(error);
    return text != nullptr ? text : "error " + std::to_string(error);
}

PelString PelPlatform::whyUnreadable(const std::string& path, InputFile::Kind kind) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return errno == ENOENT ? "no such file" : errorText(errno).c_str();
    if (S_ISDIR(status.st_mode))
        return "is a folder";
    if (kind == InputFile::Kind::regularFile && !S_ISREG(status.st_mode))
        return "is no regular file";
    return access(path.c_str(), R_OK) != 0 && errno == EACCES ? "permission denied"
                                                              : "cannot be opened";
}

PelString PelPlatform::currentDirectory() {
    const std::unique_ptr<char, decltype(&std::free)> path(getcwd(nullptr, 0), &std::free);
    return PelString(path.get());
}

std::size_t PelPlatform::stackLeft() noexcept {
    pthread_attr_t attributes;
    void* end = nullptr;
    std::size_t size = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return 0;
    pthread_attr_getstack(&attributes, &end, &size);
    pthread_attr_destroy(&attributes);
    return static_cast<std::size_t>(reinterpret_cast<char*>(&end) - static_cast<char*>(end));
}

double PelPlatform::processorTime() noexcept {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
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

// Larger pages than the memory is made for would take along what lies beside it.
bool PelPlatform::emptyInChildren(void* memory, std::size_t size) noexcept {
#ifdef MADV_WIPEONFORK
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return reinterpret_cast<std::uintptr_t>(memory) % page == 0 && size % page == 0 &&
           madvise(memory, size, MADV_WIPEONFORK) == 0;
#else
    return false;
#endif
}

// glibc keeps its "C" locale object in static storage: nothing is allocated here, nothing to free.
PelPlatform::ClassicNumbers::ClassicNumbers() noexcept
    : previous(uselocale(newlocale(LC_ALL_MASK, "C", nullptr))) {
}

PelPlatform::ClassicNumbers::~ClassicNumbers() {
    uselocale(static_cast<locale_t>(previous));
}
