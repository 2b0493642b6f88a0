// SPDX-License-Identifier: MIT
#include "core/PelPlatform.h"
#include "core/PelThreadMessage.h"
#include "support.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

static PelDOMDocument readNaming(const std::string& file) {
    const std::string text =
        "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM '" + file + "'>]><a>&e;</a>";
    return services().readDocumentFromStringA(text.c_str());
}

// Who waits for a FIFO's reader must not see one, and a device must not start to do something.
TEST(FilesThatADocumentNames, AreNotOpenedUnlessTheyAreRegular) {
    const ScratchFolder folder;
    const std::string fifo = folder.file("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", folder.file("link"));
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    const auto isOpened = [&] {
        pollfd waiting = {watch, POLLIN, 0};
        char events[4096];
        return poll(&waiting, 1, 0) == 1 && ::read(watch, events, sizeof events) > 0;
    };
    for (const std::string& name :
         {fifo, folder.file("link"), std::string("/dev/tty"), folder.path}) {
        inotify_add_watch(watch, name.c_str(), IN_OPEN);
        EXPECT_EQ(readNaming(name).isNull(), 1) << name;
        EXPECT_FALSE(isOpened()) << name;
    }
    inotify_add_watch(watch, folder.write("file", "text").c_str(), IN_OPEN);
    EXPECT_EQ(show(readNaming(folder.file("file"))), "#9(#10 a(|text|))");
    EXPECT_TRUE(isOpened());
    close(watch);
    for (const char* name : {"/proc/kmsg", "/proc/self/status", "/proc/self/mem",
                             "/sys/kernel/notes", "/proc/self/cwd"})
        EXPECT_EQ(readNaming(name).isNull(), 1) << name;
}

TEST(FilesThatADocumentNames, MayBeEscapedButHaveNoNul) {
    const ScratchFolder folder;
    const std::string url = "file://" + folder.file("");
    const std::pair<const char*, std::string> names[] = {
        {"part", "part"},     {"part%41", "partA"}, {"%c3%A9%20", "\xC3\xA9 "},
        {"part%4", "part%4"}, {"part%", "part%"},   {"part%4g", "part%4g"}};
    for (const auto& [name, file] : names) {
        folder.write(file, file);
        EXPECT_EQ(show(readNaming(url + name)), "#9(#10 a(|" + file + "|))") << name;
    }
    for (const char* name : {"part%00", "part%00.txt", "part%00%", "part/../part%00"})
        EXPECT_EQ(readNaming(url + name).isNull(), 1) << name;
}

// A file that the caller names may be whatever gives bytes.
TEST(FilesThatTheCallerNames, MayBeOfAnyKind) {
    const ScratchFolder folder;
    std::filesystem::create_symlink(folder.write("file", "<a/>"), folder.file("link"));
    EXPECT_EQ(show(readFile(folder.file("link"))), "#9(a)");
    const std::pair<std::string, const char*> refused[] = {
        {"/proc/self/status",
         ":1:1: this is not XML: a document begins with a declaration or an element"},
        {"/proc/self/mem", ":0:0: unable to read data from file"}};
    for (const auto& [file, message] : refused) {
        EXPECT_EQ(show(readFile(file)), "null");
        EXPECT_EQ(PelDOMUtilites::getLastReadMessage().toUtf8(), file + message);
    }
}

// What comes in pieces is put together and waited for, whatever signals come meanwhile.
TEST(FilesThatTheCallerNames, MayBePipes) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    struct sigaction noted = {};
    noted.sa_handler = [](int) {};
    sigaction(SIGUSR1, &noted, nullptr);
    std::thread writer([&ends, reader = pthread_self()] {
        for (const char* piece : {"<a>t", "ext</a>"}) {
            EXPECT_GT(write(ends[1], piece, strlen(piece)), 0);
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            pthread_kill(reader, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        close(ends[1]);
    });
    using InputFile = PelPlatform::InputFile;
    InputFile file("/dev/fd/" + std::to_string(ends[0]), InputFile::Kind::anyButFolder);
    std::string bytes = "..........";
    EXPECT_EQ(answers({file.read(bytes.data(), 6), bytes, file.read(bytes.data(), 10), bytes,
                       file.read(bytes.data(), 1)}),
              "6 '<a>tex....' 5 't</a>x....' 0");
    writer.join();
    close(ends[0]);
}

TEST(ReadMessages, KeepTheEndOfLongLines) {
    for (std::size_t length = 2040; length < 2060; ++length) {
        std::u16string line = u"x";
        while (line.size() + 2 <= length)
            line += u"\U0001F600";
        line += std::u16string(length - line.size(), u'y');
        PelThreadMessage::ofRead().set(line);
        const PelString message = PelThreadMessage::ofRead().get();
        EXPECT_EQ(message.length(), static_cast<long>(std::min(length, std::size_t{2048})));
        EXPECT_EQ(PelString(message.toUtf8().c_str()) == message, true) << length; // no halves
        EXPECT_EQ(message.view().substr(4),
                  std::u16string_view(line).substr(line.size() - message.view().size() + 4));
        EXPECT_EQ(message.view()[0], length > 2048 ? u'\u2026' : u'x');
    }
}
