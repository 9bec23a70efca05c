// What polls ask the players, and what the monitor makes of their answers.
#include "MusicMonitorFixture.h"
#include "support/PlayerScripts.h"

#include <gmock/gmock.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MusicMonitorTest, RegistersForBothPlayersMusicFirst)
{
    start();
    EXPECT_THAT(desktop.notifications.registrations,
                ElementsAre("com.apple.Music.playerInfo", "com.spotify.client.PlaybackStateChanged"));
    EXPECT_THAT(desktop.systemLog.published(LogLevel::debug, "MusicMonitor"),
                ElementsAre("MusicMonitor initialized and monitoring started"));
}

TEST_F(MusicMonitorTest, PollsAtStartAndEveryThreeSecondsMusicBeforeSpotifyAtUtilityQuality)
{
    start();
    EXPECT_THAT(desktop.players.scripts, IsEmpty()) << "the first poll runs on a worker, after construction";
    desktop.time.run();
    ASSERT_EQ(desktop.players.scripts.size(), 2U);
    EXPECT_NE(desktop.players.scripts[0].find("\"Music\""), std::string::npos);
    EXPECT_NE(desktop.players.scripts[1].find("\"Spotify\""), std::string::npos);
    EXPECT_THAT(desktop.time.postedQualities(), ElementsAre(QualityOfService::utility));
    desktop.time.advance(2999ms);
    EXPECT_EQ(desktop.players.scripts.size(), 2U);
    desktop.time.advance(1ms);
    EXPECT_EQ(desktop.players.scripts.size(), 4U);
    desktop.time.advance(30s);
    EXPECT_EQ(desktop.players.scripts.size(), 24U);
}

TEST_F(MusicMonitorTest, APlayingSpotifyWinsOverAPausedMusic)
{
    desktop.players.music = paused("Paused Song");
    desktop.players.spotify = playing("Spotify Song");
    start();
    desktop.time.run();
    EXPECT_EQ(monitor->trackName.get(), "Spotify Song");
    EXPECT_EQ(monitor->artistName.get(), "Artist A");
    EXPECT_EQ(monitor->albumName.get(), "Album A");
    EXPECT_EQ(monitor->source.get(), "Spotify");
    EXPECT_TRUE(monitor->isPlaying.get());
}

TEST_F(MusicMonitorTest, MusicWinsWhenBothPlay)
{
    desktop.players.music = playing("Music Song");
    desktop.players.spotify = playing("Spotify Song");
    start();
    desktop.time.run();
    EXPECT_EQ(monitor->trackName.get(), "Music Song");
    EXPECT_EQ(monitor->source.get(), "Music");
}

TEST_F(MusicMonitorTest, WhatAPollFindsWinsOverTheLastNotification)
{
    desktop.players.spotify = paused("Spotify Song");
    start();
    desktop.notifications.deliver(event(musicNotification, "Playing", "Music Song"));
    desktop.time.run();
    EXPECT_EQ(monitor->trackName.get(), "Spotify Song");
}

TEST_F(MusicMonitorTest, ASpotifyPollNeverMarksATrackAsLoved)
{
    desktop.players.music = paused("Music Song");
    desktop.players.music.isLoved = true;
    start();
    desktop.time.run();
    EXPECT_TRUE(monitor->isFavorited.get());
    desktop.players.spotify = playing("Spotify Song");
    desktop.players.spotify.isLoved = true;
    desktop.time.advance(3s);
    EXPECT_EQ(monitor->source.get(), "Spotify");
    EXPECT_FALSE(monitor->isFavorited.get());
}

TEST_F(MusicMonitorTest, AMusicWithoutACurrentTrackIsAbsentAndNotLogged)
{
    desktop.players.music.isRunning = true;
    desktop.players.spotify = paused("Spotify Song");
    start();
    desktop.time.run();
    EXPECT_EQ(monitor->trackName.get(), "Spotify Song");
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(MusicMonitorTest, AMusicAnswerOfFourPartsIsLoggedAsUnexpectedAndAbsent)
{
    answerMusicPollWith(" a||b||c||true ");
    start();
    desktop.time.run();
    EXPECT_EQ(monitor->trackName.get(), "");
    EXPECT_THAT(errors(), ElementsAre("Unexpected Music output:  a||b||c||true "));
    EXPECT_EQ(desktop.systemLog.messages[1].published, "Unexpected <private> output: <private>");
}

TEST_F(MusicMonitorTest, ASpotifyAnswerOfThreePartsIsLoggedAsUnexpectedAndAbsent)
{
    desktop.players.spotify.pollResult = ScriptResult::ofText("a||b||c");
    start();
    desktop.time.run();
    EXPECT_EQ(monitor->trackName.get(), "");
    EXPECT_THAT(errors(), ElementsAre("Unexpected Spotify output: a||b||c"));
}

TEST_F(MusicMonitorTest, TheWordsForNothingAreComparedBeforeTrimming)
{
    answerMusicPollWith(" error");
    start();
    desktop.time.run();
    EXPECT_THAT(errors(), ElementsAre("Unexpected Music output:  error"));
}

TEST_F(MusicMonitorTest, AScriptErrorIsLoggedWithItsDescription)
{
    ScriptResult failed;
    failed.error = "not allowed";
    desktop.players.music.pollResult = failed;
    start();
    desktop.time.run();
    EXPECT_THAT(errors(), ElementsAre("Music AppleScript error: not allowed"));
    EXPECT_EQ(desktop.systemLog.messages[1].published, "<private> AppleScript error: <private>");
}

TEST_F(MusicMonitorTest, AResultWithoutTextOrErrorAndAScriptThatCannotBeMadeAreSilent)
{
    desktop.players.music.pollResult = ScriptResult{};
    desktop.players.spotify.pollResult = ScriptResult{false, std::nullopt, "which nobody asks for", 0};
    start();
    desktop.time.run();
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_EQ(monitor->trackName.get(), "");
}

TEST_F(MusicMonitorTest, ATextBesideAnErrorCounts)
{
    ScriptResult both;
    both.text = "Song||Artist||Album||true||false";
    both.error = "ignored";
    desktop.players.music.pollResult = both;
    start();
    desktop.time.run();
    EXPECT_EQ(monitor->trackName.get(), "Song");
    EXPECT_THAT(errors(), IsEmpty());
}

}  // namespace
}  // namespace sonvara::test
