#include "platform/posix/PosixChildProcess.h"
#include "platform/posix/PosixProcessLauncher.h"

#include "helpers/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <vector>

namespace sonvara::test {

namespace {

class PosixChildProcessTest : public testing::Test {
protected:
    ChildProcessSetup setup(std::vector<std::string> arguments) const
    {
        return {CHILD_HELPER, std::move(arguments), folder_.path(), {}};
    }

    std::shared_ptr<ChildProcess> launched(std::vector<std::string> arguments)
    {
        auto child = launcher_.make(setup(std::move(arguments)));
        EXPECT_EQ(child->launch(), std::nullopt);
        return child;
    }

    // Runs the helper to its end and gives what it printed.
    std::string outputOf(std::vector<std::string> arguments)
    {
        const auto child = launched(std::move(arguments));
        auto output = child->readOutputToEnd();
        EXPECT_EQ(child->waitUntilExit(), 0);
        EXPECT_FALSE(child->isRunning());
        return output;
    }

    static void expectNoChildren()
    {
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    TemporaryFolder folder_;
    PosixProcessLauncher launcher_;
};

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

TEST_F(PosixChildProcessTest, ReportsTheExitStatus)
{
    for (const int status : {0, 1, 41, 255}) {
        const auto child = launched({"exit", std::to_string(status)});
        EXPECT_EQ(child->readOutputToEnd(), "");
        EXPECT_EQ(child->waitUntilExit(), status);
        EXPECT_EQ(child->waitUntilExit(), status);
    }
}

TEST_F(PosixChildProcessTest, ReportsASignalAs128PlusItsNumber)
{
    for (const int number : {SIGKILL, SIGTERM, SIGUSR1}) {
        const auto child = launched({"signal", std::to_string(number)});
        EXPECT_EQ(child->readOutputToEnd(), "");
        EXPECT_EQ(child->waitUntilExit(), 128 + number);
    }
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

TEST_F(PosixChildProcessTest, ATerminatedProgramEnds)
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

TEST_F(PosixChildProcessTest, TerminateWorksWhileAnotherThreadWaits)
{
    const auto child = launched({"sleep"});
    auto status = std::async(std::launch::async, [&] { return child->waitUntilExit(); });
    child->terminate();
    EXPECT_EQ(status.get(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessTest, AProgramThatEndsWellBecauseItWasAskedToCountsAsTerminated)
{
    const auto child = launched({"obliging"});
    auto output = std::async(std::launch::async, [&] { return child->readOutputToEnd(); });
    while (!std::filesystem::exists(folder_.file("ready"))) std::this_thread::yield();
    child->terminate();
    EXPECT_EQ(output.get(), "half a sentence");
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessTest, ARequestAfterTheEndLeavesTheStatusAsItIs)
{
    const auto child = launched({"exit", "3"});
    EXPECT_EQ(child->readOutputToEnd(), "");
    while (child->isRunning()) std::this_thread::yield();
    child->terminate();
    EXPECT_EQ(child->waitUntilExit(), 3);
}

TEST_F(PosixChildProcessTest, AProgramThatIgnoresTheRequestGoesOn)
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

TEST_F(PosixChildProcessTest, AProcessLeftBehindHoldsTheReaderOnlyForAShortTime)
{
    const auto child = launched({"orphan"});
    const auto output = child->readOutputToEnd();
    EXPECT_EQ(child->waitUntilExit(), 7);
    const auto grandchild = static_cast<pid_t>(std::stol(output));
    EXPECT_EQ(::kill(grandchild, SIGKILL), 0);
}

TEST_F(PosixChildProcessTest, TerminateReachesWhatTheProgramStarted)
{
    const auto child = launcher_.make({"/bin/sh", {"-c", "sleep 60 & sleep 60; :"}, folder_.path(), {}});
    ASSERT_EQ(child->launch(), std::nullopt);
    child->terminate();
    EXPECT_EQ(child->readOutputToEnd(), "");
    EXPECT_EQ(child->waitUntilExit(), 128 + SIGTERM);
}

TEST_F(PosixChildProcessTest, NamesTheReasonOfAFailedLaunch)
{
    const auto reasonFor = [&](const std::string& executable, const std::string& directory) {
        const auto child = launcher_.make({executable, {}, directory, {}});
        const auto reason = child->launch();
        EXPECT_FALSE(child->isRunning());
        child->terminate();
        return reason;
    };
    std::ofstream(folder_.file("plain")) << "no program\n";
    std::ofstream(folder_.file("invalid")) << "no program\n";
    std::ofstream(folder_.file("orphaned")) << "#!/nowhere/at/all\n";
    for (const char* const name : {"invalid", "orphaned"})
        std::filesystem::permissions(folder_.file(name), std::filesystem::perms::owner_all);

    EXPECT_EQ(reasonFor(folder_.file("absent"), "/"), std::strerror(ENOENT));
    EXPECT_EQ(reasonFor(folder_.file("plain"), "/"), std::strerror(EACCES));
    EXPECT_EQ(reasonFor(folder_.file("invalid"), "/"), std::strerror(ENOEXEC));
    EXPECT_EQ(reasonFor(folder_.file("orphaned"), "/"), std::strerror(ENOENT));
    EXPECT_EQ(reasonFor(CHILD_HELPER, folder_.file("absent")), std::strerror(ENOENT));
    EXPECT_EQ(reasonFor(CHILD_HELPER, folder_.file("plain")), std::strerror(ENOTDIR));
    expectNoChildren();
}

TEST_F(PosixChildProcessTest, FollowsNoLinkIntoTheFolder)
{
    std::filesystem::create_directory(folder_.file("folder"));
    std::filesystem::create_directory_symlink(folder_.file("folder"), folder_.file("link"));
    const auto child = launcher_.make({CHILD_HELPER, {"folder"}, folder_.file("link"), {}});
    EXPECT_NE(child->launch(), std::nullopt);
    expectNoChildren();
}

TEST_F(PosixChildProcessTest, FiftyRunSideBySide)
{
    std::vector<std::shared_ptr<ChildProcess>> sleepers;
    for (int i = 0; i < 50; ++i) sleepers.push_back(launched({"sleep"}));
    std::vector<std::future<int>> ends;
    for (const auto& child : sleepers)
        ends.push_back(std::async(std::launch::async, [&child] {
            EXPECT_EQ(child->readOutputToEnd(), "");
            return child->waitUntilExit();
        }));
    EXPECT_TRUE(std::ranges::all_of(sleepers, [](const auto& child) { return child->isRunning(); }));
    launcher_.terminateAll();
    for (auto& end : ends) EXPECT_EQ(end.get(), 128 + SIGTERM);
    expectNoChildren();
}

TEST_F(PosixChildProcessTest, NoneIsLaunchedAnyMoreWhenAllHaveBeenTerminated)
{
    const auto before = launcher_.make(setup({"sleep"}));
    launcher_.terminateAll();
    EXPECT_EQ(before->launch(), std::strerror(ECANCELED));
    EXPECT_EQ(launcher_.make(setup({"sleep"}))->launch(), std::strerror(ECANCELED));
    expectNoChildren();
}

TEST_F(PosixChildProcessTest, LaunchesOnManyThreadsLeakNothingIntoOneAnother)
{
    std::vector<std::future<std::string>> outputs;
    for (int i = 0; i < 16; ++i)
        outputs.push_back(std::async(std::launch::async, [this] { return outputOf({"descriptors"}); }));
    for (auto& output : outputs) EXPECT_EQ(output.get(), "0 1 2 ");
}

TEST_F(PosixChildProcessTest, ADroppedChildLeavesNoZombie)
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
