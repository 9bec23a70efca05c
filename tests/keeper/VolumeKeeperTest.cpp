// The keeper of the volume, with programs that come and go and users who move what we have set.
#include "platform/keeper/VolumeKeeper.h"

#include "platform/keeper/NoteStore.h"
#include "platform/keeper/VolumePrograms.h"
#include "support/PlayerScripts.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace sonvara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct MemoryStore : NoteStore {
    std::optional<std::string> text;
    std::optional<std::string> aside;
    std::optional<std::string> load() override { return text; }
    void save(const std::string& newText) override { text = newText; }
    void remove() override { text.reset(); }
    void setAside() override { aside.swap(text); }
};

/// A desktop whose name "Music" means one of several programs.
struct Desktop : ScriptRunner, VolumePrograms {
    std::map<std::string, int> running;  ///< volume by program
    std::string music = "player one";
    std::optional<std::string> lastRead;
    std::vector<std::string> scripts;
    std::function<void()> whileSetting;  ///< the test's part, between the note and the effect
    std::function<void()> whileReading;  ///< the same, between the player's answer and its arrival

    ScriptResult run(const std::string& source) override
    {
        scripts.push_back(source);
        ScriptResult result;
        const auto command = parseVolumeScript(source);
        if (!command) {
            result.text = "notrunning";
            return result;
        }
        if (!command->volume) lastRead = music;
        if (!lastRead || !running.contains(*lastRead)) {
            result.error = "not running";
        } else if (command->volume) {
            if (whileSetting) whileSetting();
            running[*lastRead] = *command->volume;
        } else {
            result.integer = running[*lastRead];
            if (whileReading) std::exchange(whileReading, nullptr)();
        }
        return result;
    }
    std::optional<std::string> programOf(const std::string&) override { return lastRead; }
    std::optional<int> volume(const std::string& program) override
    {
        const auto found = running.find(program);
        return found == running.end() ? std::nullopt : std::optional(found->second);
    }
    bool setVolume(const std::string& program, int volume) override
    {
        if (!running.contains(program)) return false;
        running[program] = volume;
        return true;
    }
};

class VolumeKeeperTest : public testing::Test {
protected:
    MemoryStore store;
    Desktop desktop;
    std::unique_ptr<VolumeKeeper> keeper;

    VolumeKeeperTest() { desktop.running["player one"] = 100; }
    void SetUp() override { start(); }
    void start() { keeper = std::make_unique<VolumeKeeper>(desktop, desktop, store); }
    ScriptResult read() { return keeper->run(volumeScript({"Music", std::nullopt})); }
    ScriptResult set(int volume) { return keeper->run(volumeScript({"Music", volume})); }
    void poll() { (void)keeper->run(musicPollScript()); }
    /// What the DJ does before it speaks.
    void duck()
    {
        const auto volume = read().integer;
        (void)set(std::max(volume * 35 / 100, 12));
    }
    [[nodiscard]] std::optional<VolumeNotes> notes() const
    {
        return store.text ? parseVolumeNotes(*store.text) : std::nullopt;
    }
    [[nodiscard]] int volume() const { return desktop.running.at("player one"); }
};

TEST_F(VolumeKeeperTest, ScriptsAndAnswersPassUnchanged)
{
    poll();
    EXPECT_EQ(read().integer, 100);
    (void)set(35);
    EXPECT_THAT(desktop.scripts,
                ElementsAre(musicPollScript(), "tell application \"Music\" to get sound volume",
                            "tell application \"Music\" to set sound volume to 35"));
}

TEST_F(VolumeKeeperTest, ThePlayerIsWrittenDownBeforeItIsLowered)
{
    std::optional<VolumeNotes> before;
    desktop.whileSetting = [&] { before = notes(); };
    duck();
    EXPECT_EQ(before, (VolumeNotes{{"player one", 100, 35}}));
}

TEST_F(VolumeKeeperTest, TheNoteIsForgottenWhenTheVolumeIsBack)
{
    duck();
    EXPECT_TRUE(store.text);
    (void)set(100);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, AVolumeThatIsNotChangedNeedsNoNote)
{
    desktop.running["player one"] = 12;
    duck();
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, OnTheWayOutALoweredPlayerIsPutBack)
{
    duck();
    keeper->restoreAll();
    EXPECT_EQ(volume(), 100);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, AfterTheWayOutNoPlayerIsLoweredAnyMore)
{
    (void)read();
    keeper->restoreAll();
    EXPECT_TRUE(set(35).error);
    EXPECT_EQ(volume(), 100);
}

