// SPDX-License-Identifier: MIT
#include "reading/PelReadMessage.h"
#include "support.h"

#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

static PelDOMDocument readNaming(const std::string& file) {
    const std::string text = "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e SYSTEM '" + file + "'>]><a>&e;</a>";
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
    for (const std::string& name : {fifo, folder.file("link"), std::string("/dev/tty"), folder.path}) {
        inotify_add_watch(watch, name.c_str(), IN_OPEN);
        EXPECT_EQ(readNaming(name).isNull(), 1) << name;
        EXPECT_FALSE(isOpened()) << name;
    }
    inotify_add_watch(watch, folder.write("file", "text").c_str(), IN_OPEN);
    EXPECT_EQ(show(readNaming(folder.file("file"))), "#9(#10 a(|text|))");
    EXPECT_TRUE(isOpened());
    close(watch);
    for (const char* name :
        {"/proc/kmsg", "/proc/self/status", "/proc/self/mem", "/sys/kernel/notes", "/proc/self/cwd"})
        EXPECT_EQ(readNaming(name).isNull(), 1) << name;
}

TEST(FilesThatADocumentNames, HaveNamesWithoutNul) {
    const ScratchFolder folder;
    const std::string url = "file://" + folder.write("part", "text");
    EXPECT_EQ(show(readNaming(url)), "#9(#10 a(|text|))");
    for (const char* end : {"%00", "%00.txt", "%00%", "/../part%00"})
        EXPECT_EQ(readNaming(url + end).isNull(), 1) << end;
}

// A file that the caller names may be whatever gives bytes.
TEST(FilesThatTheCallerNames, MayBeOfAnyKind) {
    const ScratchFolder folder;
    std::filesystem::create_symlink(folder.write("file", "<a/>"), folder.file("link"));
    EXPECT_EQ(show(readFile(folder.file("link"))), "#9(a)");
    EXPECT_EQ(show(readFile("/dev/null")), "null");
    EXPECT_EQ(show(readFile("/proc/self/status")), "null");
    EXPECT_NE(PelDOMUtilites::getLastReadMessage().toUtf8().find(":1:1: "), std::string::npos);
}

TEST(ReadMessages, KeepTheEndOfLongLines) {
    for (std::size_t length = 2040; length < 2060; ++length) {
        std::u16string line = u"x";
        while (line.size() + 2 <= length) line += u"\U0001F600";
        line += std::u16string(length - line.size(), u'y');
        PelReadMessage::set(PelString(std::u16string_view(line)));
        const PelString message = PelReadMessage::get();
        EXPECT_EQ(message.length(), static_cast<long>(std::min(length, std::size_t{2048})));
        EXPECT_EQ(PelString(message.toUtf8().c_str()) == message, true) << length; // no halves
        EXPECT_EQ(message.view().substr(4),
            std::u16string_view(line).substr(line.size() - message.view().size() + 4));
        EXPECT_EQ(message.view()[0], length > 2048 ? u'\u2026' : u'x');
    }
}
