// What notifications and polls make of the six published properties, and in which order.
#include "MusicMonitorFixture.h"
#include "support/PlayerScripts.h"

#include <gmock/gmock.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST_F(MusicMonitorTest, ANotificationLeadsToTwoApplicationsItsOwnRecordFirst)
{
    desktop.players.music = playing("Polled");
    start();
    desktop.time.run();
    names.clear();
    desktop.notifications.deliver(event(musicNotification, "Playing", "Notified"));
    desktop.time.run();
    EXPECT_THAT(names, ElementsAre("Notified", "Polled"));
}

TEST_F(MusicMonitorTest, ANotificationIsAppliedInALaterTurn)
{
    start();
    desktop.time.run();
    bool appliedInPlace = true;
    desktop.notifications.deliver(event(musicNotification, "Playing", "Notified"));
    desktop.time.post([&] { appliedInPlace = monitor->trackName.get() == "Notified"; });
    desktop.time.run();
    EXPECT_FALSE(appliedInPlace);
    EXPECT_EQ(monitor->trackName.get(), "Notified");
}

TEST_F(MusicMonitorTest, ANotificationWithoutARecordStillStartsAPoll)
{
    start();
    desktop.time.run();
    const auto before = desktop.players.scripts.size();
    desktop.notifications.deliver({musicNotification, std::nullopt});
    desktop.time.run();
    EXPECT_EQ(desktop.players.scripts.size(), before + 2);
}

TEST_F(MusicMonitorTest, WithNeitherPlayerRunningEveryPollAssignsTheEmptyState)
{
    start();
    desktop.time.advance(6s);
    EXPECT_THAT(names, ElementsAre("", "", ""));
    EXPECT_FALSE(monitor->isPlaying.get());
    EXPECT_FALSE(monitor->isFavorited.get());
}

TEST_F(MusicMonitorTest, TheLastNotificationIsAppliedAgainByEveryPollThatFindsNothing)
{
    start();
    desktop.time.run();
    names.clear();
    desktop.notifications.deliver(event(spotifyNotification, "Playing", "Last"));
    desktop.time.advance(6s);
    EXPECT_THAT(names, ElementsAre("Last", "Last", "Last", "Last"));
    EXPECT_TRUE(monitor->isPlaying.get()) << "kept for as long as neither poll yields anything";
    desktop.notifications.deliver(event(spotifyNotification, "Stopped", ""));
    desktop.time.advance(6s);
    EXPECT_EQ(monitor->trackName.get(), "");
    EXPECT_EQ(monitor->source.get(), "Spotify");
    EXPECT_FALSE(monitor->isPlaying.get());
}

TEST_F(MusicMonitorTest, AnUpdateAssignsTheNameLastAndTheEmptyStateItsPlayingFlagFirst)
{
    desktop.players.music = playing("Song");
    start();
    std::string order;
    std::vector<Subscription> subscriptions;
    const auto record = [&order](char letter) { return [&order, letter](const auto&) { order += letter; }; };
    subscriptions.push_back(monitor->artistName.subscribe(record('a')));
    subscriptions.push_back(monitor->albumName.subscribe(record('l')));
    subscriptions.push_back(monitor->isPlaying.subscribe(record('p')));
    subscriptions.push_back(monitor->isFavorited.subscribe(record('f')));
    subscriptions.push_back(monitor->source.subscribe(record('s')));
    subscriptions.push_back(monitor->trackName.subscribe(record('n')));
    order.clear();
    desktop.time.run();
    EXPECT_EQ(order, "alpfsn");
    order.clear();
    desktop.players.music.isRunning = false;
    desktop.time.advance(3s);
    EXPECT_EQ(order, "pnalfs");
}

TEST_F(MusicMonitorTest, AnUnchangedTrackIsPublishedByEveryPoll)
{
    desktop.players.music = playing("Song");
    start();
    desktop.time.advance(9s);
    EXPECT_THAT(names, ElementsAre("Song", "Song", "Song", "Song"));
}

TEST_F(MusicMonitorTest, OverlappingPollsAreAppliedInTheOrderInWhichTheyFinish)
{
    desktop.players.music = playing("Slow answer");
    desktop.players.music.latency = 5s;
    start();
    desktop.time.run();  // the first poll hangs in the Music script
    desktop.players.music = playing("Quick answer");
    desktop.time.advance(4s);
    EXPECT_THAT(names, ElementsAre("Quick answer"));
    desktop.time.advance(1s);
    EXPECT_EQ(names.size(), 2U);
}

TEST_F(MusicMonitorTest, APollThatReadsTheFallbackSeesTheLatestNotification)
{
    desktop.players.spotify.latency = 1s;
    start();
    desktop.time.run();  // the poll is between the Music script and the read of the fallback
    desktop.notifications.deliver(event(musicNotification, "Playing", "Meanwhile"));
    desktop.time.advance(1s);
    EXPECT_THAT(names, ElementsAre("Meanwhile", "Meanwhile", "Meanwhile"));
}

TEST_F(MusicMonitorTest, TheLogNamesWhatIsApplied)
{
    desktop.players.music = playing("Song");
    start();
    desktop.time.run();
    EXPECT_EQ(desktop.systemLog.messages.back().text, "Now playing via Music: 'Song' (playing=true)");
    EXPECT_EQ(desktop.systemLog.messages.back().published,
              "Now playing via <private>: '<private>' (playing=true)");
}

TEST_F(MusicMonitorTest, ADestroyedMonitorHearsNothingAndItsTimerTicksOnInVain)
{
    start();
    desktop.time.run();
    const auto scripts = desktop.players.scripts.size();
    monitor.reset();
    desktop.notifications.deliver(event(musicNotification, "Playing", "Song"));
    desktop.time.advance(9s);
    EXPECT_EQ(desktop.players.scripts.size(), scripts);
    EXPECT_EQ(desktop.time.repeatingTimers(), 1U);
}

TEST_F(MusicMonitorTest, ARunningPollKeepsItsMonitorUntilItsResultIsApplied)
{
    desktop.players.music = playing("Song");
    desktop.players.music.latency = 1s;
    start();
    desktop.time.run();
    const std::weak_ptr<MusicMonitor> weak = monitor;
    monitor.reset();
    EXPECT_FALSE(weak.expired());
    desktop.time.advance(1s);
    EXPECT_THAT(names, ElementsAre("Song"));
    EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace sonvara::test
