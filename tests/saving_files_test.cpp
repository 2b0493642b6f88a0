// SPDX-License-Identifier: MIT
#include "support.h"
#include "threads.h"

#include <atomic>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <thread>

static bool areFoldersUnsyncable = false;
static std::atomic<int> callsLeft = INT_MAX; // of the following, up to that which kills the process

static void countCall() {
    if (--callsLeft == 0)
        raise(SIGKILL);
}

// In the place of the system's, for the whole program.
extern "C" int fsync(int file) {
    countCall();
    struct stat status = {};
    if (areFoldersUnsyncable && fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, file));
}

static std::size_t mostTaken = SIZE_MAX;

// The same: a system may take less than it is given.
extern "C" ssize_t write(int file, const void* bytes, std::size_t count) {
    countCall();
    return syscall(SYS_write, file, bytes, std::min(count, mostTaken));
}

extern "C" int renameat(int from, const char* name, int to, const char* newName) {
    countCall();
    return static_cast<int>(syscall(SYS_renameat2, from, name, to, newName, 0));
}

namespace {

// A document and the bytes that it is written as.
struct Sample {
    explicit Sample(const std::string& fill, std::size_t count = 1)
        : document(parse("<" + fill + "/>")) {
        for (std::size_t i = 0; i < count; ++i)
            rootOf(document).appendTextElement("t", fill);
        PelDOMWriter().writeBytes(document, bytes);
    }
    PelDOMDocument document;
    std::string bytes;
};

// The message of a write to a file; "" when it went well.
std::string save(const Sample& sample, const std::string& name) {
    PelDOMWriter writer;
    const PelDOM::Error code = writer.writeFile(sample.document, name);
    EXPECT_EQ(code, writer.getMessage().isEmpty() == 1 ? PelDOM::SUCCESS : PelDOM::INTERNAL_ERROR);
    return writer.getMessage().toUtf8();
}

std::string namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename());
    std::string all;
    for (const std::string& name : names)
        all += name + " ";
    return all.substr(0, all.size() - 1);
}

struct stat statusOf(const std::string& file) {
    struct stat status = {};
    EXPECT_EQ(lstat(file.c_str(), &status), 0) << file;
    return status;
}

// Runs in a process of its own, and never as root.
void withoutRights(const std::string& folder, const std::function<void()>& test) {
    const bool isRoot = geteuid() == 0;
    EXPECT_TRUE(!isRoot || chown(folder.c_str(), 65534, 65534) == 0);
    const int status = statusOfProcess([&] {
        EXPECT_TRUE(!isRoot || setgid(65534) + setuid(65534) == 0);
        test();
    });
    EXPECT_EQ(status, 0);
}

const Sample small("small");

} // namespace

TEST(SavingFiles, ReplacesTheFileAndKeepsWhatItIs) {
    const ScratchFolder folder;
    const std::string file =
        folder.write("a.xml", "a longer file that was there before, with more in it");
    const std::string fresh = folder.file("\xD0\x96.xml");
    ASSERT_EQ(chmod(file.c_str(), 0751), 0);
    const bool hasAttributes = setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0 &&
                               setxattr(file.c_str(), "user.none", "", 0, 0) == 0;
    const ino_t before = statusOf(file).st_ino;
    const mode_t mask = umask(027);
    EXPECT_EQ(save(small, file), "");
    mostTaken = 7;
    EXPECT_EQ(save(small, fresh), "");
    mostTaken = SIZE_MAX;
    umask(mask);
    EXPECT_EQ(bytesOf(file), small.bytes);
    EXPECT_EQ(bytesOf(fresh), small.bytes);
    EXPECT_NE(statusOf(file).st_ino, before);
    EXPECT_EQ(statusOf(file).st_mode, mode_t{S_IFREG | 0751});
    EXPECT_EQ(statusOf(fresh).st_mode, mode_t{S_IFREG | 0640});
    char note[5] = "";
    EXPECT_EQ(getxattr(file.c_str(), "user.note", note, 4), hasAttributes ? 4 : -1);
    EXPECT_EQ(getxattr(file.c_str(), "user.none", note + 4, 1), hasAttributes ? 0 : -1);
    EXPECT_EQ(std::string(note), hasAttributes ? "kept" : "");
    if (chown(file.c_str(), 1234, 4321) == 0) {
        EXPECT_EQ(save(small, file), "");
        EXPECT_EQ(statusOf(file).st_uid, 1234U);
        EXPECT_EQ(statusOf(file).st_gid, 4321U);
    }
    EXPECT_EQ(save(small, folder.file(std::string(255, 'n'))), "");
    EXPECT_EQ(namesIn(folder.path), "a.xml " + std::string(255, 'n') + " \xD0\x96.xml");
}