TEST_F(VolumeKeeperTest, APlayerThatTheUserMovedIsLeftAlone)
{
    duck();
    desktop.running["player one"] = 38;
    keeper->restoreAll();
    EXPECT_EQ(volume(), 38);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, ADifferenceOfTwoIsRoundingAndNotTheUser)
{
    for (const int rounded : {33, 34, 35, 36, 37}) {
        desktop.running["player one"] = 100;
        start();
        duck();
        desktop.running["player one"] = rounded;
        keeper->restoreAll();
        EXPECT_EQ(volume(), 100) << rounded;
    }
}

TEST_F(VolumeKeeperTest, AfterACrashTheNextStartPutsThePlayerBackBeforeAnythingElse)
{
    duck();
    start();  // the process before was killed
    EXPECT_EQ(volume(), 35);
    EXPECT_EQ(read().integer, 100) << "the DJ never takes the lowered volume for the user's";
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, AfterACrashThePlayerIsPutBackWhenItAppears)
{
    duck();
    desktop.running.clear();
    start();
    poll();
    EXPECT_TRUE(store.text);
    desktop.running["player one"] = 35;
    poll();
    EXPECT_EQ(volume(), 100);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, AfterACrashAPlayerThatWasMovedIsForgotten)
{
    duck();
    desktop.running["player one"] = 70;
    start();
    poll();
    EXPECT_EQ(volume(), 70);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, APlayerThatDiedWhileLoweredIsPutBackWhenItReturns)
{
    duck();
    desktop.running.clear();
    EXPECT_TRUE(set(100).error);
    EXPECT_TRUE(store.text);
    desktop.running["player one"] = 35;
    poll();
    EXPECT_EQ(volume(), 100);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, EachProgramIsPutBackAlsoWhenTheNameMeansAnotherOneByThen)
{
    duck();
    desktop.music = "player two";
    desktop.running["player two"] = 80;
    duck();
    EXPECT_EQ(notes()->size(), 2U);
    keeper->restoreAll();
    EXPECT_EQ(desktop.running.at("player one"), 100);
    EXPECT_EQ(desktop.running.at("player two"), 80);
}

TEST_F(VolumeKeeperTest, ALoweredPlayerReadsAsLoudAsItsUserWantsIt)
{
    duck();
    EXPECT_EQ(read().integer, 100);
    duck();
    EXPECT_EQ(volume(), 35) << "lines that follow close on each other do not lower it twice";
    EXPECT_EQ(notes(), (VolumeNotes{{"player one", 100, 35}}));
    (void)set(100);
    EXPECT_EQ(volume(), 100);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, APlayerThatIsPutBackWhileItIsReadReadsAsLoudAsItsUserWantsIt)
{
    duck();
    desktop.whileReading = [this] { (void)set(100); };
    EXPECT_EQ(read().integer, 100) << "the answer was 35 when the player gave it";
}

TEST_F(VolumeKeeperTest, SetLowerThanBeforeTheFirstVolumeIsKept)
{
    duck();
    (void)read();
    (void)set(12);
    EXPECT_EQ(notes(), (VolumeNotes{{"player one", 100, 12}}));
    keeper->restoreAll();
    EXPECT_EQ(volume(), 100);
}

TEST_F(VolumeKeeperTest, LoweredAgainFromWhereTheUserPutItThatVolumeCounts)
{
    duck();
    desktop.running["player one"] = 80;
    duck();
    EXPECT_EQ(notes(), (VolumeNotes{{"player one", 80, 28}}));
}

TEST_F(VolumeKeeperTest, ACommandThatIsStillUnderWayOnTheWayOutKeepsItsNoteForTheNextStart)
{
    desktop.whileSetting = [this] {
        keeper->restoreAll();  // sees the volume from before the command
        EXPECT_EQ(volume(), 100);
    };
    duck();
    EXPECT_EQ(volume(), 35);
    EXPECT_TRUE(store.text);
    desktop.whileSetting = nullptr;
    start();
    poll();
    EXPECT_EQ(volume(), 100);
}

TEST_F(VolumeKeeperTest, ADamagedNoteIsSetAside)
{
    store.text = "garbage";
    start();
    EXPECT_FALSE(store.text);
    EXPECT_EQ(store.aside, "garbage");
    duck();
    EXPECT_TRUE(notes());
}

TEST_F(VolumeKeeperTest, AtAnyMomentOfDeathTheNextStartFindsTheWayBack)
{
    std::mt19937 random(1);
    const auto draw = [&random](int below) {
        return static_cast<int>(random() % static_cast<unsigned>(below));
    };
    for (int round = 0; round < 500; ++round) {
        const int original = draw(101);
        desktop.running["player one"] = original;
        store.text.reset();
        start();
        // Death at a random step of a playing session; the effect of the last command may or may not be seen.
        for (int steps = draw(6); steps > 0; --steps) {
            duck();
            if (draw(2) == 0) (void)set(original);
        }
        start();
        poll();
        ASSERT_EQ(volume(), original) << "round " << round;
        ASSERT_FALSE(store.text);
    }
}

}  // namespace
}  // namespace sonvara
