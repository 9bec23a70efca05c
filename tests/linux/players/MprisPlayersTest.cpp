// The adapter as a whole: which player is meant, what it is asked, and what is told of it.
#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <QDBusConnectionInterface>

#include <atomic>

namespace sonvara::test {
namespace {

using MprisPlayersTest = PlayersTest;

TEST_F(MprisPlayersTest, NothingIsAskedBeforeTheFirstPoll)
{
    auto player = makePlayer({"rhythmbox"});
    make();
    player.play("One");
    auto stranger = bus.connect();
    ASSERT_TRUE(eventually(
        [&] { return stranger.interface()->isServiceRegistered("org.mpris.MediaPlayer2.rhythmbox"); }));
    runEvents();
    EXPECT_EQ(player.questions(), 0);
    EXPECT_EQ(posts, Posts{});
}

TEST_F(MprisPlayersTest, WhatPlaysAtTheStartIsTold)
{
    auto player = makePlayer({"rhythmbox"});
    const PlayerProcess spotify(bus, {"spotify.instance5"});
    player.set({{"PlaybackStatus", "Paused"}, {"Metadata", metadataOf("One")}});
    start();
    EXPECT_EQ(postsUntil(1), Posts{"Music Paused One/Artist/Album"});
    EXPECT_EQ(pollMusic(), "One||Artist||Album||false||false");
    EXPECT_EQ(runUntil(spotifyPollScript(), "error"), "error");
    player.play("Two");
    EXPECT_EQ(postsUntil(2).back(), "Music Playing Two/Artist/Album");
}

TEST_F(MprisPlayersTest, APollAtANotificationKnowsWhatIsNotified)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    std::vector<std::string> polls;
    std::vector<std::unique_ptr<QThread>> workers;
    const auto handle =
        players->notificationCenter().addObserver("com.apple.Music.playerInfo", [&](const auto&) {
            workers.push_back(startWorker(
                [&] { polls.push_back(players->scriptRunner().run(musicPollScript()).text.value_or("")); }));
        });
    player.play("One");
    postsUntil(1);
    EXPECT_TRUE(eventually([&] { return workers.front()->isFinished(); }));
    EXPECT_EQ(polls, std::vector<std::string>{"One||Artist||Album||true||false"});
}

TEST_F(MprisPlayersTest, APlayerThatLeavesIsReportedAsStopped)
{
    start();
    auto player = std::make_unique<FakePlayer>(bus.connect(), QStringList{"rhythmbox"});
    player->play("One");
    postsUntil(1);
    player.reset();
    EXPECT_EQ(postsUntil(2).back(), "Music Stopped //");
    EXPECT_EQ(pollMusic(), "notrunning");
}

TEST_F(MprisPlayersTest, APlayerThatLosesOneOfItsNamesStays)
{
    start();
    auto player = makePlayer({"vlc", "vlc.instance7"});
    player.play("One");
    postsUntil(1);
    player.disown("vlc");
    player.play("Two");
    EXPECT_EQ(postsUntil(2).back(), "Music Playing Two/Artist/Album");
    player.disown("vlc.instance7");
    EXPECT_EQ(postsUntil(3).back(), "Music Stopped //");
}

TEST_F(MprisPlayersTest, OfTwoProgramsTheOneThatPlaysIsMeant)
{
    start();
    PlayerProcess rhythmbox(bus, {"rhythmbox"});
    PlayerProcess vlc(bus, {"vlc"});
    rhythmbox.say("One");
    postsUntil(1);
    vlc.say("Two");
    postsUntil(2);
    vlc.say("pause");
    EXPECT_EQ(postsUntil(3), (Posts{"Music Playing One/Artist/Album", "Music Playing Two/Artist/Album",
                                    "Music Playing One/Artist/Album"}));
    rhythmbox.say("pause");
    EXPECT_EQ(postsUntil(4).back(), "Music Paused One/Artist/Album");
    rhythmbox.quit();
    EXPECT_EQ(postsUntil(5).back(), "Music Paused Two/Artist/Album");
    // Not before: an answer to its question that is older than a pause may be read after it.
    EXPECT_EQ(pollMusic(), "Two||Artist||Album||false||false");
}

TEST_F(MprisPlayersTest, SignalsOfProgramsThatAreNoPlayersAreNotHeard)
{
    start();
    auto stranger = makePlayer({});
    auto player = makePlayer({"rhythmbox"});
    stranger.play("Lies");
    player.play("One");
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing One/Artist/Album"});
}

TEST_F(MprisPlayersTest, ManyWorkersMayAskAtOnce)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    std::atomic<int> right{0};
    std::vector<std::unique_ptr<QThread>> workers;
    for (int i = 0; i < 8; ++i) {
        workers.push_back(startWorker([&] {
            for (int n = 0; n < 20; ++n)
                if (players->scriptRunner().run(musicPollScript()).text == "One||Artist||Album||true||false")
                    ++right;
        }));
    }
    for (auto& worker : workers) EXPECT_TRUE(eventually([&] { return worker->isFinished(); }));
    EXPECT_EQ(right, 160);
}

TEST_F(MprisPlayersTest, WithoutAPlayerAtTheStartOneLineSaysSo)
{
    start();
    EXPECT_TRUE(eventually([&] { return !log.errors().empty(); }));
    ASSERT_EQ(log.errors().size(), 1U);
    EXPECT_NE(log.errors().front().find("No music player runs yet"), std::string::npos);
    EXPECT_EQ(pollMusic(), "notrunning");
}

TEST_F(MprisPlayersTest, WithAPlayerAtTheStartThereIsNothingToSay)
{
    auto player = makePlayer({"rhythmbox"});
    player.set({{"PlaybackStatus", "Playing"}, {"Metadata", metadataOf("One")}});
    start();
    postsUntil(1);
    EXPECT_TRUE(log.errors().empty());
}

}  // namespace
}  // namespace sonvara::test
