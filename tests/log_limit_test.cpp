// SPDX-License-Identifier: MIT
#include "support.h"

#include <thread>

TEST(LogFile, EndsAtItsLimitWithALineThatSaysSo) {
    const std::string notice = "The log is full: further lines are dropped.\n";
    const LogWatch log;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([] {
            for (int i = 0; i < 1000; ++i) PelDOM::error(u"", nullptr);
        });
    for (std::thread& thread : threads) thread.join();
    const std::string text = log.text();
    const std::size_t begin = text.find(notice);
    ASSERT_NE(begin, text.npos);
    EXPECT_EQ(
        std::string(text).erase(begin, notice.size()), std::string(QRNDOM_LOG_LIMIT - notice.size(), '\n'));
    EXPECT_LT(text.size() - notice.size() - begin, threads.size()) << "lines that were under way";
    PelDOM::error(u"late", nullptr);
    EXPECT_EQ(log.text(), text);
}
