// Launches: those that fail, many at a time, and none after the end of all.
#include "PosixChildProcessFixture.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {

namespace {

using PosixProcessLauncherTest = PosixChildProcessFixture;

TEST_F(PosixProcessLauncherTest, NamesTheReasonOfAFailedLaunch)
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

TEST_F(PosixProcessLauncherTest, FollowsNoLinkIntoTheFolder)
{
    std::filesystem::create_directory(folder_.file("folder"));
    std::filesystem::create_directory_symlink(folder_.file("folder"), folder_.file("link"));
    const auto child = launcher_.make({CHILD_HELPER, {"folder"}, folder_.file("link"), {}});
    EXPECT_NE(child->launch(), std::nullopt);
    expectNoChildren();
}

TEST_F(PosixProcessLauncherTest, FiftyRunSideBySide)
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

TEST_F(PosixProcessLauncherTest, LaunchesOnManyThreadsLeakNothingIntoOneAnother)
{
    std::vector<std::future<std::string>> outputs;
    for (int i = 0; i < 16; ++i)
        outputs.push_back(std::async(std::launch::async, [this] { return outputOf({"descriptors"}); }));
    for (auto& output : outputs) EXPECT_EQ(output.get(), "0 1 2 ");
}

TEST_F(PosixProcessLauncherTest, NoneIsLaunchedAnyMoreWhenAllHaveBeenTerminated)
{
    const auto before = launcher_.make(setup({"sleep"}));
    launcher_.terminateAll();
    EXPECT_EQ(before->launch(), std::strerror(ECANCELED));
    EXPECT_EQ(launcher_.make(setup({"sleep"}))->launch(), std::strerror(ECANCELED));
    expectNoChildren();
}

}  // namespace

}  // namespace sonvara::test
