// How a lowered player gets its volume back when its line has no end: on the way out, at the next start, or
// later.
#include "VolumeKeeperFixture.h"

#include <random>

namespace sonvara::test {
namespace {

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
        for (int steps = draw(6); steps > 0; --steps) {
            duck();
            if (draw(2) == 0) (void)set(original);
        }
        // Death in the middle of the last command: it may or may not have reached the player.
        const int before = volume();
        std::optional<std::string> lastNotes = store.text;
        desktop.whileSetting = [&] { lastNotes = store.text; };
        if (draw(2) == 0)
            duck();
        else
            (void)set(original);
        desktop.whileSetting = nullptr;
        store.text = lastNotes;
        if (draw(2) == 0) desktop.running["player one"] = before;
        start();
        poll();
        ASSERT_EQ(volume(), original) << "round " << round;
        ASSERT_FALSE(store.text);
    }
}

}  // namespace
}  // namespace sonvara::test
