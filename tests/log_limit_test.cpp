// SPDX-License-Identifier: MIT
#include "support.h"
#include "threads.h"

static const std::string leftOut = "A line is left out: the log has no room for it.\n";

// In order: both need a log that is not yet full.
TEST(LogFile, LeavesOutALineThatIsLongForIt) {
    const LogWatch log;
    const std::string half(QRNDOM_LOG_LIMIT / 2, 'x');
    PelDOM::error((half + half).c_str(), nullptr);
    PelDOM::error(half.c_str(), nullptr);
    PelDOM::error(half.c_str(), nullptr);
    EXPECT_TRUE(PelLog::takesMessages(QRNDOM_LOG_LIMIT / 4));
    EXPECT_FALSE(PelLog::takesMessages(QRNDOM_LOG_LIMIT));
    PelDOM::error(u"short", nullptr);
    EXPECT_EQ(log.text(), leftOut + half + "\n" + leftOut + leftOut + "short\n");
}

TEST(LogFile, EndsAtItsLimitWithALineThatSaysSo) {
    const std::string notice = "The log is full: further lines are dropped.\n";
    const LogWatch log;
    inFourThreads([](std::size_t) {
        for (int i = 0; i < 1000; ++i)
            PelDOM::error(std::string(52, 'x'), nullptr);
    });
    const std::string text = log.text();
    const std::size_t begin = text.find(notice);
    ASSERT_NE(begin, text.npos);
    EXPECT_EQ(text.size(), begin + notice.size());
    EXPECT_EQ(begin % 53, 0U); // whole lines only: what is left holds no word of one more
    EXPECT_LE(LogWatch::all().size(), QRNDOM_LOG_LIMIT);
    PelDOM::error(u"late", nullptr);
    EXPECT_EQ(log.text(), text);
}
