#include "platform/linux/players/VolumeHold.h"

#include <gtest/gtest.h>

namespace sonvara::players {
namespace {

using namespace std::chrono_literals;

class VolumeHoldTest : public testing::Test {
protected:
    VolumeHoldTest()
    {
        hold.learn(":1.7", 100);
        hold.set(":1.7", 35, begin);
    }

    VolumeHold hold;
    const Time begin{1h};
};

TEST_F(VolumeHoldTest, AVolumeThatIsTakenBackIsSetOnceMore)
{
    EXPECT_EQ(hold.hear(":1.7", 100, begin + 5ms), 35);
}

TEST_F(VolumeHoldTest, WhatThePlayerWasToldIsNotSaidAgain)
{
    EXPECT_EQ(hold.hear(":1.7", 35, begin), std::nullopt);
    EXPECT_EQ(hold.hear(":1.7", 33, begin), std::nullopt);
}

TEST_F(VolumeHoldTest, PlayersRoundAndAreStillUnderstood)
{
    EXPECT_EQ(hold.hear(":1.7", 98, begin), 35);
}

TEST_F(VolumeHoldTest, AVolumeThatSomebodyMovesElsewhereIsLeftAlone)
{
    EXPECT_EQ(hold.hear(":1.7", 97, begin), std::nullopt);
    EXPECT_EQ(hold.hear(":1.7", 60, begin), std::nullopt);
}

TEST_F(VolumeHoldTest, AfterASecondItIsTheUserWhoPutsItBack)
{
    EXPECT_EQ(hold.hear(":1.7", 100, begin + 999ms), 35);
    EXPECT_EQ(hold.hear(":1.7", 100, begin + 1s), std::nullopt);
}

TEST_F(VolumeHoldTest, AStubbornPlayerIsLeftAloneAfterThreeTimes)
{
    for (int i = 0; i < 3; ++i) EXPECT_EQ(hold.hear(":1.7", 100, begin), 35);
    EXPECT_EQ(hold.hear(":1.7", 100, begin), std::nullopt);
    hold.set(":1.7", 100, begin);
    EXPECT_EQ(hold.hear(":1.7", 35, begin), 100);
}

TEST_F(VolumeHoldTest, TheWayBackIsHeldToo)
{
    hold.set(":1.7", 100, begin + 3s);
    EXPECT_EQ(hold.hear(":1.7", 100, begin + 3s), std::nullopt);
    EXPECT_EQ(hold.hear(":1.7", 35, begin + 3s), 100);
}

TEST_F(VolumeHoldTest, AnotherPlayersVolumeIsItsOwn)
{
    EXPECT_EQ(hold.hear(":1.8", 100, begin), std::nullopt);
    hold.set(":1.8", 35, begin);
    EXPECT_EQ(hold.hear(":1.8", 100, begin), std::nullopt) << "nobody knows what it was before";
}

TEST_F(VolumeHoldTest, AnAnswerThatAgreesChangesNothing)
{
    hold.learn(":1.7", 35);
    EXPECT_EQ(hold.hear(":1.7", 100, begin), 35);
}

TEST_F(VolumeHoldTest, AnAnswerThatDiffersIsTheNewVolume)
{
    hold.learn(":1.7", 50);
    EXPECT_EQ(hold.hear(":1.7", 100, begin), std::nullopt);
    hold.set(":1.7", 17, begin);
    EXPECT_EQ(hold.hear(":1.7", 50, begin), 17);
}

TEST(VolumeHold, WithoutACommandNothingIsSet)
{
    VolumeHold hold;
    EXPECT_EQ(hold.hear(":1.7", 100, Time{}), std::nullopt);
    hold.learn(":1.7", 100);
    EXPECT_EQ(hold.hear(":1.7", 50, Time{}), std::nullopt);
}

}  // namespace
}  // namespace sonvara::players
