#include "platform/posix/PosixSystem.h"

#include "helpers/ScopedVariable.h"
#include "helpers/TemporaryFolder.h"

#include <array>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

extern char** environ;  // not declared by every system's headers

namespace sonvara::test {

namespace {

std::string madeFile(const TemporaryFolder& folder, const std::string& name, unsigned permissions)
{
    const auto path = folder.file(name);
    std::ofstream(path) << "#!/bin/sh\n";
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(permissions));
    return path;
}

TEST(PosixFileManagerTest, ExecutableFilesAreRegularFilesOrLinksToThem)
{
    const TemporaryFolder folder;
    const PosixFileManager files;
    const auto program = madeFile(folder, "program", 0755);
    const auto text = madeFile(folder, "text", 0644);
    std::filesystem::create_symlink(program, folder.file("link"));
    std::filesystem::create_symlink(folder.file("absent"), folder.file("dangling"));
    std::filesystem::create_symlink(folder.file("circle"), folder.file("circle"));
    std::filesystem::create_directory(folder.file("folder"));

    EXPECT_TRUE(files.isExecutableFile(program));
    EXPECT_TRUE(files.isExecutableFile(folder.file("link")));
    EXPECT_FALSE(files.isExecutableFile(text));
    EXPECT_FALSE(files.isExecutableFile(folder.file("dangling")));
    EXPECT_FALSE(files.isExecutableFile(folder.file("circle")));
    EXPECT_FALSE(files.isExecutableFile(folder.file("folder")));
    EXPECT_FALSE(files.isExecutableFile(folder.file("absent")));
    EXPECT_FALSE(files.isExecutableFile(program + "/below"));
    EXPECT_FALSE(files.isExecutableFile(""));
    EXPECT_FALSE(files.isExecutableFile("/dev/null"));
}

TEST(PosixFileManagerAsRootTest, ExecutabilityIsAskedForTheEffectiveUser)
{
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    const auto ownersOnly = madeFile(folder, "program", 0744);
    const auto everyones = madeFile(folder, "other", 0755);
    const PosixFileManager files;
    EXPECT_TRUE(files.isExecutableFile(ownersOnly));
    ASSERT_EQ(::seteuid(12345), 0);
    const bool mayExecuteOwners = files.isExecutableFile(ownersOnly);
    const bool mayExecuteOther = files.isExecutableFile(everyones);
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_FALSE(mayExecuteOwners);
    EXPECT_TRUE(mayExecuteOther);
}

TEST(PosixFileManagerTest, MakesAFolderWithThoseAboveIt)
{
    const TemporaryFolder folder;
    PosixFileManager files;
    const auto path = folder.file("a/b/c");
    EXPECT_TRUE(files.createDirectory(path));
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_TRUE(files.createDirectory(path));
    std::filesystem::create_directory_symlink(path, folder.file("link"));
    EXPECT_TRUE(files.createDirectory(folder.file("link")));
    madeFile(folder, "file", 0644);
    EXPECT_FALSE(files.createDirectory(folder.file("file")));
    EXPECT_FALSE(files.createDirectory(folder.file("file/below")));
}

TEST(PosixEnvironmentTest, HoldsEveryVariable)
{
    const ScopedVariable empty("SONVARA_TEST_EMPTY", "");
    const ScopedVariable text("SONVARA_TEST_TEXT", "a=b\n\xFF");
    const ScopedVariable absent("SONVARA_TEST_ABSENT", nullptr);
    const auto variables = PosixEnvironment().variables();
    EXPECT_EQ(variables.at("SONVARA_TEST_EMPTY"), "");
    EXPECT_EQ(variables.at("SONVARA_TEST_TEXT"), "a=b\n\xFF");
    EXPECT_FALSE(variables.contains("SONVARA_TEST_ABSENT"));
}

[[noreturn]] void exitAfterReading(char** environment, const Variables& expected)
{
    environ = environment;
    ::_exit(PosixEnvironment().variables() == expected ? 0 : 1);
}

TEST(PosixEnvironmentDeathTest, OfTwoEntriesTheFirstCountsAndOneWithoutAValueIsNone)
{
    std::string first("A=1");
    std::string nothing("NOTHING");
    std::string second("A=2");
    std::array<char*, 4> list{first.data(), nothing.data(), second.data(), nullptr};
    EXPECT_EXIT(exitAfterReading(list.data(), Variables({{"A", "1"}})), testing::ExitedWithCode(0), "");
}

TEST(PosixEnvironmentDeathTest, MayBeGone)
{
    EXPECT_EXIT(exitAfterReading(nullptr, {}), testing::ExitedWithCode(0), "");
}

TEST(PosixClockTest, GivesTheTimeOfDayInTheCurrentZone)
{
    const PosixClock clock("0");
    const auto time =
        WallTime(std::chrono::sys_days(std::chrono::January / 31 / 2024) + std::chrono::hours(21) +
                 std::chrono::minutes(5) + std::chrono::seconds(9) + std::chrono::milliseconds(999));
    const ScopedVariable zone("TZ", "UTC0");
    EXPECT_EQ(clock.timeText(time), "21:05:09");
    zone.set("TST-5:30");
    EXPECT_EQ(clock.timeText(time), "02:35:09");
}

TEST(PosixClockTest, WritesTheTimeInTheDigitsOfTheLocale)
{
    const ScopedVariable zone("TZ", "UTC0");
    const auto time = WallTime(std::chrono::hours(23) + std::chrono::minutes(45) + std::chrono::seconds(6));
    const auto written = [time](const char* zero) { return PosixClock(zero).timeText(time); };
    EXPECT_EQ(written("\u0660"), "\u0662\u0663:\u0664\u0665:\u0660\u0666") << "Arabic";
    EXPECT_EQ(written("\u0966"), "\u0968\u0969:\u096a\u096b:\u0966\u096c") << "Devanagari";
    EXPECT_EQ(written("\U00011136"), "\U00011138\U00011139:\U0001113a\U0001113b:\U00011136\U0001113c")
        << "Chakma";
}

TEST(PosixClockTest, NowIsTheSystemsTime)
{
    const auto before = std::chrono::system_clock::now();
    const auto now = PosixClock("0").now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

}  // namespace

}  // namespace sonvara::test
