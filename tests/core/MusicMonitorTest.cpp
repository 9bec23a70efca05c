// The monitor: what polls and notifications make of the six published properties.
#include "monitor/MusicMonitor.h"
#include "fakes/FakeDesktop.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class MusicMonitorTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = desktop.log.get();
    std::shared_ptr<MusicMonitor> monitor;
    std::vector<std::string> names;  // every published track name, after the first
    Subscription nameSubscription;

    void start()
    {
        monitor = MusicMonitor::create(desktop.platform);
        nameSubscription =
            monitor->trackName.subscribe([this](const std::string& name) { names.push_back(name); });
        names.clear();
    }
    static FakePlayers::Player playing(const char* title)
    {
        FakePlayers::Player player;
        player.isRunning = true;
        player.isPlaying = true;
        player.title = title;
        player.artist = "Artist A";
        player.album = "Album A";
        return player;
    }
    static FakePlayers::Player paused(const char* title)
    {
        auto player = playing(title);
        player.isPlaying = false;
        return player;
    }
    static Notification event(const char* name, const char* state, const char* title)
    {
        return {name, UserInfo{{"Player State", std::string(state)}, {"Name", std::string(title)}}};
    }
    void answerMusicPollWith(const std::string& text)
    {
        ScriptResult result;
        result.text = text;
        desktop.players.music.pollResult = result;
    }
    [[nodiscard]] std::vector<std::string> errors() const
    {
        return desktop.systemLog.texts(LogLevel::error, "MusicMonitor");
    }
};

TEST_F(MusicMonitorTest, RegistersForBothPlayersMusicFirst)
{
    start();
    EXPECT_THAT(desktop.notifications.registrations,
                ElementsAre("com.apple.Music.playerInfo", "com.spotify.client.PlaybackStateChanged"));
    EXPECT_THAT(desktop.systemLog.texts(LogLevel::debug, "MusicMonitor"),
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
}

TEST_F(MusicMonitorTest, AResultWithoutTextOrErrorAndAScriptThatCannotBeMadeAreSilent)
{
    desktop.players.music.pollResult = ScriptResult{};
    desktop.players.spotify.pollResult = ScriptResult{false, std::nullopt, std::nullopt, 0};
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
