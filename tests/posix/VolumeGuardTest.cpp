// What guards the volumes, put together: its notes, its times and its end.
#include "platform/posix/VolumeGuard.h"

#include "VolumeFakes.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr int day = 100;

/// At noon.
struct FixedClock final : Clock {
    [[nodiscard]] WallTime now() const override { return WallTime(std::chrono::days(day) + 12h); }
    [[nodiscard]] std::string timeText(WallTime) const override { return {}; }
};

struct MemoryStore final : NoteStore {
    std::optional<std::string> text;
    bool isAside = false;
    int loads = 0;

    [[nodiscard]] std::optional<std::string> load() override
    {
        ++loads;
        return text;
    }
    void save(const std::string& given) override { text = given; }
    void remove() override { text.reset(); }
    void setAside() override { isAside = true; }
};

struct SilentVoice final : SpeechSynthesizer {
    int lines = 0;

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate>) override {}
    void speak(SpeechUtterance) override { ++lines; }
    void stopSpeaking() override {}
    [[nodiscard]] std::string currentLanguageCode() const override { return "en"; }
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string&) const override
    {
        return {};
    }
};

std::string noteOf(int lastSeen)
{
    return format({{testPlayer, {.home = 0.8, .low = 0.28}, lastSeen}});
}

class VolumeGuardTest : public testing::Test {
protected:
    HeldMainQueue queue;
    HeldWorkers workers;
    OnePlayer player{queue};
    OtherScripts others;
    SilentVoice voice;
    FixedClock clock;
    MemoryStore notes;
    std::optional<VolumeGuard> guard{std::in_place, VolumeGuard::Below{.players = player,
                                                                       .otherScripts = others,
                                                                       .voice = voice,
                                                                       .mainQueue = queue,
                                                                       .workers = workers,
                                                                       .clock = clock,
                                                                       .notes = notes,
                                                                       .readLimit = 60s}};

    void poll()
    {
        (void)guard->scriptRunner().run("a poll");
        queue.run();
    }
    void readNotes()
    {
        poll();
        ASSERT_EQ(workers.now.size(), 1U);
        workers.now.front()->task();
        queue.run();
    }
    /// A line begins, and the core lowers the player.
    void say()
    {
        guard->players().appeared(OnePlayer::run, testPlayer);
        guard->voice().speak({"Now playing", std::nullopt});
        onWorker(queue, [this] {
            (void)guard->scriptRunner().run(getVolume);
            (void)guard->scriptRunner().run(setVolumeTo28);
        });
    }
    [[nodiscard]] bool owesAnything() { return guard->players().owesAnything(); }
};

TEST_F(VolumeGuardTest, ReadsItsNotesOnAWorkerAtTheFirstScript)
{
    notes.text = noteOf(day - 1);
    EXPECT_TRUE(queue.isEmpty());
    poll();
    ASSERT_EQ(workers.now.size(), 1U);
    EXPECT_EQ(workers.now.front()->quality, QualityOfService::userInitiated);
    EXPECT_EQ(notes.loads, 0);
    guard->players().appeared(OnePlayer::run, testPlayer);
    workers.now.front()->task();
    EXPECT_EQ(player.looks, 0) << "it is the main thread's business";
    queue.run();
    EXPECT_TRUE(owesAnything());
    EXPECT_GT(player.looks, 0);
    EXPECT_FALSE(notes.isAside);
}

TEST_F(VolumeGuardTest, WithoutNotesNothingIsOwed)
{
    readNotes();
    EXPECT_FALSE(owesAnything());
    EXPECT_FALSE(notes.isAside);
}

TEST_F(VolumeGuardTest, NotesThatMakeNoSenseAreSetAside)
{
    notes.text = "no notes at all";
    readNotes();
    EXPECT_FALSE(owesAnything());
    EXPECT_TRUE(notes.isAside);
}

TEST_F(VolumeGuardTest, KnowsTheDay)
{
    notes.text = noteOf(day - LoweredPlayers::daysOfNotes);
    readNotes();
    EXPECT_TRUE(owesAnything());
}

TEST_F(VolumeGuardTest, NotesThatAreTooOldAreRemoved)
{
    notes.text = noteOf(day - LoweredPlayers::daysOfNotes - 1);
    readNotes();
    EXPECT_FALSE(owesAnything());
    ASSERT_TRUE(guard->finish(60s));
    EXPECT_EQ(notes.text, std::nullopt);
}

TEST_F(VolumeGuardTest, WritesWhatIsOwed)
{
    readNotes();
    say();
    EXPECT_EQ(player.told, std::vector<double>{0.28});
    ASSERT_TRUE(guard->finish(60s));
    EXPECT_EQ(notes.text, noteOf(day));
}

TEST_F(VolumeGuardTest, WakesWhenThePlayerIsToBeLookedAt)
{
    readNotes();
    const auto begun = steady_clock::now();
    say();
    ASSERT_FALSE(workers.later.empty());
    const auto wakeUp = workers.later.back();
    EXPECT_EQ(wakeUp->quality, QualityOfService::userInitiated);
    EXPECT_GT(wakeUp->delay, 0ms);
    EXPECT_LE(wakeUp->delay, 60s);
    EXPECT_FALSE(wakeUp->isCancelled);
    for (const auto& each : workers.later) EXPECT_EQ(each->isCancelled, each != wakeUp);

    while (steady_clock::now() < begun + LoweredPlayer::settling) std::this_thread::yield();
    const auto looks = player.looks;
    while (steady_clock::now() < begun + wakeUp->delay + LoweredPlayer::settling) std::this_thread::yield();
    wakeUp->task();
    EXPECT_EQ(player.looks, looks) << "it is the main thread's business";
    queue.run();
    EXPECT_GT(player.looks, looks);
}

TEST_F(VolumeGuardTest, IsNotWokenTwiceForOneTime)
{
    readNotes();
    say();
    const auto before = workers.later.size();
    guard->players().wake();
    EXPECT_EQ(workers.later.size(), before);
}

TEST_F(VolumeGuardTest, TasksThatComeAfterItDoNothing)
{
    notes.text = noteOf(day - 1);
    poll();
    guard->players().appeared(OnePlayer::run, testPlayer);
    guard.reset();
    for (const auto& work : workers.now) work->task();
    queue.run();
    EXPECT_EQ(player.looks, 0);
}

TEST_F(VolumeGuardTest, AWakeUpThatComesAfterItDoesNothing)
{
    readNotes();
    say();
    const auto wakeUp = workers.later.back();
    const auto begun = steady_clock::now();
    while (steady_clock::now() < begun + wakeUp->delay) std::this_thread::yield();
    const auto looks = player.looks;
    wakeUp->task();
    guard.reset();
    queue.run();
    wakeUp->task();
    queue.run();
    EXPECT_EQ(player.looks, looks);
}

TEST_F(VolumeGuardTest, AtItsEndThePlayerIsBackAndNothingIsSpokenOrRead)
{
    readNotes();
    say();
    EXPECT_EQ(voice.lines, 1);
    guard->end();
    EXPECT_EQ(player.told, (std::vector<double>{0.28, 0.8}));
    guard->voice().speak({"Next up", std::nullopt});
    EXPECT_EQ(voice.lines, 1);
    const auto begun = steady_clock::now();
    EXPECT_NE(guard->scriptRunner().run(getVolume).error, std::nullopt);
    EXPECT_LT(steady_clock::now() - begun, 30s);
}

}  // namespace
}  // namespace sonvara::test
