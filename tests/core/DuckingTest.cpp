// How far players are lowered, with which commands, and the bookkeeping of it.
#include "SpeechManagerFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Records the one script it is given.
struct OneScript final : ScriptRunner {
    std::string script;
    ScriptResult result;
    ScriptResult run(const std::string& source) override
    {
        script = source;
        return result;
    }
};

TEST(PlayerVolumeTest, SettingClampsToTheRange)
{
    OneScript scripts;
    SpeechManager::setPlayerVolume(scripts, "Music", -5);
    EXPECT_EQ(scripts.script, "tell application \"Music\" to set sound volume to 0");
    SpeechManager::setPlayerVolume(scripts, "Music", 150);
    EXPECT_EQ(scripts.script, "tell application \"Music\" to set sound volume to 100");
}

TEST(PlayerVolumeTest, ReadingGivesTheNumberOrNothing)
{
    OneScript scripts;
    scripts.result.integer = 64;
    EXPECT_EQ(SpeechManager::playerVolume(scripts, "Music"), 64);
    scripts.result = ScriptResult{};
    scripts.result.text = "no number";
    EXPECT_EQ(SpeechManager::playerVolume(scripts, "Music"), 0);
    scripts.result.error = "no such player";
    EXPECT_EQ(SpeechManager::playerVolume(scripts, "Music"), std::nullopt);
    scripts.result = ScriptResult{false, std::nullopt, std::nullopt, 0};
    EXPECT_EQ(SpeechManager::playerVolume(scripts, "Music"), std::nullopt);
}

class DuckingTest : public SpeechManagerFixture {
protected:
    /// What a player at `from` is set to while a line is spoken.
    [[nodiscard]] int lowered(int from)
    {
        desktop.players.music.volume = from;
        report("Song " + std::to_string(++songs_));
        desktop.time.run();
        const auto spokenOver = volume();
        desktop.voice.finish();
        desktop.time.run();
        EXPECT_EQ(volume(), from);
        return spokenOver;
    }

private:
    int songs_ = 0;
};

TEST_F(DuckingTest, LoweredVolumesAreThoseOfTheTable)
{
    EXPECT_EQ(lowered(100), 35);
    EXPECT_EQ(lowered(90), 31);
    EXPECT_EQ(lowered(80), 28);
    EXPECT_EQ(lowered(70), 24);
    EXPECT_EQ(lowered(50), 17);
    EXPECT_EQ(lowered(40), 14);
    EXPECT_EQ(lowered(37), 12);
    EXPECT_EQ(lowered(30), 12);
    EXPECT_EQ(lowered(5), 12);
    EXPECT_EQ(lowered(0), 12);
}

TEST_F(DuckingTest, LoweredVolumesAgreeWithWholeNumberArithmetic)
{
    for (int volume = 0; volume <= 100; ++volume)
        EXPECT_EQ(lowered(volume), std::max(35 * volume / 100, 12)) << volume;
}

TEST_F(DuckingTest, ThePlayerIsLoweredWhileTheDJSpeaksAndPutBackAfterwards)
{
    report("Song 1");
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
    EXPECT_EQ(volume(), 35);
    desktop.voice.finish();
    desktop.time.run();
    EXPECT_EQ(volume(), 100);
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35", "Music=100"));
}

TEST_F(DuckingTest, ACancelPutsTheVolumeBackToo)
{
    desktop.players.music.volume = 80;
    report("Song 1");
    desktop.time.run();
    EXPECT_EQ(volume(), 28);
    stop();
    desktop.time.run();
    EXPECT_EQ(volume(), 80);
}

TEST_F(DuckingTest, AQuietPlayerIsTurnedUp)
{
    desktop.players.music.volume = 5;
    report("Song 1");
    desktop.time.run();
    EXPECT_EQ(volume(), 12);
    desktop.voice.finish();
    desktop.time.run();
    EXPECT_EQ(volume(), 5);
}

TEST_F(DuckingTest, CommandsRunAtUserInitiatedQuality)
{
    report("Song 1");
    desktop.time.run();
    EXPECT_THAT(desktop.time.postedQualities(), ElementsAre(QualityOfService::userInitiated));
    desktop.voice.finish();
    desktop.time.run();
    EXPECT_THAT(
        desktop.time.postedQualities(),
        ElementsAre(QualityOfService::userInitiated, FakeVoice::reportsAt, QualityOfService::userInitiated));
}

TEST_F(DuckingTest, AnEndThatAThreadOfTheVoiceReportsIsHandledOnTheMainThread)
{
    desktop.voice.hasThread = true;
    report("Song 1");
    desktop.time.run();
    desktop.voice.finish();
    EXPECT_EQ(desktop.time.pendingWork(), 1U)
        << "the thread has left word for the main thread, and done nothing else";
    EXPECT_THAT(desktop.time.postedQualities(), ElementsAre(QualityOfService::userInitiated));
    desktop.time.run();
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35", "Music=100"));
}