TEST(SavingFiles, FollowsLinksAndLeavesThem) {
    const ScratchFolder folder;
    std::filesystem::create_directory(folder.file("sub"));
    folder.write("sub/real.xml", "old");
    std::filesystem::create_symlink("sub/link", folder.file("one"));
    std::filesystem::create_symlink("real.xml", folder.file("sub/link"));
    std::filesystem::create_symlink(folder.file("sub/new.xml"),
                                    folder.file("two")); // leads to nothing yet
    std::filesystem::create_symlink("loop", folder.file("loop"));
    EXPECT_EQ(save(small, folder.file("one")), "");
    EXPECT_EQ(save(small, folder.file("two")), "");
    EXPECT_EQ(save(small, folder.file("loop")),
              folder.file("loop") + ": Too many levels of symbolic links");
    for (const char* link : {"one", "two", "sub/link"})
        EXPECT_TRUE(std::filesystem::is_symlink(folder.file(link))) << link;
    EXPECT_EQ(bytesOf(folder.file("sub/real.xml")), small.bytes);
    EXPECT_EQ(bytesOf(folder.file("sub/new.xml")), small.bytes);
    EXPECT_EQ(namesIn(folder.path), "loop one sub two");
    EXPECT_EQ(namesIn(folder.file("sub")), "link new.xml real.xml");
}

