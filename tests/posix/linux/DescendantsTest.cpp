// What becomes of the programs below ours. Linux lets a process ask to be told of their ends.
#include "platform/posix/PosixProcessLauncher.h"

#include "helpers/TemporaryFolder.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>

namespace sonvara::test {

namespace {

class DescendantsTest : public testing::Test {
protected:
    DescendantsTest() { EXPECT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0); }
    ~DescendantsTest() override { ::prctl(PR_SET_CHILD_SUBREAPER, 0); }

    static pid_t parentOf(pid_t pid)
    {
        std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
        std::string number;
        std::string name;
        std::string state;
        pid_t parent = 0;
        stat >> number >> name >> state >> parent;
        return parent;
    }

    // Waits for the end of a process that has lost its parent.
    static void expectTerminated(pid_t pid)
    {
        int status = 0;
        ASSERT_EQ(::waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), SIGTERM);
    }

    TemporaryFolder folder_;
    PosixProcessLauncher launcher_;
};

TEST_F(DescendantsTest, AProgramEndsWithTheOneThatLaunchedItEvenWhenThatIsKilled)
{
    const auto number = folder_.file("number");
    const auto launching =
        launcher_.make({LAUNCHING_HELPER, {CHILD_HELPER, "number", number}, folder_.path(), {}});
    ASSERT_EQ(launching->launch(), std::nullopt);
    pid_t launchedByIt = 0;
    while (!(std::ifstream(number) >> launchedByIt)) std::this_thread::yield();

    ASSERT_EQ(::kill(parentOf(launchedByIt), SIGKILL), 0);
    EXPECT_EQ(launching->waitUntilExit(), 128 + SIGKILL);
    expectTerminated(launchedByIt);
}

TEST_F(DescendantsTest, ARequestAfterTheEndReachesWhatTheProgramLeftBehind)
{
    const auto child = launcher_.make({CHILD_HELPER, {"orphan"}, folder_.path(), {}});
    ASSERT_EQ(child->launch(), std::nullopt);
    const auto leftBehind = static_cast<pid_t>(std::stol(child->readOutputToEnd()));
    ASSERT_FALSE(child->isRunning());
    child->terminate();
    expectTerminated(leftBehind);
    EXPECT_EQ(child->waitUntilExit(), 7);
}

}  // namespace

}  // namespace sonvara::test
