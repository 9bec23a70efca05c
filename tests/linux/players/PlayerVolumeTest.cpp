// The volume of players on the bus: low while a line is spoken, then back, unless its user moves it.
#include "VolumeFixture.h"

#include <QTimer>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

using PlayerVolumeTest = VolumeFixture;

TEST_F(PlayerVolumeTest, IsLowWhileTheLineIsSpokenAndBackAtItsEnd)
{
    const auto player = makePlaying("rhythmbox", 1.0 / 3);
    say();
    EXPECT_TRUE(comesTo(*player, 0.12));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0 / 3)) << "the very number";
    EXPECT_TRUE(comesToNoNote());
}

TEST_F(PlayerVolumeTest, ANoteIsOnDiskWhileThePlayerIsLowered)
{
    const auto player = makePlaying("vlc.instance77");
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    EXPECT_TRUE(guard->finish(5s));
    EXPECT_TRUE(notes.load().value_or("").ends_with(" org.mpris.MediaPlayer2.vlc\n"))
        << notes.load().value_or("");
    fallSilent();
}

TEST_F(PlayerVolumeTest, OfALoweredPlayerReadsAsItsUsersChoice)
{
    const auto player = makePlaying("rhythmbox", 0.8);
    say();
    EXPECT_EQ(run(getMusicVolume).integer, 80);
    fallSilent();
}

TEST_F(PlayerVolumeTest, TheEndOfALineIsPassedOnAtOnce)
{
    struct Ends final : SpeechSynthesizerDelegate {
        int count = 0;
        void didFinish() override { ++count; }
        void didCancel() override { ++count; }
    };
    begin();
    const auto ends = std::make_shared<Ends>();
    guard->voice().setDelegate(ends);
    speak();
    voice.end();
    EXPECT_EQ(ends->count, 1);
}

// A pause right at a line's beginning: its duck comes later than its end.
TEST_F(PlayerVolumeTest, ALineThatIsOverLowersNothing)
{
    const auto player = makePlaying("rhythmbox");
    untilReady();
    speak();
    fallSilent();
    duck();
    runEvents();
    EXPECT_EQ(player->property("Volume"), QVariant(1.0));
    speak();
    EXPECT_TRUE(comesTo(*player, 0.35)) << "the core believes that it has lowered it";
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0));
}

TEST_F(PlayerVolumeTest, ALookIsBehindWhatTheMainThreadHasToDo)
{
    begin();
    std::vector<std::string> order;
    constexpr PlayerRun gone = 99;
    players->volumes().look(gone, [&](const std::optional<VolumeLook>& look) {
        order.emplace_back(look ? "a volume" : "no answer");
    });
    mainQueue.post([&] { order.emplace_back("a line"); });
    EXPECT_TRUE(eventually([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<std::string>{"a line", "no answer"}));
}

TEST_F(PlayerVolumeTest, IsSetOnTheProgramOnWhichItWasReadOrNowhere)
{
    auto player = makePlaying("rhythmbox");
    speak();
    std::atomic<bool> hasRead = false;
    std::atomic<bool> maySet = false;
    const auto worker = startWorker([&] {
        EXPECT_EQ(guard->scriptRunner().run(getMusicVolume).integer, 100);
        hasRead = true;
        while (!maySet) std::this_thread::yield();
        (void)guard->scriptRunner().run(setMusicVolume + "35");
    });
    EXPECT_TRUE(eventually([&] { return hasRead.load(); }));
    PlayerProcess other(bus, {"vlc"});
    other.say("Two");
    postsUntil(2);
    maySet = true;
    EXPECT_TRUE(eventually([&] { return worker->isFinished(); }));
    EXPECT_TRUE(comesTo(*player, 0.35));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0));
    EXPECT_EQ(run(setMusicVolume + "60").error, std::nullopt);
    EXPECT_EQ(run(getMusicVolume).integer, 100) << "the other one's";
}

TEST_F(PlayerVolumeTest, OfAProgramThatTakesTheNameOverIsLeftAlone)
{
    auto player = makePlaying("rhythmbox");
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    player->disown("rhythmbox");
    auto other = makePlayer({"rhythmbox"});
    other.set({{"Volume", 0.6}});
    other.play("Two");
    postsUntil(3);
    fallSilent();
    (void)run(setMusicVolume + "100");
    EXPECT_TRUE(comesToNoNote());
    EXPECT_EQ(other.property("Volume"), QVariant(0.6));
}

TEST_F(PlayerVolumeTest, ThatTheUserMovesDuringALineStaysWhereItIs)
{
    auto player = makePlaying("rhythmbox");
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    untilReady();
    player->change({{"Volume", 0.6}});
    EXPECT_TRUE(comesToNoNote());
    fallSilent();
    (void)run(setMusicVolume + "100");
    runEvents();
    EXPECT_EQ(run(getMusicVolume).integer, 60);
}

// mpv by the wheel; a drag by the mouse.
TEST_F(PlayerVolumeTest, ThatTheUserMovesAfterALineStaysWhereItIs)
{
    auto player = makePlaying("mpv");
    untilReady();
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0));
    EXPECT_TRUE(comesToNoNote());
    for (const double volume : {0.95, 0.8, 0.6, 0.4, 0.36, 0.35}) player->change({{"Volume", volume}});
    EXPECT_FALSE(eventuallyWithin(500ms, [&] { return player->property("Volume") != QVariant(0.35); }));
}

// We were killed while it was low, and its user has turned it up to the full before we are back.
TEST_F(PlayerVolumeTest, ThatTheUserHasMovedBeforeOurStartStaysWhereItIs)
{
    auto player = makePlaying("rhythmbox", 0.8);
    say();
    EXPECT_TRUE(comesTo(*player, 0.28));
    player->set({{"Volume", 1.0}, {"Position", qlonglong{60'000'000}}});
    QTimer::singleShot(150, [&] { player->set({{"Position", qlonglong{60'150'000}}}); });
    beginAnew();
    postsUntil(2);  // it is known again
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0));
    EXPECT_TRUE(comesToNoNote());
}

TEST_F(PlayerVolumeTest, ComesBackWhenTheProgramEnds)
{
    const auto player = makePlaying("rhythmbox");
    untilReady();
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    guard->end();
    EXPECT_TRUE(eventually([&] { return guard->players().isSettled(); }));
    EXPECT_EQ(player->property("Volume"), QVariant(1.0));
    EXPECT_TRUE(comesToNoNote());
}

}  // namespace
}  // namespace sonvara::test
