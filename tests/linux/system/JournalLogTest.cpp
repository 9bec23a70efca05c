#include "Terminal.h"

#include "platform/linux/system/JournalLog.h"

#include <QLoggingCategory>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace sonvara::test {

namespace {

const LogMessage speaking{LogLevel::error, "Speech", {{"speaking "}, Logger::hidden("a song"), {"\nnow"}}};

TEST(JournalLogTest, WritesALineToStandardErrorWhereThereIsNoJournal)
{
    JournalLog log("/nowhere/at/all");
    testing::internal::CaptureStderr();
    log.write(speaking);
    log.write({LogLevel::error, "AIDJ", {{"claude exited 1"}}});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "sonvara: Speech: speaking <private>\\nnow\nsonvara: AIDJ: claude exited 1\n");
}

TEST(JournalLogTest, ShowsPrivatePiecesOnATerminal)
{
    const Terminal terminal;
    JournalLog("/nowhere/at/all").write(speaking);
    EXPECT_EQ(terminal.read(), "sonvara: Speech: speaking a song\\nnow\r\n");
}

TEST(JournalLogTest, KeepsDebugMessagesOnlyWhenTheyAreSwitchedOn)
{
    const JournalLog log("/nowhere/at/all");
    EXPECT_TRUE(log.isEnabled(LogLevel::error, "Speech"));
    EXPECT_FALSE(log.isEnabled(LogLevel::debug, "Speech"));

    QLoggingCategory::setFilterRules("sonvara.Speech.debug=true");
    EXPECT_TRUE(log.isEnabled(LogLevel::debug, "Speech"));
    EXPECT_FALSE(log.isEnabled(LogLevel::debug, "AIDJ"));

    QLoggingCategory::setFilterRules("sonvara.*.debug=true");
    EXPECT_TRUE(log.isEnabled(LogLevel::debug, "AIDJ"));
    QLoggingCategory::setFilterRules({});
    EXPECT_FALSE(log.isEnabled(LogLevel::debug, "AIDJ"));
}

TEST(JournalLogTest, IsAskedAndWrittenToByManyThreads)
{
    JournalLog log("/nowhere/at/all");
    testing::internal::CaptureStderr();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&log, i] {
            for (int n = 0; n < 50; ++n) {
                EXPECT_FALSE(log.isEnabled(LogLevel::debug, "Category" + std::to_string(n % 10)));
                log.write({LogLevel::error, "T", {{std::string(50, static_cast<char>('a' + i))}}});
            }
        });
    for (auto& thread : threads) thread.join();
    const auto lines = testing::internal::GetCapturedStderr();
    EXPECT_EQ(lines.size(), 200 * std::string_view("sonvara: T: \n").size() + 200 * 50);
    for (std::size_t at = 0; at < lines.size(); at += 63)
        EXPECT_EQ(lines.substr(at, 63), "sonvara: T: " + std::string(50, lines[at + 12]) + "\n");
}

}  // namespace

}  // namespace sonvara::test
