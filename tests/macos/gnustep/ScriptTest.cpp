// Scripts on the way to the script component and back.
#include "StandInTest.h"
#include "platform/macos/players/AppleScriptRunner.h"

#include <atomic>
#include <thread>

namespace sonvara::test {
namespace {

using standins::ScriptAnswer;

/// Runs a script on a worker, as the system does.
ScriptResult runScript(const std::string& source)
{
    ScriptResult result;
    std::thread([&] { result = AppleScriptRunner().run(source); }).join();
    return result;
}

class AppleScriptRunnerTest : public StandInTest {
protected:
    void TearDown() override
    {
        EXPECT_EQ(standins::scriptLeftovers(), 0);  // each run has drained its own pool
        StandInTest::TearDown();
    }
};

TEST_F(AppleScriptRunnerTest, PassesTheSourceOnAsItIs)
{
    std::string seen;
    standins::setScripts([&seen](const std::string& source) {
        seen = source;
        return ScriptAnswer{};
    });
    const std::string source = "try\n    tell application \"Müsik\"\nend try";
    (void)runScript(source);
    EXPECT_EQ(seen, source);
}

TEST_F(AppleScriptRunnerTest, ReturnsTextAndNumber)
{
    standins::setScripts([](const std::string&) { return ScriptAnswer{.text = "80", .integer = 80}; });
    const ScriptResult result = runScript("get sound volume");
    EXPECT_TRUE(result.created);
    EXPECT_EQ(result.error, std::nullopt);
    EXPECT_EQ(result.text, "80");
    EXPECT_EQ(result.integer, 80);
}

TEST_F(AppleScriptRunnerTest, ReturnsWhyAScriptFailed)
{
    standins::setScripts([](const std::string&) { return ScriptAnswer{.errorNumber = -1743}; });
    const ScriptResult result = runScript("get sound volume");
    EXPECT_TRUE(result.created);
    ASSERT_TRUE(result.error);
    EXPECT_NE(result.error->find("-1743"), std::string::npos) << *result.error;
    EXPECT_EQ(result.text, std::nullopt);
    EXPECT_EQ(result.integer, 0);
}

TEST_F(AppleScriptRunnerTest, TellsWhenATextIsNoScript)
{
    EXPECT_FALSE(runScript("").created);
}

TEST_F(AppleScriptRunnerTest, RunsOneScriptAtATime)
{
    std::atomic<int> ran = 0;
    standins::setScripts([&ran](const std::string&) {
        std::this_thread::yield();
        ++ran;
        return ScriptAnswer{.text = "notrunning"};
    });
    std::vector<std::thread> workers;
    for (int i = 0; i < 8; ++i) {
        workers.emplace_back([] {
            for (int j = 0; j < 50; ++j) (void)AppleScriptRunner().run("poll");
        });
    }
    for (auto& worker : workers) worker.join();
    EXPECT_EQ(ran, 400);
}

}  // namespace
}  // namespace sonvara::test