TEST(SavingFiles, WritesInPlaceWhatCannotBeReplaced) {
    const ScratchFolder folder;
    const long before = openFiles();
    const std::string first = folder.write("first", std::string(100, 'x'));
    std::filesystem::create_hard_link(first, folder.file("second"));
    EXPECT_EQ(save(small, first), "");
    EXPECT_EQ(bytesOf(folder.file("second")), small.bytes);
    EXPECT_EQ(statusOf(first).st_nlink, 2U);

    const std::string fifo = folder.file("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(save(small, fifo), fifo + ": No such device or address"); // nobody reads
    std::string received;
    std::thread reader([&] { received = bytesOf(fifo); });
    while (save(small, fifo) != "")
        std::this_thread::yield();
    reader.join();
    EXPECT_EQ(received, small.bytes);

    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(save(small, "/dev/fd/" + std::to_string(ends[1])), "");
    std::string piped(small.bytes.size() + 1, '\0');
    piped.resize(static_cast<std::size_t>(read(ends[0], piped.data(), piped.size())));
    EXPECT_EQ(piped, small.bytes);
    close(ends[0]);
    close(ends[1]);

    EXPECT_EQ(save(small, "/dev/zero"), "");
    EXPECT_EQ(save(small, "/dev/full"), "/dev/full: No space left on device");
    const Sample large("large", 100000); // more than the buffers hold
    EXPECT_EQ(save(large, "/dev/full"), "/dev/full: No space left on device");
    EXPECT_EQ(namesIn(folder.path), "fifo first second");
    EXPECT_EQ(openFiles(), before);
}

TEST(SavingFiles, LeavesTheOldFileWhenItFails) {
    const ScratchFolder folder;
    const long before = openFiles();
    const std::string file = folder.write("a.xml", "old");
    const std::string twin = folder.write("twin", "old");
    std::filesystem::create_hard_link(twin, folder.file("twin2"));
    const Sample bad("bad");
    rootOf(bad.document).setAttribute("k", u"\xD800");
    for (const std::string& name : {file, twin}) {
        EXPECT_EQ(save(bad, name),
                  name +
                      ": an attribute holds half a surrogate pair, U+D800 (in the element 'bad')");
        EXPECT_EQ(PelDOMWriter().writeFile(PelDOMDocument(), name), PelDOM::NULL_NODE);
        EXPECT_EQ(bytesOf(name), "old");
    }
    const std::string absent = folder.file("absent");
    EXPECT_NE(save(bad, absent), "");
    const std::pair<std::string, const char*> names[] = {
        {"", ": No such file or directory"},
        {folder.path, ": Is a directory"},
        {folder.path + "/", ": Is a directory"},
        {folder.path + "/..", ": Is a directory"},
        {file + "/", ": Not a directory"},
        {folder.file("no/a.xml"), ": No such file or directory"},
        {folder.file(std::string(256, 'n')), ": File name too long"},
        {file + std::string(1, '\0'), ": the name holds U+0000"}};
    for (const auto& [name, reason] : names)
        EXPECT_EQ(save(small, name), name.empty() ? reason + 2 : name + reason);

    // A disk that is full, after some of it or before.
    const Sample large("large", 30000);
    struct rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const auto former = signal(SIGXFSZ, SIG_IGN);
    for (const rlim_t room :
         {rlim_t{0}, rlim_t{100000}, static_cast<rlim_t>(large.bytes.size()) - 1}) {
        const struct rlimit narrow = {room, limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &narrow);
        EXPECT_EQ(save(large, file), file + ": File too large");
        EXPECT_EQ(save(large, absent), absent + ": File too large");
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    signal(SIGXFSZ, former);
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_EQ(namesIn(folder.path), "a.xml twin twin2");
    EXPECT_EQ(openFiles(), before);
}

TEST(SavingFiles, SucceedsWithAMessageWhenOnlyTheFolderIsNotSynced) {
    const ScratchFolder folder;
    const long before = openFiles();
    const std::string file = folder.write("a.xml", "old");
    PelDOMWriter writer;
    areFoldersUnsyncable = true;
    EXPECT_EQ(writer.writeFile(small.document, file), PelDOM::SUCCESS);
    areFoldersUnsyncable = false;
    EXPECT_EQ(writer.getMessage().toUtf8(), file + ": written, but a crash of the system may still "
                                                   "bring the old file back: Input/output error");
    EXPECT_EQ(bytesOf(file), small.bytes);
    EXPECT_EQ(namesIn(folder.path), "a.xml");
    EXPECT_EQ(openFiles(), before);
    EXPECT_EQ(writer.writeFile(small.document, file), PelDOM::SUCCESS);
    EXPECT_EQ(writer.getMessage(), u"");
}

TEST(SavingFiles, GivesNobodyMoreRights) {
    const ScratchFolder folder;
    withoutRights(folder.path, [&folder] {
        const std::string file = folder.write("a.xml", "old");
        chmod(file.c_str(), 0444);
        EXPECT_EQ(save(small, file), file + ": Permission denied");
        chmod(file.c_str(), 0644);
        chmod(folder.path.c_str(), 0555);
        EXPECT_EQ(save(small, file), file + ": no temporary file beside it: Permission denied");
        EXPECT_EQ(save(small, folder.file("b.xml")), folder.file("b.xml") + ": Permission denied");
        EXPECT_EQ(bytesOf(file), "old");
        chmod(folder.path.c_str(),
              0333); // written but not listed: the folder itself cannot be synced
        EXPECT_EQ(save(small, file), "");
        chmod(folder.path.c_str(), 0755);
        EXPECT_EQ(bytesOf(file), small.bytes);
        EXPECT_EQ(namesIn(folder.path), "a.xml");
    });
    const std::string other = folder.write("other", "old");
    if (chown(other.c_str(), 1234, 4321) != 0)
        GTEST_SKIP() << "files of other owners take root to make";
    ASSERT_EQ(chmod(other.c_str(), 06776), 0);
    withoutRights(folder.path, [&] { EXPECT_EQ(save(small, other), ""); });
    EXPECT_EQ(statusOf(other).st_mode, mode_t{S_IFREG | 0766});
    EXPECT_EQ(statusOf(other).st_uid, 65534U);
}

TEST(SavingFiles, AreTheOldOneOrTheNewOneWhereverTheWriterIsKilled) {
    const ScratchFolder folder;
    const std::string file = folder.file("a.xml");
    int status = -1, leftovers = 0;
    for (int calls = 1; status != 0 && calls < 100; ++calls) {
        folder.write("a.xml", "old");
        status = statusOfProcess([&] {
            callsLeft = calls;
            save(small, file);
        });
        const bool isReplaced = bytesOf(file) == small.bytes;
        EXPECT_TRUE(isReplaced || bytesOf(file) == "old") << bytesOf(file);
        for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
            if (entry.path() == file)
                continue;
            EXPECT_FALSE(isReplaced);
            EXPECT_EQ(entry.path().filename().string().substr(0, 8), ".qrndom-");
            std::filesystem::remove(entry.path());
            ++leftovers;
        }
    }
    EXPECT_EQ(status, 0);
    EXPECT_GT(leftovers, 2); // before it is written, synced and renamed
}

TEST(SavingFiles, MayBeWrittenBySeveralThreadsAtOnce) {
    const ScratchFolder folder;
    services().init();
    inFourThreads([&folder](std::size_t number) {
        const Sample own("own" + std::to_string(number), 3000);
        for (int round = 0; round < 10; ++round)
            EXPECT_EQ(save(own, folder.file("a.xml")), "");
    });
    EXPECT_EQ(readFile(folder.file("a.xml")).getDocumentElement().getTagName().view().substr(0, 3),
              u"own");
    EXPECT_EQ(namesIn(folder.path), "a.xml");
    services().terminate();
}
