// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string log() {
    std::ifstream file(QRNDOM_LOG_FILE);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Library, StartsANewLogWithEachLoadAndLeavesNothingBehind) {
    for (int round = 0; round < 3; ++round) {
        void* const library = dlopen(QRNDOM_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        EXPECT_EQ(log(), "");
        auto* const release =
            reinterpret_cast<void (*)()>(dlsym(library, "_ZN14PelDOMUtilites16releaseUtilitiesEv"));
        ASSERT_NE(release, nullptr);
        release();
        EXPECT_EQ(log(), "PelDOMUtilites::releaseUtilities()\n");
        EXPECT_NE(dlsym(library, "_ZN11PelDOMFiler14InvalidElementE"), nullptr);
        EXPECT_EQ(dlsym(library, "_ZN15PelXercesEngine5startEv"), nullptr) << "not part of the API";
        ASSERT_EQ(dlclose(library), 0);
        EXPECT_EQ(dlopen(QRNDOM_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
    }
}

} // namespace
