// The adapter as a whole: which player is meant, what it is asked, and what is told of it.
#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <atomic>
#include <thread>

namespace sonvara::test {
namespace {

using MprisPlayersTest = PlayersTest;

TEST_F(MprisPlayersTest, WhatPlaysAtTheStartIsToldByTheFirstPollAndNotPosted)
{
    auto player = makePlayer({"rhythmbox"});
    const PlayerProcess spotify(bus, {"spotify.instance5"});
    player.set({{"PlaybackStatus", "Paused"}, {"Metadata", metadataOf("One")}});
    make();
    EXPECT_EQ(pollMusic(), "One||Artist||Album||false||false");
    EXPECT_EQ(pollSpotify(), "error");
    player.play("Two");
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing Two/Artist/Album"});
}

TEST_F(MprisPlayersTest, APollAtANotificationKnowsWhatIsNotified)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    player.play("Two");  // from here on it is known to tell of its tracks, and is not asked
    postsUntil(2);
    std::vector<std::string> polls;
    const auto handle =
        players->notificationCenter().addObserver("com.apple.Music.playerInfo", [&](const auto&) {
            polls.push_back(players->scriptRunner().run(musicPollScript()).text.value_or(""));
        });
    player.play("Three");
    postsUntil(3);
    EXPECT_EQ(polls, std::vector<std::string>{"Three||Artist||Album||true||false"});
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
    EXPECT_EQ(pollMusic(), "Two||Artist||Album||true||false");
    vlc.say("pause");
    EXPECT_EQ(postsUntil(3), (Posts{"Music Playing One/Artist/Album", "Music Playing Two/Artist/Album",
                                    "Music Playing One/Artist/Album"}));
    rhythmbox.say("pause");
    EXPECT_EQ(postsUntil(4).back(), "Music Paused One/Artist/Album");
    rhythmbox.quit();
    EXPECT_EQ(postsUntil(5).back(), "Music Paused Two/Artist/Album");
}

TEST_F(MprisPlayersTest, AnyOtherScriptIsAnError)
{
    start();
    for (const auto* script : {"", "beep", R"(tell application "Finder" to get sound volume)"}) {
        const auto result = run(script);
        EXPECT_TRUE(result.error) << script;
        EXPECT_FALSE(result.text) << script;
    }
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

TEST_F(MprisPlayersTest, APollAsksOnlyThePlayerThatIsMeant)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    PlayerProcess other(bus, {"vlc"});
    auto browser = makePlayer({"firefox.instance_1_2"});
    other.say("pause");
    player.play("One");
    postsUntil(1);
    pollMusic();
    const int before = player.questions();
    const int browserBefore = browser.questions();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(pollMusic(), "One||Artist||Album||true||false");
    EXPECT_EQ(player.questions() - before, 3);
    EXPECT_EQ(browser.questions(), browserBefore);
}

TEST_F(MprisPlayersTest, APlayerThatTellsOfItsTracksIsNotAskedAtEachPoll)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    player.play("Two");
    postsUntil(2);
    const int before = player.questions();
    std::string answer;
    std::thread([&] { answer = *players->scriptRunner().run(musicPollScript()).text; }).join();
    EXPECT_EQ(answer, "Two||Artist||Album||true||false") << "nobody but the worker was needed";
    player.change({{"PlaybackStatus", "Paused"}});
    EXPECT_EQ(postsUntil(3).back(), "Music Paused Two/Artist/Album");
    EXPECT_EQ(pollMusic(), "Two||Artist||Album||false||false");
    EXPECT_EQ(player.questions(), before);
}

TEST_F(MprisPlayersTest, APlayerThatKeepsATrackToItselfIsAskedAtEachPollAgain)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    player.play("Two");
    postsUntil(2);
    player.set({{"Metadata", metadataOf("Three")}});
    player.invalidate("Metadata");
    postsUntil(3);
    player.set({{"Metadata", metadataOf("Four")}});
    EXPECT_EQ(pollMusic(), "Four||Artist||Album||true||false");
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
    EXPECT_EQ(pollMusic(), "notrunning");
    ASSERT_EQ(log.errors().size(), 1U);
    EXPECT_NE(log.errors().front().find("No music player runs yet"), std::string::npos);
}

TEST_F(MprisPlayersTest, WithAPlayerAtTheStartThereIsNothingToSay)
{
    auto player = makePlayer({"rhythmbox"});
    start();
    EXPECT_TRUE(log.errors().empty());
}

}  // namespace
}  // namespace sonvara::test
