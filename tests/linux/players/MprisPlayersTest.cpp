// The adapter as a whole: which player is meant, hung and lying players, floods, and the bus itself.
#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <QTimer>

#include <atomic>
#include <csignal>
#include <thread>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

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

TEST_F(MprisPlayersTest, TheVolumeIsSetWhereItWasRead)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    EXPECT_EQ(run(getMusicVolume).integer, 100);
    EXPECT_FALSE(run(setMusicVolume + "35").error);
    PlayerProcess vlc(bus, {"vlc"});
    vlc.say("Two");
    postsUntil(2);
    EXPECT_FALSE(run(setMusicVolume + "100").error);
    EXPECT_EQ(player.property("Volume"), QVariant(1.0));
    EXPECT_EQ(run(getMusicVolume).integer, 100);  // now the other one's
    EXPECT_FALSE(run(setMusicVolume + "40").error);
    EXPECT_EQ(player.property("Volume"), QVariant(1.0));
}

TEST_F(MprisPlayersTest, WithoutAPlayerThereIsNoVolume)
{
    start();
    EXPECT_TRUE(run(getMusicVolume).error);
    EXPECT_TRUE(run(getSpotifyVolume).error);
    EXPECT_TRUE(run(setMusicVolume + "35").error);
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

TEST_F(MprisPlayersTest, AHungPlayerCostsNoOneMoreThanAShortWait)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    PlayerProcess spotify(bus, {"spotify"});
    player.play("One");
    spotify.say("Two");
    postsUntil(2);
    player.manner = FakePlayer::Manner::hanging;
    for (const auto& script : {musicPollScript(), getMusicVolume, setMusicVolume + "5"}) {
        ScriptResult result;
        const auto duration = onWorker([&] { result = players->scriptRunner().run(script); });
        EXPECT_TRUE(result.error || result.text == "error");
        EXPECT_LT(duration, 1500ms);
    }
    std::string answer;
    const auto hung = startWorker([&] { answer = *players->scriptRunner().run(musicPollScript()).text; });
    EXPECT_EQ(pollSpotify(), "Two||Artist||Album||true");
    EXPECT_FALSE(hung->isFinished()) << "the other player had to wait for the hung one";
    EXPECT_TRUE(eventually([&] { return hung->isFinished(); }));
    EXPECT_EQ(answer, "error");
}

TEST_F(MprisPlayersTest, AProgramThatIsHungFromItsStartIsAnErrorWithinASecond)
{
    PlayerProcess player(bus, {"rhythmbox"});
    ASSERT_EQ(::kill(static_cast<pid_t>(player.id()), SIGSTOP), 0);
    make();
    std::string answer;
    EXPECT_LT(onWorker([&] { answer = *players->scriptRunner().run(musicPollScript()).text; }), 1500ms);
    EXPECT_EQ(answer, "error");
    ASSERT_EQ(::kill(static_cast<pid_t>(player.id()), SIGCONT), 0);
    player.say("One");
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing One/Artist/Album"});
}

TEST_F(MprisPlayersTest, APlayerThatVanishesWhileItIsAskedIsAnError)
{
    start();
    auto player = std::make_unique<FakePlayer>(bus.connect(), QStringList{"rhythmbox"});
    player->play("One");
    postsUntil(1);
    player->onQuestion = [&](const QDBusMessage&) {
        QTimer::singleShot(0, [&] { player.reset(); });
        return false;
    };
    EXPECT_EQ(pollMusic(), "error");
    EXPECT_EQ(postsUntil(2).back(), "Music Stopped //");
    EXPECT_EQ(pollMusic(), "notrunning");
}

TEST_F(MprisPlayersTest, GarbageIsAnErrorAndForgottenAfterwards)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    for (const auto manner : {FakePlayer::Manner::babbling, FakePlayer::Manner::failing}) {
        player.manner = manner;
        EXPECT_EQ(pollMusic(), "error");
    }
    player.manner = FakePlayer::Manner::proper;
    const QString interface = "org.mpris.MediaPlayer2.Player";
    for (const auto& arguments :
         {QVariantList{interface}, QVariantList{interface, 5}, QVariantList{interface, QStringList{"a"}, "b"},
          QVariantList{interface, QVariantMap{{"Metadata", 5}, {"PlaybackStatus", QStringList{"Playing"}}},
                       7},
          QVariantList{interface, QVariantMap{{"Metadata", QStringList{"x"}}}, QStringList{}}})
        player.signal(arguments);
    EXPECT_EQ(pollMusic(), "One||Artist||Album||true||false");
    player.play("Two");
    EXPECT_EQ(postsUntil(2), (Posts{"Music Playing One/Artist/Album", "Music Playing Two/Artist/Album"}));
}

