// The whole core over the macOS scripts, while the user takes five minutes to answer a question about consent.
#include "VirtualScripts.h"

#include "app/AppDelegate.h"
#include "platform/macos/players/ScriptVolumes.h"
#include "volume/CountedVoice.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

constexpr int usual = 80;
constexpr int low = 28;
// A busy moment: the poll's worker, one line's reader, the lanes, the wake-up of `LoweredPlayers`, and what the main thread has yet
// to do.
constexpr std::size_t fewTasks = 12;

class ConsentTest : public testing::Test {
protected:
    ~ConsentTest() override { desktop.time.end(); }

    static VolumeTime at(VirtualTime::Duration elapsed) { return VolumeTime(100h) + elapsed; }

    void play(const std::string& title)
    {
        auto& spotify = desktop.players.spotify;
        spotify.isRunning = spotify.isPlaying = true;
        spotify.title = title;
        spotify.artist = "Artist of " + title;
        spotify.album = "Album of " + title;
        desktop.notifications.deliver(FakePlayers::notificationOf(spotify, spotifyNotification));
    }

    /// Lets time pass, during which no more work may pile up than a few tasks, and no player may be low for
    /// longer than a moment without a line.
    void pass(VirtualTime::Duration duration)
    {
        for (const auto end = desktop.time.elapsed() + duration; desktop.time.elapsed() < end;) {
            desktop.time.advance(100ms);
            const bool isLow = desktop.players.spotify.volume != usual;
            if (desktop.voice.isSpeaking() || !isLow) lastInOrder_ = desktop.time.elapsed();
            ASSERT_LE(desktop.time.elapsed() - lastInOrder_, 500ms) << "lowered, and nobody speaks";
            ASSERT_LE(desktop.time.pendingWork(), fewTasks);
        }
    }

    /// Every half minute a track, with a line of four seconds.
    void listenFor(int minutes)
    {
        for (int i = 0; i < 2 * minutes; ++i) {
            play("Song " + std::to_string(++songs_));
            pass(4s);
            if (desktop.voice.isSpeaking()) desktop.voice.finish();
            pass(26s);
        }
    }

    FakeDesktop desktop;
    VirtualTime& time = desktop.time;
    VirtualComponent component{desktop};
    ScriptLanes lanes{component, [this](const std::string&) {
                          return [this](Task task) {
                              time.post(QualityOfService::userInitiated, std::move(task));
                          };
                      }};
    ScriptVolumes volumes{lanes, time};
    LoweredPlayers loweredPlayers{volumes,
                                  {.now = [this] { return at(time.elapsed()); },
                                   .today = [] { return 1; },
                                   .keep = [](const LoweredNotes&) {},
                                   .recall = [this] { time.post([this] { loweredPlayers.remember({}); }); },
                                   .wakeAt =
                                       [this](VolumeTime due) {
                                           const auto delay = due - at(time.elapsed());
                                           (void)time.postAfter(
                                               QualityOfService::userInitiated,
                                               std::chrono::ceil<std::chrono::milliseconds>(delay),
                                               [this] { time.post([this] { loweredPlayers.wake(); }); });
                                       }}};
    VirtualScripts scripts{time, lanes, loweredPlayers};
    CountedVoice voice{desktop.voice, time, loweredPlayers};
    Platform platform{desktop.application,
                      time,
                      time,
                      time,
                      desktop.environment,
                      desktop.files,
                      desktop.launcher,
                      scripts,
                      desktop.notifications,
                      voice,
                      desktop.defaults,
                      desktop.systemLog,
                      desktop.statusBar,
                      desktop.images,
                      desktop.windows,
                      desktop.pasteboard,
                      desktop.loginItem};
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(platform);

    void SetUp() override
    {
        desktop.players.spotify.volume = usual;
        volumes.reportTo(loweredPlayers);
        delegate->applicationDidFinishLaunching();
        time.advance(5s);
    }

private:
    int songs_ = 0;
    VirtualTime::Duration lastInOrder_{0};
};

TEST_F(ConsentTest, LinesAreSpokenOverALoweredPlayer)
{
    play("A Song");
    pass(1s);
    EXPECT_TRUE(desktop.voice.isSpeaking());
    EXPECT_EQ(desktop.players.spotify.volume, low);
    listenFor(1);
}

TEST_F(ConsentTest, AQuestionAboutAnotherPlayerLeavesNoPlayerLowered)
{
    play("A Song");
    pass(1s);
    ASSERT_EQ(desktop.players.spotify.volume, low);
    component.asked = musicSource;
    desktop.players.music.isRunning = true;
    pass(3s);  // a poll of Music waits for the answer by now
    desktop.voice.finish();
    pass(1s);
    EXPECT_EQ(desktop.players.spotify.volume, usual) << "while the question is open";
    listenFor(5);
    EXPECT_EQ(desktop.voice.lines.size(), 11U);
    component.asked.clear();
    pass(1min);
    EXPECT_EQ(desktop.players.spotify.volume, usual);
}

TEST_F(ConsentTest, AQuestionAboutThePlayerItselfLeavesItAloneUntilTheAnswerAndAfterIt)
{
    component.asked = spotifySource;
    listenFor(5);
    EXPECT_EQ(desktop.voice.lines.size(), 10U) << "spoken without lowering";
    EXPECT_TRUE(desktop.players.volumeCommands.empty());
    component.asked.clear();
    pass(1min);
    EXPECT_EQ(desktop.players.spotify.volume, usual);
    play("Another Song");
    pass(1s);
    EXPECT_EQ(desktop.players.spotify.volume, low) << "once there is consent";
}

TEST_F(ConsentTest, WhatIsKnownFromNotificationsIsShownMeanwhile)
{
    component.asked = spotifySource;
    play("A Song");
    pass(10s);
    ASSERT_TRUE(desktop.voice.isSpeaking()) << "a poll without an answer does not cut it";
    EXPECT_NE(desktop.voice.current().find("A Song"), std::string::npos);
}

}  // namespace
}  // namespace sonvara::test
