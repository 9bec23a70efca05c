#include "platform/linux/system/JournalLog.h"

#include <QLoggingCategory>
#include <array>
#include <gtest/gtest.h>
#include <pty.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace sonvara {

namespace {

const LogMessage speaking{LogLevel::error, "Speech", {{"speaking "}, Logger::hidden("a song"), {"\nnow"}}};

TEST(JournalLog, WritesALineToStandardErrorWhereThereIsNoJournal)
{
    JournalLog log("/nowhere/at/all");
    testing::internal::CaptureStderr();
    log.write(speaking);
    log.write({LogLevel::error, "AIDJ", {{"claude exited 1"}}});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "sonvara: Speech: speaking <private>\\nnow\nsonvara: AIDJ: claude exited 1\n");
}

TEST(JournalLog, ShowsPrivatePiecesOnATerminal)
{
    int master = -1;
    int terminal = -1;
    ASSERT_EQ(::openpty(&master, &terminal, nullptr, nullptr, nullptr), 0);
    const int saved = ::dup(STDERR_FILENO);
    ::dup2(terminal, STDERR_FILENO);
    JournalLog("/nowhere/at/all").write(speaking);
    ::dup2(saved, STDERR_FILENO);
    std::array<char, 200> line{};
    const auto count = ::read(master, line.data(), line.size());
    for (const int descriptor : {saved, master, terminal}) ::close(descriptor);
    EXPECT_EQ(std::string(line.data(), static_cast<std::size_t>(count)),
              "sonvara: Speech: speaking a song\\nnow\r\n");
}

TEST(JournalLog, KeepsDebugMessagesOnlyWhenTheyAreSwitchedOn)
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

TEST(JournalLog, IsAskedAndWrittenToByManyThreads)
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
    std::string expected;
    const auto lines = testing::internal::GetCapturedStderr();
    EXPECT_EQ(lines.size(), 200 * std::string_view("sonvara: T: \n").size() + 200 * 50);
    for (std::size_t at = 0; at < lines.size(); at += 63)
        EXPECT_EQ(lines.substr(at, 63), "sonvara: T: " + std::string(50, lines[at + 12]) + "\n");
}

}  // namespace

}  // namespace sonvara
