// SPDX-License-Identifier: MIT
#include "open_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

static std::string logged() {
    return (std::ostringstream() << std::ifstream(QRNDOM_LOG_FILE).rdbuf()).str();
}

TEST(Library, StartsANewLogWithEachLoadAndLeavesNothingBehind) {
    const long filesBefore = openFiles();
    for (int round = 0; round < 3; ++round) {
        void* const library = dlopen(QRNDOM_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        EXPECT_EQ(logged(), "");
        void* const release = dlsym(library, "_ZN14PelDOMUtilites16releaseUtilitiesEv");
        ASSERT_NE(release, nullptr);
        reinterpret_cast<void (*)()>(release)();
        EXPECT_EQ(logged(), "PelDOMUtilites::releaseUtilities()\n");
        EXPECT_NE(dlsym(library, "_ZN11PelDOMFiler14InvalidElementE"), nullptr);
        EXPECT_EQ(dlvsym(library, "_ZN14PelDOMUtilites16releaseUtilitiesEv", QRNDOM_SYMBOLS),
                  release);
        EXPECT_EQ(dlsym(library, "_ZN15PelXercesEngine5startEv"), nullptr) << "not part of the API";
        ASSERT_EQ(dlclose(library), 0);
        EXPECT_EQ(dlopen(QRNDOM_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
        EXPECT_EQ(openFiles(), filesBefore);
    }
}

// A reader stays loaded at the end: the process ends well with its last read, too.
TEST(Library, IsUnloadedAfterReads) {
    for (int round = 0; round < 3; ++round) {
        void* const reader = dlopen(QRNDOM_READER, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(reader, nullptr) << dlerror();
        EXPECT_EQ(logged(), "");
        EXPECT_EQ(reinterpret_cast<int (*)()>(dlsym(reader, "readsRight"))(), 1);
        EXPECT_NE(logged(), "");
        if (round == 2)
            break;
        ASSERT_EQ(dlclose(reader), 0);
        EXPECT_EQ(dlopen(QRNDOM_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
        const std::string last = "createContentImp(8) failed\n", log = logged();
        EXPECT_EQ(log.substr(log.size() - std::min(log.size(), last.size())), last);
    }
}

TEST(Library, LeavesNothingToDoAtAQuickExit) {
    const pid_t child = fork();
    if (child == 0) {
        dlclose(dlopen(QRNDOM_LIBRARY, RTLD_NOW | RTLD_LOCAL));
        std::quick_exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}
