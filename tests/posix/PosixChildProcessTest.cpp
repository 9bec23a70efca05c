// What a program is given, what it inherits, and what is read of it.
#include "PosixChildProcessFixture.h"

#include "platform/posix/Descriptors.h"

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace sonvara::test {

namespace {

using PosixChildProcessTest = PosixChildProcessFixture;

TEST_F(PosixChildProcessTest, PassesArgumentsByteForByte)
{
    const std::vector<std::string> arguments{
        "-p", "", " a b ", "$HOME `id` \"'\\", "line\nfeed", "\xC3\xA9\xFF", std::string(100000, 'x')};
    std::string expected;
    for (const auto& argument : arguments) expected += argument + '\0';
    auto all = arguments;
    all.insert(all.begin(), "arguments");
    EXPECT_EQ(outputOf(all), expected);
}

TEST_F(PosixChildProcessTest, GivesTheWholeEnvironmentAndNothingElse)
{
    auto child = setup({"environment"});
    child.environment = {{"EMPTY", ""}, {"PATH", "/a:/b:"}, {"TEXT", "a=b\n\xFF"}};
    const auto process = launcher_.make(child);
    ASSERT_EQ(process->launch(), std::nullopt);
    using namespace std::string_literals;
    EXPECT_EQ(process->readOutputToEnd(), "EMPTY=\0PATH=/a:/b:\0TEXT=a=b\n\xFF\0"s);
    EXPECT_EQ(process->waitUntilExit(), 0);
}

TEST_F(PosixChildProcessTest, RunsInTheFolder)
{
    EXPECT_EQ(outputOf({"folder"}), std::filesystem::canonical(folder_.path()).string());
}

TEST_F(PosixChildProcessTest, InheritsStandardInput)
{
    std::ofstream(folder_.file("input")) << "what was there\nbefore";
    const FileDescriptor saved(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
    const FileDescriptor input(::open(folder_.file("input").c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::dup2(input.get(), STDIN_FILENO), STDIN_FILENO);
    EXPECT_EQ(outputOf({"input"}), "what was there\nbefore");
    ::dup2(saved.get(), STDIN_FILENO);
}

TEST_F(PosixChildProcessTest, ShowsStandardErrorNowhere)
{
    const FileDescriptor saved(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 10));
    const FileDescriptor ours(::open(folder_.file("error").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    ASSERT_EQ(::dup2(ours.get(), STDERR_FILENO), STDERR_FILENO);
    const auto output = outputOf({"much", "1"});
    ::dup2(saved.get(), STDERR_FILENO);
    EXPECT_TRUE(output == std::string(std::size_t{1} << 20, '\xFF')) << "standard output alone";
    EXPECT_EQ(std::filesystem::file_size(folder_.file("error")), 0U);
}

TEST_F(PosixChildProcessTest, LeaksNoDescriptor)
{
    const FileDescriptor open(::open("/dev/null", O_RDONLY));  // does not close on exec
    const FileDescriptor high(::fcntl(open.get(), F_DUPFD, 900));
    const auto other = launched({"sleep"});
    EXPECT_EQ(outputOf({"descriptors"}), "0 1 2 ");
    other->terminate();
    EXPECT_EQ(other->waitUntilExit(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessTest, LeavesNoDescriptorOpenHere)
{
    const auto count = [] {
        return std::distance(std::filesystem::directory_iterator("/dev/fd"),
                             std::filesystem::directory_iterator());
    };
    const auto before = count();
    for (int i = 0; i < 5; ++i) outputOf({"arguments"});
    auto broken = setup({});
    broken.executable = "/nowhere/at/all";
    EXPECT_NE(launcher_.make(broken)->launch(), std::nullopt);
    EXPECT_EQ(count(), before);
}

TEST_F(PosixChildProcessTest, GivesDefaultSignalsAndLeavesOurOwnAsTheyAre)
{
    const auto pipeBefore = std::signal(SIGPIPE, SIG_IGN);
    sigset_t mask;
    sigset_t maskBefore;
    sigemptyset(&mask);
    sigaddset(&mask, SIGUSR1);
    sigaddset(&mask, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &mask, &maskBefore);

    EXPECT_EQ(outputOf({"signals"}), "");

    sigset_t maskAfter;
    pthread_sigmask(SIG_SETMASK, &maskBefore, &maskAfter);
    EXPECT_EQ(sigismember(&maskAfter, SIGUSR1), 1);
    EXPECT_EQ(std::signal(SIGPIPE, pipeBefore), SIG_IGN);
    struct sigaction action{};
    ::sigaction(SIGCHLD, nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST_F(PosixChildProcessTest, ReadsMuchOutputWhileStandardErrorIsTalkative)
{
    EXPECT_TRUE(outputOf({"much", "10"}) == std::string(std::size_t{10} << 20, '\xFF'));
}

TEST_F(PosixChildProcessTest, OutputWithoutEndIsCutAndTheProgramAskedToEnd)
{
    const auto child = launched({"endless"});
    const auto output = child->readOutputToEnd();
    EXPECT_LE(output.size(), std::size_t{64} << 20);
    EXPECT_GE(output.size(), std::size_t{63} << 20);
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessTest, OutputOfJustTheMostIsReadWhole)
{
    EXPECT_EQ(outputOf({"much", "64"}).size(), std::size_t{64} << 20);
}

}  // namespace

}  // namespace sonvara::test
