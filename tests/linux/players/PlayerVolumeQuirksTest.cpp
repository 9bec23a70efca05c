// The volume of players that tell it late, take it back, swallow it, cut it off or lose it.
#include "VolumeFixture.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QTimer>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

using PlayerVolumeQuirksTest = VolumeFixture;

// PipeWire: for up to 0.3 seconds a new stream has no volume, and cmus and Audacious tell 0.
TEST_F(PlayerVolumeQuirksTest, ThatIsNotKnownWhileTheStreamOpensIsWaitedFor)
{
    auto player = makePlaying("cmus");
    player->change({{"Metadata", metadataOf("Two")}, {"Volume", 4.65452e-310}});
    QTimer::singleShot(250, [&] { player->set({{"Volume", 0.8}}); });
    say();
    EXPECT_TRUE(comesTo(*player, 0.28));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 0.8));
}

// Strawberry on PipeWire: at full volume until it has heard of the one that its stream was given.
TEST_F(PlayerVolumeQuirksTest, ThatIsToldBeforeTheFirstStreamIsOpenIsNotBelieved)
{
    auto player = makePlaying("strawberry");
    QTimer::singleShot(150, [&] { player->change({{"Volume", 0.58}}); });
    say();
    EXPECT_TRUE(comesTo(*player, 0.2));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 0.58));
    EXPECT_TRUE(comesToNoNote());
}

TEST_F(PlayerVolumeQuirksTest, ThatAPlayerTakesBackAtATracksBeginIsSetOnceMore)
{
    auto player = makePlaying("strawberry");
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    player->change({{"Volume", 0.35}});  // so it answers the command
    runEvents();
    player->change({{"Volume", 1.0}});  // and this comes from its new stream
    EXPECT_TRUE(comesTo(*player, 0.35));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0));
}

// Parole and Pragha, in the first 30 ms of a stream.
TEST_F(PlayerVolumeQuirksTest, ThatAPlayerSwallowsIsSetOnceMore)
{
    auto player = makePlaying("parole");
    int sets = 0;
    player->onQuestion = [&](const QDBusMessage& question) {
        return question.member() != "Set" || ++sets > 1;
    };
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0));
}

TEST_F(PlayerVolumeQuirksTest, ThatIsCutOffToAHundredthComesBackExactly)
{
    auto player = makePlaying("cmus", 0.58);
    player->onQuestion = [&](const QDBusMessage& question) {
        if (question.member() != "Set") return true;
        const auto told = question.arguments().value(2).value<QDBusVariant>().variant().toDouble();
        player->set({{"Volume", static_cast<int>(told * 100) / 100.0}});
        return false;
    };
    say();
    EXPECT_TRUE(comesTo(*player, 0.2));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 0.58));
    EXPECT_TRUE(comesToNoNote());
}

// MPD and cmus: without a stream a command is answered as a success, and does nothing.
TEST_F(PlayerVolumeQuirksTest, OfAPlayerThatIsStoppedWhileLoweredComesBackWhenItPlays)
{
    auto player = makePlaying("mpd", 0.9);
    say();
    EXPECT_TRUE(comesTo(*player, 0.31));
    player->onQuestion = [](const QDBusMessage& question) { return question.member() != "Set"; };
    player->change({{"PlaybackStatus", "Stopped"}, {"Volume", 0.0}});
    fallSilent();
    (void)run(setMusicVolume + "90");
    ASSERT_TRUE(eventually([&] { return notes.load().has_value(); }));
    EXPECT_FALSE(eventuallyWithin(500ms, [&] { return !notes.load(); })) << "nothing is settled yet";
    player->onQuestion = nullptr;
    player->change({{"PlaybackStatus", "Playing"}, {"Metadata", metadataOf("One")}, {"Volume", 0.31}});
    EXPECT_TRUE(comesTo(*player, 0.9));
    EXPECT_TRUE(comesToNoNote());
}

TEST_F(PlayerVolumeQuirksTest, OfAPlayerThatIsClosedWhileLoweredComesBackWithIt)
{
    auto player = makePlaying("vlc.instance1", 0.8);
    say();
    EXPECT_TRUE(comesTo(*player, 0.28));
    player.reset();
    fallSilent();
    beginAnew();  // and we die, too
    auto again = makePlayer({"vlc.instance2"});
    again.set({{"Volume", 0.0}});  // as VLC tells for a tenth of a second
    again.play("One");
    EXPECT_FALSE(eventuallyWithin(200ms, [&] { return again.property("Volume") != QVariant(0.0); }));
    again.change({{"Volume", 0.28}});
    EXPECT_TRUE(comesTo(again, 0.8));
    EXPECT_TRUE(comesToNoNote());
}

}  // namespace
}  // namespace sonvara::test
