// The volume of players on the bus: everything that guards it, between the core's commands and the players.
#include "PlayersFixture.h"

#include "helpers/TemporaryFolder.h"
#include "platform/linux/system/QtMainQueue.h"
#include "platform/linux/system/WorkerPool.h"
#include "platform/posix/PosixNoteStore.h"
#include "platform/posix/PosixSystem.h"
#include "platform/posix/VolumeGuard.h"
#include "support/PlayerScripts.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QTimer>

#include <atomic>
#include <cmath>
#include <optional>
#include <thread>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

/// A voice that says nothing, and ends when the test says so.
struct SilentVoice final : SpeechSynthesizer {
    std::weak_ptr<SpeechSynthesizerDelegate> delegate;
    int lines = 0;

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> to) override { delegate = std::move(to); }
    void speak(SpeechUtterance) override { ++lines; }
    void stopSpeaking() override
    {
        while (lines > 0) end();
    }
    [[nodiscard]] std::string currentLanguageCode() const override { return "en"; }
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string&) const override
    {
        return {};
    }
    void end()
    {
        --lines;
        delegate.lock()->didFinish();
    }
};

class PlayerVolumeTest : public PlayersTest {
protected:
    TemporaryFolder folder;
    SilentVoice voice;
    QtMainQueue mainQueue;
    PosixClock clock{"0"};
    PosixNoteStore notes{folder.path() + "/lowered-players"};
    WorkerPool workers;
    std::unique_ptr<VolumeGuard> guard;

    ~PlayerVolumeTest() override
    {
        if (guard) guard->end();
        EXPECT_TRUE(workers.shutDown(5s));
        players.reset();
        guard.reset();
    }

    /// Our process begins, beside players that are there or come later.
    void begin()
    {
        make();
        guard = std::make_unique<VolumeGuard>(VolumeGuard::Below{
            players->volumes(), players->scriptRunner(), voice, mainQueue, workers, clock, notes, 1000ms});
        players->reportTo(guard->players());
        run(musicPollScript());  // as the core begins
    }
    /// It dies as by SIGKILL, when its last note is written, and begins anew.
    void beginAnew()
    {
        EXPECT_TRUE(guard->finish(5s));
        players.reset();
        guard.reset();
        begin();
    }
    /// A player that has begun to play.
    std::unique_ptr<FakePlayer> makePlaying(const QString& name, double volume = 1.0)
    {
        auto player = std::make_unique<FakePlayer>(bus.connect(), QStringList{name});
        player->set({{"Volume", volume}});
        begin();
        player->play("One");
        postsUntil(1);
        return player;
    }
    void untilReady()
    {
        EXPECT_FALSE(eventuallyWithin(3100ms, [] { return false; }));
    }
    static bool eventuallyWithin(std::chrono::milliseconds limit, const std::function<bool()>& condition)
    {
        const QDeadlineTimer end(limit);
        return eventually([&] { return condition() || end.hasExpired(); }) && condition();
    }

    ScriptResult run(const std::string& script)
    {
        ScriptResult result;
        onWorker([&] { result = guard->scriptRunner().run(script); });
        return result;
    }
    /// What the core does about a line, on one worker.
    void duck()
    {
        onWorker([this] {
            const auto read = guard->scriptRunner().run(getMusicVolume);
            if (read.error) return;
            (void)guard->scriptRunner().run(setMusicVolume +
                                            std::to_string(std::max(read.integer * 35 / 100, 12)));
        });
    }
    void speak() { guard->voice().speak({"Now playing", std::nullopt}); }
    void say()
    {
        speak();
        duck();
    }
    void fallSilent() { voice.end(); }
    static bool comesTo(const FakePlayer& player, double volume)
    {
        return eventually([&] { return std::abs(player.property("Volume").toDouble() - volume) < 1e-9; });
    }
    bool comesToNoNote()
    {
        return eventually([&] { return guard->finish(0ms) && !notes.load(); });
    }
};

TEST_F(PlayerVolumeTest, IsLowWhileTheLineIsSpokenAndBackAtItsEnd)
{
    const auto player = makePlaying("rhythmbox", 1.0 / 3);
    say();
    EXPECT_TRUE(comesTo(*player, 0.12));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0 / 3)) << "the very number";
    EXPECT_TRUE(comesToNoNote());
}

// PipeWire: for up to 0.3 seconds a new stream has no volume, and cmus and Audacious tell 0.
TEST_F(PlayerVolumeTest, ThatIsNotKnownWhileTheStreamOpensIsWaitedFor)
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
TEST_F(PlayerVolumeTest, ThatIsToldBeforeTheFirstStreamIsOpenIsNotBelieved)
{
    auto player = makePlaying("strawberry");
    QTimer::singleShot(150, [&] { player->change({{"Volume", 0.58}}); });
    say();
    EXPECT_TRUE(comesTo(*player, 0.2));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 0.58));
    EXPECT_TRUE(comesToNoNote());
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

