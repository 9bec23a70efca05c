#include "platform/posix/ProcessSetup.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace sonvara::test {

namespace {

bool isNullDevice(int number)
{
    struct stat descriptor{};
    struct stat device{};
    return ::fstat(number, &descriptor) == 0 && ::stat("/dev/null", &device) == 0 &&
           descriptor.st_rdev == device.st_rdev && S_ISCHR(descriptor.st_mode);
}

bool is(const char* name, std::string_view value)
{
    const char* const found = std::getenv(name);
    return found != nullptr && found == value;
}

// Each runs in a process of its own, whose exit status tells how many expectations failed.
[[noreturn]] void exitWith(std::initializer_list<bool> expectations)
{
    int failed = 0;
    for (const bool holds : expectations) failed += holds ? 0 : 1;
    ::_exit(failed);
}

TEST(ProcessSetupDeathTest, StandardInputIsEmpty)
{
    EXPECT_EXIT(
        {
            ::dup2(::open("/etc/hosts", O_RDONLY), STDIN_FILENO);  // where there is something to read
            setUpProcess();
            char byte = 0;
            exitWith({isNullDevice(STDIN_FILENO), ::read(STDIN_FILENO, &byte, 1) == 0,
                      (::fcntl(STDIN_FILENO, F_GETFD) & FD_CLOEXEC) == 0, !isNullDevice(STDERR_FILENO)});
        },
        testing::ExitedWithCode(0), "");
}

TEST(ProcessSetupDeathTest, MissingDescriptorsAreOpened)
{
    EXPECT_EXIT(
        {
            for (const int number : {0, 1, 2}) ::close(number);
            setUpProcess();
            exitWith({isNullDevice(0), isNullDevice(1), isNullDevice(2), ::write(1, "x", 1) == 1});
        },
        testing::ExitedWithCode(0), "");
}

TEST(ProcessSetupDeathTest, SignalsThatConcernOthersAreSettled)
{
    EXPECT_EXIT(
        {
            std::signal(SIGCHLD, SIG_IGN);
            setUpProcess();
            exitWith({std::signal(SIGCHLD, SIG_DFL) == SIG_DFL, std::signal(SIGPIPE, SIG_DFL) == SIG_IGN});
        },
        testing::ExitedWithCode(0), "");
}

TEST(ProcessSetupDeathTest, WhatIsMissingInTheEnvironmentIsSet)
{
    EXPECT_EXIT(
        {
            ::unsetenv("GEMINI_CLI_NO_RELAUNCH");
            setUpProcess();
            exitWith({is("GEMINI_CLI_NO_RELAUNCH", "true")});
        },
        testing::ExitedWithCode(0), "");
}

TEST(ProcessSetupDeathTest, TheEnvironmentIsCompletedButNotOverruled)
{
    EXPECT_EXIT(
        {
            ::unsetenv("NO_BROWSER");
            ::setenv("GEMINI_CLI_NO_RELAUNCH", "chosen", 1);
            setUpProcess();
            exitWith({is("NO_BROWSER", "true"), is("GEMINI_CLI_NO_RELAUNCH", "chosen"),
                      is("CLAUDE_CODE_MAX_RETRIES", "2"), is("CLAUDE_CODE_DISABLE_ATTACHMENTS", "1"),
                      is("CLAUDE_CODE_DISABLE_FILE_MENTIONS", "1"), is("CLAUDE_CODE_DISABLE_CLAUDE_MDS", "1"),
                      is("CLAUDE_CODE_DISABLE_AUTO_MEMORY", "1"),
                      is("CLAUDE_CODE_SKIP_PROMPT_HISTORY", "1")});
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace

}  // namespace sonvara::test