TEST_F(MprisPlayersTest, APlayerMayComeAndGoWhileItIsStillAsked)
{
    start();
    auto player = makePlayer({});
    for (int i = 0; i < 5; ++i) {
        player.own("rhythmbox");
        player.disown("rhythmbox");
    }
    player.own("rhythmbox");
    player.play("One");
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing One/Artist/Album"});
    EXPECT_EQ(pollMusic(), "One||Artist||Album||true||false");
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

TEST_F(MprisPlayersTest, AVeryLongTitleComesThroughWhole)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    const QString title = QString(1 << 20, QChar(0x266B)) + "||end";
    player.play(title);
    postsUntil(1);
    EXPECT_EQ(pollMusic(), title.toStdString() + "||Artist||Album||true||false");
}

TEST_F(MprisPlayersTest, AFloodIsToldInFewNotificationsAndByItsLastTrack)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    for (int i = 0; i < 5000; ++i) player.play(QString::number(i));
    EXPECT_TRUE(
        eventually([&] { return !posts.empty() && posts.back() == "Music Playing 4999/Artist/Album"; }));
    EXPECT_LT(posts.size(), 500U);
    EXPECT_EQ(pollMusic(), "4999||Artist||Album||true||false");
}

TEST_F(MprisPlayersTest, AFloodOfHintsCausesFewQuestions)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    player.set({{"Metadata", metadataOf("Two")}});
    const int before = player.questions();
    for (int i = 0; i < 5000; ++i) player.invalidate("Metadata");
    EXPECT_EQ(postsUntil(2).back(), "Music Playing Two/Artist/Album");
    player.play("Three");  // behind the last hint
    EXPECT_EQ(postsUntil(3).back(), "Music Playing Three/Artist/Album");
    EXPECT_LT(player.questions() - before, 2500);
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

TEST_F(MprisPlayersTest, AScriptEndsAlthoughTheMainThreadIsGone)
{
    start();
    const auto begin = std::chrono::steady_clock::now();
    ScriptResult result;
    std::thread([&] { result = players->scriptRunner().run(musicPollScript()); }).join();
    EXPECT_EQ(result.text, "error");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1500ms);
}

TEST_F(MprisPlayersTest, AScriptThatWaitsEndsWithTheAdapter)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    bool asked = false;
    player.onQuestion = [&](const QDBusMessage&) {
        asked = true;
        return false;
    };
    ScriptResult result;
    auto& runner = players->scriptRunner();
    std::thread worker([&] { result = runner.run(getMusicVolume); });
    EXPECT_TRUE(eventually([&] { return asked; }));
    players.reset();
    worker.join();
    EXPECT_TRUE(result.error);
}

TEST_F(MprisPlayersTest, WithoutABusNothingRunsAndOneLineSaysSo)
{
    players =
        std::make_unique<MprisPlayers>(QDBusConnection::connectToBus("unix:path=/nowhere", "none"), log);
    EXPECT_EQ(pollMusic(), "notrunning");
    EXPECT_EQ(pollSpotify(), "notrunning");
    EXPECT_TRUE(run(getMusicVolume).error);
    EXPECT_EQ(log.errors().size(), 1U);
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

TEST_F(MprisPlayersTest, WhenTheBusDiesNothingRunsAndOneLineSaysSo)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    const auto before = log.errors().size();
    bus.kill();
    EXPECT_EQ(postsUntil(2).back(), "Music Stopped //");
    EXPECT_EQ(pollMusic(), "notrunning");
    EXPECT_EQ(pollSpotify(), "notrunning");
    EXPECT_TRUE(run(getMusicVolume).error);
    EXPECT_EQ(log.errors().size(), before + 1);
}

}  // namespace
}  // namespace sonvara::test
