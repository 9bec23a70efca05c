// The whole core wired together: from a player's report to the spoken line, the icon and the menu.
#include "AppDelegateFixture.h"
#include "monitor/MusicMonitor.h"
#include "speech/SpeechManager.h"
#include "ui/StatusBarController.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

TEST_F(AppDelegateTest, UnderATestHarnessNothingIsCreated)
{
    for (const auto* value : {"", "/some/path"}) {
        desktop.environment.values["XCTestConfigurationFilePath"] = value;
        launch();
        desktop.time.advance(10s);
        EXPECT_EQ(delegate->musicMonitor, nullptr);
        EXPECT_EQ(delegate->speechManager, nullptr);
        EXPECT_EQ(delegate->statusBarController, nullptr);
        EXPECT_EQ(desktop.statusBar.state.itemsMade, 0);
        EXPECT_THAT(desktop.notifications.registrations, IsEmpty());
        EXPECT_THAT(desktop.players.scripts, IsEmpty());
    }
}

TEST_F(AppDelegateTest, LaunchingCreatesEverythingOnce)
{
    launch();
    EXPECT_NE(delegate->musicMonitor, nullptr);
    EXPECT_NE(delegate->speechManager, nullptr);
    EXPECT_NE(delegate->statusBarController, nullptr);
    EXPECT_EQ(desktop.statusBar.state.itemsMade, 1);
}

TEST_F(AppDelegateTest, SubscribingDeliversTheInitialValues)
{
    launch();
    const auto rebuilds = desktop.statusBar.state.menu->rebuilds;
    EXPECT_EQ(rebuilds, 1) << "refreshes are queued, never run in place";
    EXPECT_EQ(desktop.voice.stops, 0);
    desktop.time.post([this] {
        // Queued at launch before this: the icon update, both refreshes and the stop.
        EXPECT_EQ(desktop.statusBar.state.menu->rebuilds, 3);
        EXPECT_EQ(desktop.voice.stops, 1);
    });
    desktop.time.run();
    EXPECT_THAT(desktop.systemLog.texts(LogLevel::error, "StatusBarController"),
                ElementsAre("updateIcon requested but cached icon missing (isPlaying=false)"));
}

TEST_F(AppDelegateTest, ATrackStartedInAPlayerIsAnnounced)
{
    launch();
    desktop.time.advance(1s);
    play("Song 1");
    notify("Song 1");
    desktop.time.run();
    ASSERT_EQ(desktop.voice.lines.size(), 1U);
    EXPECT_THAT(desktop.voice.current(), EndsWith(" Song 1 by Artist of Song 1, from Album of Song 1."));
    EXPECT_EQ(desktop.players.music.volume, 35);
}

TEST_F(AppDelegateTest, ATrackThatPlaysAtStartIsAnnouncedByTheFirstPoll)
{
    play("Song 1");
    launch();
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
}

TEST_F(AppDelegateTest, APlayerThatGoesOnWithTheSameTrackIsAnnouncedOnce)
{
    play("Song 1");
    launch();
    desktop.time.advance(1min);
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
}

TEST_F(AppDelegateTest, APausedTrackAndAnEmptyNameAreNotAnnounced)
{
    launch();
    desktop.time.run();
    notify("Song 1", "Paused");
    desktop.time.run();
    EXPECT_EQ(delegate->musicMonitor->trackName.get(), "Song 1");
    notify("", "Stopped");
    desktop.time.run();
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
}

TEST_F(AppDelegateTest, EveryUpdateOfASilentPlayerAsksForAStop)
{
    launch();
    desktop.time.run();
    const auto stops = desktop.voice.stops;
    desktop.time.advance(9s);
    EXPECT_EQ(desktop.voice.stops, stops + 3);
    play("Song 1");
    desktop.time.advance(3s);
    const auto whilePlaying = desktop.voice.stops;
    desktop.time.advance(9s);
    EXPECT_EQ(desktop.voice.stops, whilePlaying);
}

TEST_F(AppDelegateTest, APauseSilencesTheDJAndRestoresTheVolume)
{
    play("Song 1");
    launch();
    desktop.time.run();
    desktop.players.music.isPlaying = false;
    notify("Song 1", "Paused");
    desktop.time.run();
    EXPECT_FALSE(desktop.voice.isSpeaking());
    EXPECT_EQ(desktop.players.music.volume, 100);
}

TEST_F(AppDelegateTest, TheAnnouncementReadsEverythingButTheNameWhenItsTaskRuns)
{
    launch();
    desktop.time.run();
    desktop.time.post([this] {
        auto& monitor = *delegate->musicMonitor;
        monitor.isPlaying.set(true);
        monitor.trackName.set("Old name");
        monitor.artistName.set("New artist");
        monitor.albumName.set("New album");
        monitor.isFavorited.set(true);
        monitor.source.set("Spotify");
        monitor.trackName.set("New name");
    });
    desktop.time.run();
    ASSERT_EQ(desktop.voice.lines.size(), 1U)
        << "the second name goes on with the album that the first was given";
    EXPECT_THAT(desktop.voice.lines[0].utterance.line,
                EndsWith(" Old name by New artist, from New album. One of your favorites!"));
    EXPECT_THAT(desktop.players.volumeCommands, ElementsAre("Spotify?", "Spotify=35"));
}

TEST_F(AppDelegateTest, APlayingFlagThatIsGoneWhenTheTaskRunsKeepsItQuiet)
{
    launch();
    desktop.time.run();
    desktop.time.post([this] {
        auto& monitor = *delegate->musicMonitor;
        monitor.isPlaying.set(true);
        monitor.trackName.set("Song 1");
        monitor.isPlaying.set(false);
    });
    desktop.time.run();
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
}

TEST_F(AppDelegateTest, TheMenuFollowsTheTrackAndTheLastLine)
{
    play("Song 1");
    launch();
    desktop.time.run();
    const auto& items = desktop.statusBar.state.menu->items;
    EXPECT_EQ(items.at(1).title, "Song 1 - Artist of Song 1");
    ASSERT_TRUE(items.at(3).attributedTitle);
    EXPECT_THAT(items.at(3).attributedTitle->text, testing::HasSubstr("Song 1"));
}

TEST_F(AppDelegateTest, TheIconFollowsThePlayingState)
{
    launch();
    desktop.time.run();
    EXPECT_TRUE(desktop.statusBar.state.button.image->drawing.isTemplate);
    play("Song 1");
    desktop.time.advance(3s);
    EXPECT_FALSE(desktop.statusBar.state.button.image->drawing.isTemplate);
}

TEST_F(AppDelegateTest, MutingInTheMenuReachesTheAnnouncerThroughTheStore)
{
    launch();
    desktop.time.run();
    desktop.statusBar.state.menu->choose("Mute DJ");
    play("Song 1");
    desktop.time.advance(3s);
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
}

TEST_F(AppDelegateTest, AReopenBringsUpTheSettings)
{
    delegate->applicationDidReopen();
    EXPECT_EQ(desktop.windows.made.size(), 0U) << "nothing is there before the launch";
    launch();
    delegate->applicationDidReopen();
    ASSERT_NE(desktop.windows.latest(), nullptr);
    EXPECT_TRUE(desktop.windows.latest()->isVisible());
}

}  // namespace
}  // namespace sonvara::test