TEST_F(PlayerVolumeTest, ThatAPlayerTakesBackAtATracksBeginIsSetOnceMore)
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
TEST_F(PlayerVolumeTest, ThatAPlayerSwallowsIsSetOnceMore)
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

// MPD and cmus: without a stream a command is answered as a success, and does nothing.
TEST_F(PlayerVolumeTest, OfAPlayerThatIsStoppedWhileLoweredComesBackWhenItPlays)
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

TEST_F(PlayerVolumeTest, OfAPlayerThatIsClosedWhileLoweredComesBackWithIt)
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

TEST_F(PlayerVolumeTest, ThatIsCutOffToAHundredthComesBackExactly)
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

TEST_F(PlayerVolumeTest, OfALoweredPlayerReadsAsItsUsersChoice)
{
    const auto player = makePlaying("rhythmbox", 0.8);
    say();
    EXPECT_EQ(run(getMusicVolume).integer, 80);
    fallSilent();
}

TEST_F(PlayerVolumeTest, ThatCannotBeReadIsAnError)
{
    auto player = makePlaying("vlc");
    for (const QVariant& volume : {QVariant("loud"), QVariant(std::nan("")), QVariant(QStringList{"1.0"})}) {
        player->set({{"Volume", volume}});
        EXPECT_TRUE(run(getMusicVolume).error);
    }
    player->manner = FakePlayer::Manner::failing;
    EXPECT_TRUE(run(getMusicVolume).error);
    player->manner = FakePlayer::Manner::babbling;
    EXPECT_TRUE(run(getMusicVolume).error);
    EXPECT_TRUE(run(getSpotifyVolume).error);
}

TEST_F(PlayerVolumeTest, OfAHungPlayerIsAnErrorAfterAShortWait)
{
    auto player = makePlaying("vlc");
    player->manner = FakePlayer::Manner::hanging;
    ScriptResult result;
    EXPECT_LT(onWorker([&] { result = guard->scriptRunner().run(getMusicVolume); }), 1500ms);
    EXPECT_TRUE(result.error);
}

TEST_F(PlayerVolumeTest, IsAnErrorAlthoughTheMainThreadIsGone)
{
    begin();
    const auto start = std::chrono::steady_clock::now();
    ScriptResult result;
    std::thread([&] { result = guard->scriptRunner().run(getMusicVolume); }).join();
    EXPECT_TRUE(result.error);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1500ms);
}

TEST_F(PlayerVolumeTest, DoesNotWaitForASlowDisk)
{
    struct SlowStore final : NoteStore {
        std::atomic<bool> isReleased = false;
        std::optional<std::string> load() override
        {
            wait();
            return {};
        }
        void save(const std::string&) override { wait(); }
        void remove() override { wait(); }
        void setAside() override {}
        void wait() const
        {
            while (!isReleased) std::this_thread::yield();
        }
    } slow;
    auto player = makePlaying("rhythmbox");
    guard = nullptr;
    players = nullptr;
    make();
    guard = std::make_unique<VolumeGuard>(VolumeGuard::Below{players->volumes(), players->scriptRunner(),
                                                             voice, mainQueue, workers, clock, slow, 1000ms});
    players->reportTo(guard->players());
    run(musicPollScript());
    postsUntil(2);  // it is known again
    EXPECT_TRUE(run(getMusicVolume).error) << "the notes have not been read";
    EXPECT_EQ(player->property("Volume"), QVariant(1.0));
    slow.isReleased = true;
    EXPECT_TRUE(eventually([&] { return !run(getMusicVolume).error; }));
    slow.isReleased = false;
    say();
    EXPECT_TRUE(comesTo(*player, 0.35));
    fallSilent();
    EXPECT_TRUE(comesTo(*player, 1.0));
    guard->end();
    EXPECT_FALSE(guard->finish(50ms)) << "the end knows that it must not wait any longer";
    slow.isReleased = true;
    EXPECT_TRUE(guard->finish(5s));
    players = nullptr;
    guard = nullptr;
}

TEST_F(PlayerVolumeTest, TheVoiceMayGoWhenTheProgramEndsAlthoughTheCoreStillHasTasks)
{
    const auto player = makePlaying("rhythmbox");
    say();
    EXPECT_EQ(voice.lines, 1);
    guard->end();
    auto& heard = guard->voice();
    heard.speak({"A line after the end", std::nullopt});
    heard.stopSpeaking();
    EXPECT_EQ(heard.currentLanguageCode(), "");
    EXPECT_FALSE(heard.voiceForLanguage("de-DE"));
    EXPECT_EQ(voice.lines, 1);
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
