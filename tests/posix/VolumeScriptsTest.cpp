// The core's commands about volumes, between its workers and the main thread.
#include "platform/posix/VolumeScripts.h"

#include "VolumeFakes.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

class VolumeScriptsTest : public testing::Test {
protected:
    HeldMainQueue queue;
    OnePlayer player{queue};
    OtherScripts others;
    int recalls = 0;
    LoweredPlayers lowered{player,
                           {.now = [] { return steady_clock::now(); },
                            .today = [] { return 0; },
                            .keep = [](const LoweredNotes&) {},
                            .recall = [this] { ++recalls; },
                            .wakeAt = [](VolumeTime) {}}};
    VolumeScripts scripts{others, queue, lowered, 60s};

    void havePlayer()
    {
        lowered.remember({});
        lowered.appeared(OnePlayer::run, testPlayer);
    }
    ScriptResult run(const std::string& source)
    {
        ScriptResult result;
        onWorker(queue, [&] { result = scripts.run(source); });
        return result;
    }
};

TEST_F(VolumeScriptsTest, AReadGivesThePercentAsSoonAsThePlayerAnswers)
{
    havePlayer();
    const auto begun = steady_clock::now();
    const auto result = run(getVolume);
    EXPECT_LT(steady_clock::now() - begun, 30s);
    EXPECT_EQ(result.text, "80");
    EXPECT_EQ(result.integer, 80);
    EXPECT_EQ(result.error, std::nullopt);
    EXPECT_TRUE(others.sources.empty());
}

TEST_F(VolumeScriptsTest, AVolumeThatCannotBeReadIsAnErrorThatNamesThePlayer)
{
    havePlayer();
    EXPECT_EQ(run(volumeScript({spotifySource, std::nullopt})).error, "Spotify tells no volume");
    player.answer = std::nullopt;
    const auto result = run(getVolume);
    EXPECT_EQ(result.error, "Music tells no volume");
    EXPECT_EQ(result.text, std::nullopt);
}

TEST_F(VolumeScriptsTest, ASetThatFollowsAReadLowersAndAnyOtherOneIsTheWayBack)
{
    havePlayer();
    lowered.lineBegan();
    onWorker(queue, [this] {
        (void)scripts.run(getVolume);
        EXPECT_EQ(scripts.run(setVolumeTo28).error, std::nullopt);
    });
    EXPECT_EQ(player.told, std::vector<double>{0.28});
    player.answer->volume = 0.28;
    run(setVolumeTo28);
    EXPECT_EQ(player.told, (std::vector<double>{0.28, 0.8}));
}

TEST_F(VolumeScriptsTest, AReadIsFollowedByOneSetOnly)
{
    havePlayer();
    lowered.lineBegan();
    onWorker(queue, [this] {
        (void)scripts.run(getVolume);
        (void)scripts.run(setVolumeTo28);
        (void)scripts.run(setVolumeTo28);
    });
    EXPECT_EQ(player.told, (std::vector<double>{0.28, 0.8}));
}

TEST_F(VolumeScriptsTest, EveryOtherScriptIsHandedOnAndItsResultBack)
{
    havePlayer();
    EXPECT_EQ(run("a poll").text, "as it is");
    EXPECT_EQ(others.sources, std::vector<std::string>{"a poll"});
}

TEST_F(VolumeScriptsTest, APollIsAnOccasionToLookOnTheMainThreadWhileAnythingIsOwed)
{
    (void)scripts.run("a poll");
    EXPECT_EQ(recalls, 0) << "this may be any thread";
    queue.run();
    EXPECT_EQ(recalls, 1);
    lowered.remember({});
    (void)scripts.run("a poll");
    EXPECT_TRUE(queue.isEmpty()) << "nothing is owed to anybody";
}

TEST_F(VolumeScriptsTest, ASetDoesNotWait)
{
    EXPECT_EQ(scripts.run(setVolumeTo28).error, std::nullopt);
    EXPECT_FALSE(queue.isEmpty());
}

TEST_F(VolumeScriptsTest, AReadEndsAfterItsTimeAndALateAnswerCountsForNothing)
{
    havePlayer();
    lowered.lineBegan();
    VolumeScripts impatient(others, queue, lowered, 20ms);
    const auto begun = steady_clock::now();
    EXPECT_EQ(impatient.run(getVolume).error, "Music tells no volume");
    EXPECT_GE(steady_clock::now() - begun, 20ms);
    queue.run();
    (void)impatient.run(setVolumeTo28);
    queue.run();
    EXPECT_TRUE(player.told.empty());
}

TEST_F(VolumeScriptsTest, ReadsEndWhenItIsClosedAlsoThoseThatWait)
{
    havePlayer();
    const auto begun = steady_clock::now();
    auto waiting = std::async(std::launch::async, [this] { return scripts.run(getVolume); });
    while (queue.isEmpty()) std::this_thread::yield();
    scripts.close();
    EXPECT_EQ(waiting.get().error, "Music tells no volume");
    EXPECT_EQ(scripts.run(getVolume).error, "Music tells no volume");
    EXPECT_LT(steady_clock::now() - begun, 30s);
}

}  // namespace
}  // namespace sonvara::test
