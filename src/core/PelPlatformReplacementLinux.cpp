// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"
#include "core/PelPlatformReplacement.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/limits.h>
#include <linux/magic.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr int noFile = -1;
constexpr mode_t allBits = 07777;
constexpr mode_t readAndWriteBits = 0666; // less what the process masks
constexpr int mostLinks = 40;             // as the system itself
constexpr int mostAttempts = 100;         // to find a name that is not taken

void closeAny(int file) {
    if (file >= 0)
        close(file);
}

// Links in the folder of processes lead to open files, whatever their text says.
bool isOfProcesses(int folder) {
    struct statfs status = {};
    return fstatfs(folder, &status) == 0 && status.f_type == PROC_SUPER_MAGIC;
}

// A name that nobody guesses.
std::string drawName() {
    constexpr char letters[] = "abcdefghijklmnopqrstuvwxyz234567";
    std::array<unsigned char, 16> drawn{};
    if (getrandom(drawn.data(), drawn.size(), 0) != static_cast<ssize_t>(drawn.size()))
        return {};
    std::string name = ".qrndom-";
    for (const unsigned char one : drawn)
        name += letters[one % 32];
    return name;
}

// The user's own attributes, and the list of who may do what. False when there is such a list and
// the new file did not get it.
bool copyAttributes(int from, int to) {
    std::vector<char> names(XATTR_LIST_MAX);
    std::vector<char> value(XATTR_SIZE_MAX);
    const ssize_t length = flistxattr(from, names.data(), names.size());
    const char* const end = names.data() + (length > 0 ? length : 0);
    bool isListKept = true;
    for (const char* one = names.data(); one != end; one += std::strlen(one) + 1) {
        const bool isList = std::strcmp(one, "system.posix_acl_access") == 0;
        if (!isList && std::strncmp(one, "user.", 5) != 0)
            continue;
        const ssize_t size = fgetxattr(from, one, value.data(), value.size());
        const bool isKept =
            size >= 0 && fsetxattr(to, one, value.data(), static_cast<std::size_t>(size), 0) == 0;
        isListKept = isListKept && (isKept || !isList);
    }
    return isListKept;
}

// Not everything that can be written can be synced.
bool sync(int file) {
    int result = 0;
    do {
        result = fsync(file);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}

} // namespace

PelPlatformReplacement::PelPlatformReplacement(const std::string& path)
    : folder(noFile), file(noFile), kind(find(path)) {
}

PelPlatformReplacement::~PelPlatformReplacement() {
    closeAny(file);
    if (!temporary.empty())
        unlinkat(folder, temporary.c_str(), 0);
    closeAny(folder);
}

// Follows links one by one, so that they stay and what they lead to is known, even when that is not
// there yet. The folder is held open: what becomes of its name meanwhile does not matter.
PelPlatformReplacement::Kind PelPlatformReplacement::find(std::string path) {
    for (int links = 0; links <= mostLinks; ++links) {
        const std::size_t slash = path.rfind('/');
        name = slash == path.npos ? path : path.substr(slash + 1);
        if (!enter(slash == path.npos ? "." : path.substr(0, slash + 1)))
            return unusable(errno);
        if (name.empty())
            return unusable(path.empty() ? ENOENT : EISDIR);
        if (isOfProcesses(folder))
            return Kind::inPlace;
        std::array<char, PATH_MAX> target{};
        const ssize_t length = readlinkat(folder, name.c_str(), target.data(), target.size());
        if (length < 0)
            return judge();
        path.assign(target.data(), static_cast<std::size_t>(length));
    }
    return unusable(ELOOP);
}

bool PelPlatformReplacement::enter(const std::string& path) {
    const int next = openat(folder == noFile ? AT_FDCWD : folder, path.c_str(),
                            O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (next < 0)
        return false;
    closeAny(folder);
    folder = next;
    return true;
}

PelPlatformReplacement::Kind PelPlatformReplacement::judge() {
    struct stat status = {};
    if (fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? Kind::absent : unusable(errno);
    if (S_ISDIR(status.st_mode))
        return unusable(EISDIR);
    if (!S_ISREG(status.st_mode) || status.st_nlink > 1)
        return Kind::inPlace;
    // The folder's rights would do for a replacement, but the file's are what its owner meant.
    if (faccessat(folder, name.c_str(), W_OK, AT_EACCESS) != 0)
        return unusable(errno);
    mode = status.st_mode & allBits;
    owner = status.st_uid;
    group = status.st_gid;
    return Kind::replaced;
}

PelPlatformReplacement::Kind PelPlatformReplacement::unusable(int code) {
    error = code;
    return Kind::unusable;
}

bool PelPlatformReplacement::fail() {
    error = errno;
    return false;
}

bool PelPlatformReplacement::open() {
    if (kind == Kind::unusable)
        return false;
    if (kind != Kind::inPlace)
        return openTemporary();
    // Only the opening must not wait.
    file = openat(folder, name.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    return (file >= 0 && fcntl(file, F_SETFL, 0) == 0) || fail();
}

// Until it is complete, a file that replaces another is its writer's alone.
bool PelPlatformReplacement::openTemporary() {
    const mode_t bits = kind == Kind::absent ? readAndWriteBits : S_IRUSR | S_IWUSR;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        temporary = drawName();
        if (temporary.empty())
            return fail();
        file = openat(folder, temporary.c_str(),
                      O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, bits);
        if (file >= 0)
            return true;
        if (errno != EEXIST)
            break;
    }
    temporary.clear();
    isTemporaryMissing = kind == Kind::replaced;
    return fail();
}

bool PelPlatformReplacement::write(const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = ::write(file, bytes, count);
        if (written < 0 && errno != EINTR)
            return fail();
        const std::size_t done = written > 0 ? static_cast<std::size_t>(written) : 0;
        bytes += done;
        count -= done;
    }
    return true;
}

bool PelPlatformReplacement::complete() {
    if (kind == Kind::replaced && !inherit())
        return fail();
    if (!sync(file) || close(std::exchange(file, noFile)) != 0)
        return fail();
    if (kind == Kind::inPlace)
        return true;
    if (renameat(folder, temporary.c_str(), folder, name.c_str()) != 0)
        return fail();
    temporary.clear();
    // A folder that may be written but not read cannot be synced.
    file = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    isFolderSynced = file < 0 || sync(file) || fail();
    return true;
}

// The old file's attributes, owner and permissions. Nobody gets more rights than before: those of a
// group that does not follow are cut down to everybody's.
bool PelPlatformReplacement::inherit() {
    struct stat own = {};
    if (fstat(file, &own) != 0)
        return false;
    mode_t wanted = mode;
    if (own.st_uid != owner && fchown(file, owner, static_cast<gid_t>(-1)) != 0)
        wanted &= ~static_cast<mode_t>(S_ISUID);
    bool isGroupKept = own.st_gid == group || fchown(file, static_cast<uid_t>(-1), group) == 0;
    const int old =
        openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (old >= 0 && !copyAttributes(old, file))
        isGroupKept = false;
    closeAny(old);
    if (!isGroupKept)
        wanted &= ~static_cast<mode_t>(S_ISGID | (S_IRWXG & ~(mode << 3)));
    return (own.st_mode & allBits) == wanted || fchmod(file, wanted) == 0;
}

std::string PelPlatformReplacement::getErrorText() const {
    return (isTemporaryMissing ? "no temporary file beside it: " : "") +
           PelPlatform::errorText(error);
}
