// SPDX-License-Identifier: MIT
// The tests that can share a program. An argument chooses those of one file: "lists" those of
// lists_test.cpp. ctest gives each file a process, since log, engine and output encoding are the
// process's.
#include <gtest/gtest.h>

#include <iostream>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (argc == 1)
        return RUN_ALL_TESTS();
    const std::string end = std::string("/") + argv[1] + "_test.cpp";
    std::string filter;
    const auto& all = *testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i)
        for (int j = 0; j < all.GetTestSuite(i)->total_test_count(); ++j) {
            const testing::TestInfo& test = *all.GetTestSuite(i)->GetTestInfo(j);
            const std::string file = test.file();
            if (file.size() > end.size() &&
                file.compare(file.size() - end.size(), end.size(), end) == 0)
                filter += std::string(test.test_suite_name()) + "." + test.name() + ":";
        }
    testing::GTEST_FLAG(filter) = filter;
    if (!filter.empty())
        return RUN_ALL_TESTS();
    std::cerr << "No tests are from a file " << argv[1] << "_test.cpp\n";
    return 2;
}
