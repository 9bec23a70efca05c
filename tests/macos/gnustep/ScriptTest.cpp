// Scripts on the way to the script component and back.
#include "Probe.h"
#include "StandInTest.h"
#include "platform/macos/players/AppleScriptComponent.h"
#include "platform/macos/players/ScriptLanes.h"
#include "platform/macos/system/DispatchGlobalQueue.h"
#include "platform/macos/system/DispatchSerialQueue.h"
#include "support/PlayerScripts.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

using standins::ScriptAnswer;

class AppleScriptComponentTest : public StandInTest {
protected:
    /// Runs a script off the main thread.
    ScriptResult runScript(const std::string& source)
    {
        ScriptResult result;
        std::thread([&] { result = component_.execute(source); }).join();
        return result;
    }

    void TearDown() override
    {
        EXPECT_EQ(standins::scriptLeftovers(), 0);  // each run has drained its own pool
        StandInTest::TearDown();
    }

    AppleScriptComponent component_;
};

TEST_F(AppleScriptComponentTest, PassesTheSourceOnAsItIs)
{
    std::string seen;
    standins::setScripts([&seen](const std::string& source) {
        seen = source;
        return ScriptAnswer{};
    });
    const std::string source = "try\n    tell application \"Music\" to play track \"Müsik\"\nend try";
    (void)runScript(source);
    EXPECT_EQ(seen, source);
}

TEST_F(AppleScriptComponentTest, ReturnsTextAndNumber)
{
    standins::setScripts([](const std::string&) { return ScriptAnswer{.text = "80", .integer = 80}; });
    const ScriptResult result = runScript("get sound volume");
    EXPECT_TRUE(result.created);
    EXPECT_EQ(result.error, std::nullopt);
    EXPECT_EQ(result.text, "80");
    EXPECT_EQ(result.integer, 80);
}

TEST_F(AppleScriptComponentTest, ReturnsWhyAScriptFailed)
{
    standins::setScripts([](const std::string&) { return ScriptAnswer{.errorNumber = -1743}; });
    const ScriptResult result = runScript("get sound volume");
    EXPECT_TRUE(result.created);
    ASSERT_TRUE(result.error);
    EXPECT_NE(result.error->find("-1743"), std::string::npos) << *result.error;
    EXPECT_EQ(result.text, std::nullopt);
    EXPECT_EQ(result.integer, 0);
}

TEST_F(AppleScriptComponentTest, TellsWhenATextIsNoScript)
{
    EXPECT_FALSE(runScript("").created);
}

TEST_F(AppleScriptComponentTest, RunsOneScriptAtATime)
{
    std::atomic<int> ran = 0;
    standins::setScripts([&ran](const std::string&) {
        std::this_thread::yield();
        ++ran;
        return ScriptAnswer{.text = "notrunning"};
    });
    std::vector<std::thread> workers;
    for (int i = 0; i < 8; ++i) {
        workers.emplace_back([this] {
            for (int j = 0; j < 50; ++j) (void)component_.execute("poll");
        });
    }
    for (auto& worker : workers) worker.join();
    EXPECT_EQ(ran, 400);
}

TEST_F(AppleScriptComponentTest, KnowsWhichPlayersAreInstalled)
{
    standins::setInstalled({"Music"});
    EXPECT_TRUE(component_.isInstalled("Music"));
    EXPECT_FALSE(component_.isInstalled("Spotify"));
    EXPECT_FALSE(component_.isInstalled("Elsewhere"));
    standins::setInstalled({"Music", "Spotify"});
}

/// The lanes over the component, as the program puts them together.
class ScriptsTest : public AppleScriptComponentTest {
protected:
    ScriptsTest()
    {
        standins::setScripts([this](const std::string&) {
            ++ran_;
            return ScriptAnswer{.text = "notrunning"};
        });
    }
    ~ScriptsTest() override
    {
        standins::answerConsentQuestion();
        queues_.clear();  // when their work is done
        standins::setInstalled({"Music", "Spotify"});
    }

    /// Asks as the core does, on a worker.
    ScriptResult poll(const std::string& script)
    {
        ScriptResult result;
        std::thread([&] { result = lanes_.run(script); }).join();
        return result;
    }

    std::atomic<int> ran_ = 0;
    std::vector<std::unique_ptr<DispatchSerialQueue>> queues_;
    ScriptLanes lanes_{component_, [this](const std::string& player) {
                           queues_.push_back(std::make_unique<DispatchSerialQueue>(player));
                           return [queue = queues_.back().get()](Task task) { queue->post(std::move(task)); };
                       }};
};

TEST_F(ScriptsTest, NameNoApplicationThatIsNotInstalled)
{
    standins::setInstalled({"Music"});
    EXPECT_FALSE(poll(spotifyPollScript()).created);
    EXPECT_EQ(poll(musicPollScript()).text, "notrunning");
}

TEST_F(ScriptsTest, WaitForNoConsentToAnotherPlayer)
{
    standins::openConsentQuestion("Music");
    EXPECT_EQ(poll(musicPollScript()).text, "error");
    EXPECT_EQ(poll(spotifyPollScript()).text, "notrunning");
    EXPECT_EQ(ran_, 1);
}

TEST_F(ScriptsTest, LeaveTheWorkersToOthersWhileAQuestionIsOpen)
{
    standins::openConsentQuestion("Spotify");
    DispatchGlobalQueue workers;
    std::atomic<int> answered = 0;
    constexpr int polls = 2 * standins::mostWorkers;
    for (int i = 0; i < polls; ++i) {
        workers.post(QualityOfService::utility, [&] {
            (void)lanes_.run(spotifyPollScript());
            ++answered;
        });
    }
    std::atomic<bool> isOver = false;
    (void)workers.postAfter(QualityOfService::standard, std::chrono::milliseconds(100),
                            [&] { isOver = true; });
    ASSERT_TRUE(probe::runUntil([&] { return answered == polls && isOver; })) << "a time limit waits, too";
    EXPECT_EQ(ran_, 0);
}

}  // namespace
}  // namespace sonvara::test