TEST_F(DuckingTest, ACancelThatAThreadOfTheVoiceReportsIsHandledOnTheMainThread)
{
    desktop.voice.hasThread = true;
    report("Song 1");
    desktop.time.run();
    manager->stopNow();
    EXPECT_EQ(desktop.time.pendingWork(), 1U);
    EXPECT_THAT(desktop.time.postedQualities(), ElementsAre(QualityOfService::userInitiated));
    desktop.time.run();
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35", "Music=100"));
}

TEST_F(DuckingTest, AFailedReadChangesAndRecordsNothing)
{
    ScriptResult failed;
    failed.error = "gone";
    desktop.players.music.volumeReadResult = failed;
    report("Song 1");
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
    desktop.voice.finish();
    desktop.time.run();
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?"));
}

TEST_F(DuckingTest, AnEmptySourceIsSpokenWithoutDucking)
{
    report("Song 1", "");
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
    EXPECT_THAT(volumeCommands(), IsEmpty());
}

TEST_F(DuckingTest, WithTheSettingOffThePlayerIsLeftAlone)
{
    desktop.defaults.values["duckMusic"] = false;
    report("Song 1");
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
    EXPECT_THAT(volumeCommands(), IsEmpty());
}

TEST_F(DuckingTest, ASecondAnnouncementWhileLoweredDoesNotReadTheVolumeAgain)
{
    report("Song 1");
    desktop.time.run();
    report("Song 2");  // cancels the first line; its duck is still recorded when the second line starts
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 2U);
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35", "Music=100"));
    EXPECT_EQ(volume(), 100) << "the second line is heard over music at its normal volume";
    desktop.voice.finish();
    desktop.time.run();
    EXPECT_EQ(volume(), 100);
}

TEST_F(DuckingTest, WithAIIntrosTheNextLineDucksAfresh)
{
    desktop.defaults.values["aiIntros"] = true;
    desktop.files.executables = {"/usr/bin/claude"};
    desktop.launcher.behaviour.output = "A line.\n";
    report("Song 1");
    desktop.time.advance(1s);
    report("Song 2");
    desktop.time.advance(1s);
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35", "Music=100", "Music?", "Music=35"));
}

TEST_F(DuckingTest, ADuckIsRecordedInATurnOfItsOwnAfterWhatIsDueAlready)
{
    report("Song 1");
    // The third turn from now is the one in which the player is being lowered.
    desktop.time.post(
        [this] { desktop.time.post([this] { desktop.time.post([this] { manager->didFinish(); }); }); });
    desktop.time.run();
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35")) << "the end came before the record";
}

TEST_F(DuckingTest, ALineThatEndsBeforeItsDuckIsRecordedLeavesThePlayerLoweredUntilTheNextEnd)
{
    desktop.players.music.latency = 1s;
    report("Song 1");
    desktop.time.run();
    desktop.voice.finish();  // before the volume has even been read
    desktop.time.advance(5s);
    EXPECT_EQ(volume(), 35);
    report("Song 2");
    desktop.time.advance(5s);
    desktop.voice.finish();
    desktop.time.advance(5s);
    EXPECT_EQ(volume(), 100);
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35", "Music=100"));
}

TEST_F(DuckingTest, OfTwoDucksThatBothFoundNoRecordTheLaterOneIsRestored)
{
    desktop.players.music.latency = 1s;
    report("Song 1");
    desktop.time.run();
    report("Song 2");
    desktop.time.advance(1500ms);
    report("Song 3");  // its duck starts while the first is between its read and its record
    desktop.time.advance(10s);
    ASSERT_TRUE(desktop.voice.isSpeaking());
    desktop.voice.finish();
    desktop.time.advance(10s);
    EXPECT_EQ(desktop.voice.lines.size(), 3U);
    EXPECT_THAT(volumeCommands(),
                ElementsAre("Music?", "Music?", "Music=35", "Music=35", "Music?", "Music=12", "Music=35"))
        << "the volume that had been lowered already was saved last, and is what comes back";
}

TEST_F(DuckingTest, ADuckThatEndsAfterTheManagerIsGoneLeavesNoRecord)
{
    desktop.players.music.latency = 1s;
    report("Song 1");
    desktop.time.run();
    const std::weak_ptr weak = manager;
    manager.reset();
    EXPECT_TRUE(weak.expired());
    desktop.time.advance(5s);
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35"));
}

TEST_F(DuckingTest, AManagerThatIsGoneWhenTheEndOfItsLineIsHeardLeavesThePlayer)
{
    desktop.voice.hasThread = true;
    report("Song 1");
    desktop.time.run();
    desktop.voice.finish();
    manager.reset();
    desktop.time.advance(5s);
    EXPECT_THAT(volumeCommands(), ElementsAre("Music?", "Music=35"));
}

TEST_F(DuckingTest, TheBookkeepingIsOfThePlayerThatWasLowered)
{
    desktop.players.spotify.volume = 60;
    report("Song 1", "Spotify");
    desktop.time.run();
    EXPECT_EQ(desktop.players.spotify.volume, 21);
    desktop.voice.finish();
    desktop.time.run();
    EXPECT_THAT(volumeCommands(), ElementsAre("Spotify?", "Spotify=21", "Spotify=60"));
}

}  // namespace
}  // namespace sonvara::test
