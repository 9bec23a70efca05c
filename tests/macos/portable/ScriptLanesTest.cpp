// Scripts of both players on real threads.
#include "platform/macos/players/ScriptLanes.h"

#include "platform/macos/players/ScriptComponent.h"
#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

/// Spotify hangs until it is let go; Music answers.
struct Component final : ScriptComponent {
    std::atomic<bool> isSpotifyInstalled = true;
    std::promise<void> letGo;
    std::shared_future<void> gate = letGo.get_future().share();
    std::atomic<int> asked = 0;

    bool isInstalled(const std::string& player) override
    {
        return player != spotifySource || isSpotifyInstalled;
    }
    void awaitConsent(const std::string& player) override
    {
        if (player == spotifySource) gate.wait();
    }
    ScriptResult execute(const std::string&) override
    {
        ++asked;
        return ScriptResult::ofText("notrunning");
    }
};

class ScriptLanesTest : public testing::Test {
protected:
    ~ScriptLanesTest() override
    {
        component_.letGo.set_value();
        (void)lanes_.finish(10s);
        for (auto& thread : threads_) thread.join();
    }

    Component component_;
    std::mutex mutex_;
    std::vector<std::thread> threads_;
    ScriptLanes lanes_{component_, [this](const std::string&) {
                           return [this](Task task) {
                               const std::lock_guard lock(mutex_);
                               threads_.emplace_back(std::move(task));
                           };
                       }};
};

TEST_F(ScriptLanesTest, APlayerThatHangsCostsAPollItsLimitAndOtherPlayersNothing)
{
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(lanes_.run(spotifyPollScript()).text, "error");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, ScriptLanes::pollLimit);
    EXPECT_EQ(lanes_.run(musicPollScript()).text, "notrunning");
}

TEST_F(ScriptLanesTest, AMissingApplicationIsNamedToNobody)
{
    component_.isSpotifyInstalled = false;
    EXPECT_FALSE(lanes_.run(spotifyPollScript()).created);
    EXPECT_FALSE(lanes_.run("tell application \"Elsewhere\" to quit").created);
    EXPECT_FALSE(lanes_.run("beep").created);
    EXPECT_EQ(component_.asked, 0);
}

TEST_F(ScriptLanesTest, FinishesWhenEveryCommandHasBeenRun)
{
    EXPECT_TRUE(lanes_.finish(0ms));
    lanes_.command(spotifySource, volumeScript({spotifySource, 80}), [](const ScriptResult&) {});
    EXPECT_FALSE(lanes_.finish(10ms));
}

}  // namespace
}  // namespace sonvara::test
