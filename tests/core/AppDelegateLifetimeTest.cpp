// What the core's wiring does when a part of it comes late or is gone, and the program's entry.
#include "AppDelegateFixture.h"
#include "app/SonvaraApp.h"
#include "monitor/MusicMonitor.h"
#include "speech/SpeechManager.h"
#include "ui/StatusBarController.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <utility>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::EndsWith;
using testing::IsEmpty;

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

TEST_F(AppDelegateTest, AMonitorThatIsReleasedOnceItHasGivenANameIsStillRead)
{
    launch();
    desktop.time.run();
    delegate->statusBarController.reset();
    desktop.time.post([this] {
        delegate->musicMonitor->isPlaying.set(true);
        delegate->musicMonitor->trackName.set("Song 1");
        delegate->musicMonitor.reset();
    });
    desktop.time.run();
    ASSERT_EQ(desktop.voice.lines.size(), 1U);
    EXPECT_THAT(desktop.voice.current(), EndsWith(" Song 1."));
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

TEST_F(AppDelegateTest, WithoutAFaceATrackIsStillAnnounced)
{
    launch();
    desktop.time.run();
    delegate->statusBarController.reset();
    play("Song 1");
    notify("Song 1");
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
}

TEST_F(AppDelegateTest, WithoutAnAnnouncerTheFaceStillFollowsThePlayer)
{
    launch();
    desktop.time.run();
    delegate->speechManager.reset();
    play("Song 1");
    notify("Song 1");
    desktop.time.run();
    EXPECT_EQ(desktop.statusBar.state.menu->items.at(1).title, "Song 1 - Artist of Song 1");
    desktop.players.music.isPlaying = false;
    notify("Song 1", "Paused");
    desktop.time.run();
    EXPECT_EQ(desktop.statusBar.state.menu->items.at(1).title, "No music playing");
}

/// Runs the program's entry; returns its exit status, or 1 when something was not as expected.
int runMain()
{
    FakeDesktop desktop;
    desktop.application.whileRunning = [&desktop] {
        EXPECT_EQ(desktop.statusBar.state.itemsMade, 1);
        DJLog::shared().log("entry", DJLog::Level::info);
        desktop.time.advance(3s);
        EXPECT_EQ(DJLog::shared().entries.get().size(), 1U);
    };
    const int status = SonvaraApp::main(desktop.platform);
    EXPECT_TRUE(desktop.application.delegate.expired());
    desktop.application.whileRunning = [] {
        EXPECT_TRUE(DJLog::shared().entries.get().empty()) << "a second run has an activity log of its own";
    };
    EXPECT_EQ(SonvaraApp::main(desktop.platform), 0);
    return testing::Test::HasFailure() ? 1 : status;
}

TEST(SonvaraAppDeathTest, MainRunsTheEventLoopWithADelegateThatHasLaunched)
{
    // In a process of its own: the entry's activity log lives until the process ends.
    EXPECT_EXIT(std::exit(runMain()), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace sonvara::test
