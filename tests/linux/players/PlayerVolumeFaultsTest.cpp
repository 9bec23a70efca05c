// The volume of players that fail or hang, a disk that is slow, and threads that have ended.
#include "VolumeFixture.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

using PlayerVolumeFaultsTest = VolumeFixture;

TEST_F(PlayerVolumeFaultsTest, ThatCannotBeReadIsAnError)
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

TEST_F(PlayerVolumeFaultsTest, OfAHungPlayerIsAnErrorAfterAShortWait)
{
    auto player = makePlaying("vlc");
    player->manner = FakePlayer::Manner::hanging;
    ScriptResult result;
    EXPECT_LT(onWorker([&] { result = guard->scriptRunner().run(getMusicVolume); }), 1500ms);
    EXPECT_TRUE(result.error);
}

TEST_F(PlayerVolumeFaultsTest, IsAnErrorAlthoughTheMainThreadIsGone)
{
    begin();
    const auto start = std::chrono::steady_clock::now();
    ScriptResult result;
    std::thread([&] { result = guard->scriptRunner().run(getMusicVolume); }).join();
    EXPECT_TRUE(result.error);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1500ms);
}

TEST_F(PlayerVolumeFaultsTest, DoesNotWaitForASlowDisk)
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

TEST_F(PlayerVolumeFaultsTest, TheVoiceMayGoWhenTheProgramEndsAlthoughTheCoreStillHasTasks)
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

}  // namespace
}  // namespace sonvara::test
