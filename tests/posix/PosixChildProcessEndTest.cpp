// How a program ends: by itself, when it is asked to, and with what it has started.
#include "PosixChildProcessFixture.h"

#include <csignal>
#include <filesystem>
#include <future>
#include <string>
#include <thread>

namespace sonvara::test {

namespace {

using PosixChildProcessEndTest = PosixChildProcessFixture;

TEST_F(PosixChildProcessEndTest, ReportsTheExitStatus)
{
    for (const int status : {0, 1, 41, 255}) {
        const auto child = launched({"exit", std::to_string(status)});
        EXPECT_EQ(child->readOutputToEnd(), "");
        EXPECT_EQ(child->waitUntilExit(), status);
        EXPECT_EQ(child->waitUntilExit(), status);
    }
}

TEST_F(PosixChildProcessEndTest, ReportsASignalAs128PlusItsNumber)
{
    for (const int number : {SIGKILL, SIGTERM, SIGUSR1}) {
        const auto child = launched({"signal", std::to_string(number)});
        EXPECT_EQ(child->readOutputToEnd(), "");
        EXPECT_EQ(child->waitUntilExit(), 128 + number);
    }
}

TEST_F(PosixChildProcessEndTest, ATerminatedProgramEnds)
{
    const auto child = launched({"sleep"});
    EXPECT_TRUE(child->isRunning());
    auto output = std::async(std::launch::async, [&] { return child->readOutputToEnd(); });
    child->terminate();
    EXPECT_EQ(output.get(), "");
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
    EXPECT_FALSE(child->isRunning());
    child->terminate();
}

TEST_F(PosixChildProcessEndTest, TerminateWorksWhileAnotherThreadWaits)
{
    const auto child = launched({"sleep"});
    auto status = std::async(std::launch::async, [&] { return child->waitUntilExit(); });
    child->terminate();
    EXPECT_EQ(status.get(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessEndTest, AProgramThatEndsWellBecauseItWasAskedToCountsAsTerminated)
{
    const auto child = launched({"obliging"});
    auto output = std::async(std::launch::async, [&] { return child->readOutputToEnd(); });
    while (!std::filesystem::exists(folder_.file("ready"))) std::this_thread::yield();
    child->terminate();
    EXPECT_EQ(output.get(), "half a sentence");
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessEndTest, ARequestAfterTheEndLeavesTheStatusAsItIs)
{
    const auto child = launched({"exit", "3"});
    EXPECT_EQ(child->readOutputToEnd(), "");
    while (child->isRunning()) std::this_thread::yield();
    child->terminate();
    EXPECT_EQ(child->waitUntilExit(), 3);
}

TEST_F(PosixChildProcessEndTest, AProgramThatIgnoresTheRequestGoesOn)
{
    const auto child = launched({"stubborn"});
    const auto pid = static_cast<pid_t>(std::stol(child->readOutputToEnd()));
    auto status = std::async(std::launch::async, [&] { return child->waitUntilExit(); });
    child->terminate();
    EXPECT_EQ(outputOf({"arguments", "meanwhile"}), std::string("meanwhile") + '\0');
    EXPECT_TRUE(child->isRunning());
    ASSERT_EQ(::kill(pid, SIGKILL), 0);
    EXPECT_EQ(status.get(), 128 + SIGKILL);
}

TEST_F(PosixChildProcessEndTest, AProcessLeftBehindHoldsTheReaderOnlyForAShortTime)
{
    const auto child = launched({"orphan"});
    const auto output = child->readOutputToEnd();
    EXPECT_EQ(child->waitUntilExit(), 7);
    const auto grandchild = static_cast<pid_t>(std::stol(output));
    EXPECT_EQ(::kill(grandchild, SIGKILL), 0);
}

TEST_F(PosixChildProcessEndTest, TerminateReachesWhatTheProgramStarted)
{
    const auto child = launcher_.make({"/bin/sh", {"-c", "sleep 60 & sleep 60; :"}, folder_.path(), {}});
    ASSERT_EQ(child->launch(), std::nullopt);
    child->terminate();
    EXPECT_EQ(child->readOutputToEnd(), "");
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessEndTest, AChildThatOthersHaveReapedHasEndedWithStatus255)
{
    const auto child = launched({"exit", "3"});
    EXPECT_EQ(child->readOutputToEnd(), "");
    ASSERT_GT(::waitpid(-1, nullptr, 0), 0);
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->waitUntilExit(), 255);
}

TEST_F(PosixChildProcessEndTest, BeforeItsLaunchThereIsNothingToEnd)
{
    const auto child = launcher_.make(setup({"exit", "3"}));
    EXPECT_FALSE(child->isRunning());
    child->terminate();
    EXPECT_EQ(child->launch(), std::nullopt);
    EXPECT_EQ(child->readOutputToEnd(), "");
    EXPECT_EQ(child->waitUntilExit(), 3);
}

TEST_F(PosixChildProcessEndTest, ADroppedChildLeavesNoZombie)
{
    launched({"exit", "0"}).reset();
    auto running = launched({"sleep"});
    running->terminate();
    running.reset();
    siginfo_t info;
    while (::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0) std::this_thread::yield();
    expectNoChildren();
}

}  // namespace

}  // namespace sonvara::test
