// The whole core wired together: from a player's report to the spoken line, the icon and the menu.
#include "app/AppDelegate.h"

#include "app/SonvaraApp.h"
#include "fakes/FakeDesktop.h"
#include "monitor/MusicMonitor.h"
#include "speech/SpeechManager.h"
#include "support/PlayerScripts.h"
#include "ui/StatusBarController.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

class AppDelegateTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = desktop.log.get();
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(desktop.platform);

    void launch() { delegate->applicationDidFinishLaunching(); }
    void play(const std::string& title)
    {
        auto& music = desktop.players.music;
        music.isRunning = true;
        music.isPlaying = true;
        music.title = title;
        music.artist = "Artist of " + title;
        music.album = "Album of " + title;
    }
    void notify(const std::string& title, const std::string& state = "Playing")
    {
        desktop.notifications.deliver({musicNotification, UserInfo{{"Player State", state},
                                                                   {"Name", title},
                                                                   {"Artist", "Artist of " + title},
                                                                   {"Album", "Album of " + title}}});
    }
};

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
}

TEST_F(AppDelegateTest, TheAnnouncementReadsTheMonitorThatGaveTheName)
{
    launch();
    desktop.time.run();
    const auto monitor = delegate->musicMonitor;
    delegate->musicMonitor = MusicMonitor::create(desktop.platform);
    desktop.time.post([&] {
        monitor->isPlaying.set(true);
        monitor->trackName.set("Song 1");
    });
    desktop.time.run();
    ASSERT_EQ(desktop.voice.lines.size(), 1U);
    EXPECT_THAT(desktop.voice.current(), EndsWith(" Song 1."));
}

TEST_F(AppDelegateTest, ANameThatIsDeliveredWithoutAMonitorInItsFieldIsAnnounced)
{
    launch();
    desktop.time.run();
    const auto monitor = std::exchange(delegate->musicMonitor, nullptr);
    desktop.time.post([&] {
        monitor->isPlaying.set(true);
        monitor->trackName.set("Song 1");
    });
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
}

TEST_F(AppDelegateTest, TheWiringDoesNotKeepTheMonitorAlive)
{
    launch();
    desktop.time.run();
    const std::weak_ptr monitor = delegate->musicMonitor;
    delegate->musicMonitor.reset();
    delegate->statusBarController.reset();
    EXPECT_TRUE(monitor.expired());
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

TEST_F(AppDelegateTest, AReleasedDelegateIsSkippedByItsPendingTasks)
{
    play("Song 1");
    launch();
    delegate.reset();
    desktop.time.advance(9s);
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
}

TEST_F(AppDelegateTest, ADelegateThatIsGoneWhenItsStopIsDueStopsNothing)
{
    play("Song 1");
    launch();
    desktop.time.advance(1s);
    ASSERT_TRUE(desktop.voice.isSpeaking());
    const auto speech = delegate->speechManager;  // somebody else still holds the announcer
    desktop.time.post([this] {
        delegate->musicMonitor->isPlaying.set(false);
        delegate.reset();
    });
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
}

/// Runs the program's entry; returns its exit status, or 1 when something was not as expected.
int runMain()
{
    FakeDesktop desktop;
    desktop.log.reset();  // the entry makes its own
    desktop.application.whileRunning = [&desktop] {
        EXPECT_EQ(desktop.statusBar.state.itemsMade, 1);
        desktop.time.advance(3s);
    };
    const int status = SonvaraApp::main(desktop.platform);
    EXPECT_TRUE(desktop.application.delegate.expired());
    return testing::Test::HasFailure() ? 1 : status;
}

TEST(SonvaraAppDeathTest, MainRunsTheEventLoopWithADelegateThatHasLaunched)
{
    // In a process of its own: the entry's activity log lives until the process ends.
    EXPECT_EXIT(std::exit(runMain()), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace sonvara::test
