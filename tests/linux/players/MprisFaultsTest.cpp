// Players that hang, lie, flood and vanish, and a bus that does.
#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <QTimer>

#include <csignal>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

using MprisFaultsTest = PlayersTest;

TEST_F(MprisFaultsTest, AHungPlayerCostsOneCallInFlightAndNoWait)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    PlayerProcess other(bus, {"vlc"});
    PlayerProcess spotify(bus, {"spotify"});
    player.play("One");
    postsUntil(1);
    player.manner = FakePlayer::Manner::hanging;
    const int before = player.questions();
    const auto passed = onWorker([&] {
        for (int i = 0; i < 20; ++i) (void)players->scriptRunner().run(musicPollScript());
    });
    EXPECT_LT(passed, 1s);
    other.say("Two");
    spotify.say("Three");
    postsUntil(3);
    EXPECT_LE(player.questions() - before, 1);
}

TEST_F(MprisFaultsTest, APlayerThatDoesNotAnswerAnyMoreIsNotBelieved)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    player.manner = FakePlayer::Manner::hanging;
    EXPECT_EQ(runUntil(musicPollScript(), "error"), "error");
    player.manner = FakePlayer::Manner::proper;
    EXPECT_EQ(runUntil(musicPollScript(), "One||Artist||Album||true||false"),
              "One||Artist||Album||true||false");
    EXPECT_EQ(posts.size(), 1U);
}

TEST_F(MprisFaultsTest, APlayerThatAnswersIsMeantBeforeOneThatHangs)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    PlayerProcess other(bus, {"vlc"});
    player.play("One");
    postsUntil(1);
    other.say("Two");
    postsUntil(2);
    player.play("Three");
    postsUntil(3);
    player.manner = FakePlayer::Manner::hanging;
    EXPECT_EQ(runUntil(musicPollScript(), "Two||Artist||Album||true||false"),
              "Two||Artist||Album||true||false");
}

TEST_F(MprisFaultsTest, AProgramThatIsHungFromItsStartHoldsUpNobody)
{
    PlayerProcess hung(bus, {"rhythmbox"});
    ASSERT_EQ(::kill(static_cast<pid_t>(hung.id()), SIGSTOP), 0);
    PlayerProcess player(bus, {"vlc"});
    make();
    EXPECT_LT(onWorker([&] { (void)players->scriptRunner().run(musicPollScript()); }), 500ms);
    player.say("One");
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing One/Artist/Album"});
    ASSERT_EQ(::kill(static_cast<pid_t>(hung.id()), SIGCONT), 0);
    hung.say("Two");
    EXPECT_EQ(postsUntil(2).back(), "Music Playing Two/Artist/Album");
}

TEST_F(MprisFaultsTest, GarbageIsAnErrorAndForgottenAfterwards)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    for (const auto manner : {FakePlayer::Manner::babbling, FakePlayer::Manner::failing}) {
        player.manner = manner;
        EXPECT_EQ(runUntil(musicPollScript(), "error"), "error");
        player.manner = FakePlayer::Manner::proper;
        runUntil(musicPollScript(), "One||Artist||Album||true||false");
    }
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

TEST_F(MprisFaultsTest, APlayerMayComeAndGoWhileItIsStillAsked)
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

TEST_F(MprisFaultsTest, AVeryLongTitleComesThroughWhole)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    const QString title = QString(1 << 20, QChar(0x266B)) + "||end";
    player.play(title);
    postsUntil(1);
    EXPECT_EQ(pollMusic(), title.toStdString() + "||Artist||Album||true||false");
}

TEST_F(MprisFaultsTest, AFloodIsToldInFewNotificationsAndByItsLastTrack)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    for (int i = 0; i < 5000; ++i) player.play(QString::number(i));
    EXPECT_TRUE(
        eventually([&] { return !posts.empty() && posts.back() == "Music Playing 4999/Artist/Album"; }));
    EXPECT_LT(posts.size(), 500U);
    EXPECT_EQ(pollMusic(), "4999||Artist||Album||true||false");
}

TEST_F(MprisFaultsTest, AFloodOfHintsCausesFewQuestions)
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

TEST_F(MprisFaultsTest, ThousandsOfNamesOfOneConnectionDelayNobody)
{
    start();
    PlayerProcess player(bus, {"rhythmbox"});
    auto flood = makePlayer({});
    for (int i = 0; i < 7500; ++i) flood.own("name" + QString::number(i));
    const auto begin = std::chrono::steady_clock::now();
    player.say("One");
    postsUntil(1);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);  // it was a multiple of that
}

TEST_F(MprisFaultsTest, WithoutABusNothingRunsAndOneLineSaysSo)
{
    players =
        std::make_unique<MprisPlayers>(QDBusConnection::connectToBus("unix:path=/nowhere", "none"), log);
    EXPECT_EQ(pollMusic(), "notrunning");
    EXPECT_EQ(pollSpotify(), "notrunning");
    EXPECT_EQ(log.errors().size(), 1U);
}

TEST_F(MprisFaultsTest, WhenTheBusDiesNothingRunsAndOneLineSaysSo)
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
    EXPECT_EQ(log.errors().size(), before + 1);
}

}  // namespace
}  // namespace sonvara::test
