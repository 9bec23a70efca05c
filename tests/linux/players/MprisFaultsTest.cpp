// Players that hang, lie, flood and vanish, and a bus that does.
#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <QTimer>

#include <csignal>
#include <thread>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

using MprisFaultsTest = PlayersTest;

TEST_F(MprisFaultsTest, AHungPlayerCostsNoOneMoreThanAShortWait)
{
    start();
    auto player = makePlayer({"rhythmbox"});
    PlayerProcess spotify(bus, {"spotify"});
    player.play("One");
    spotify.say("Two");
    postsUntil(2);
    player.manner = FakePlayer::Manner::hanging;
    std::string answer;
    EXPECT_LT(onWorker([&] { answer = *players->scriptRunner().run(musicPollScript()).text; }), 1500ms);
    EXPECT_EQ(answer, "error");
    const auto hung = startWorker([&] { answer = *players->scriptRunner().run(musicPollScript()).text; });
    EXPECT_EQ(pollSpotify(), "Two||Artist||Album||true");
    EXPECT_FALSE(hung->isFinished()) << "the other player had to wait for the hung one";
    EXPECT_TRUE(eventually([&] { return hung->isFinished(); }));
    EXPECT_EQ(answer, "error");
}

TEST_F(MprisFaultsTest, AProgramThatIsHungFromItsStartIsAnErrorWithinASecond)
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

TEST_F(MprisFaultsTest, APlayerThatVanishesWhileItIsAskedIsAnError)
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

TEST_F(MprisFaultsTest, GarbageIsAnErrorAndForgottenAfterwards)
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

TEST_F(MprisFaultsTest, AScriptThatWaitsEndsWithTheAdapter)
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
    std::thread worker([&] { result = runner.run(musicPollScript()); });
    EXPECT_TRUE(eventually([&] { return asked; }));
    players.reset();
    worker.join();
    EXPECT_EQ(result.text, "error");
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
