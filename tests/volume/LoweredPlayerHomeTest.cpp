// The way home of one player, and when it is known to be there.
#include "LoweredPlayerFixture.h"

namespace sonvara::test {
namespace {

using LoweredPlayerHomeTest = LoweredPlayerFixture;

TEST_F(LoweredPlayerHomeTest, TheUsersHandIsSeenATenthOfASecondAfterTheWayHome)
{
    haveOwed();
    EXPECT_EQ(answerAfter(99ms, 0.6), nothing);
    EXPECT_FALSE(player.isFree());
    EXPECT_EQ(answerAfter(1ms, 0.6), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerHomeTest, HasAsManyTriesOnTheWayHome)
{
    haveLow();
    expectThreeTries(0.8, 0.3);
    wantHome();
    expectThreeTries(0.3, 0.8);
    EXPECT_EQ(answerAfter(100ms, 0.3), nothing);
    EXPECT_EQ(player.nextLook(), std::nullopt);
}

TEST_F(LoweredPlayerHomeTest, SeenAtHomeItIsFreeAndNotLookedAt)
{
    haveOwed();
    EXPECT_EQ(answerAfter(10ms, 0.8 - 0.0009), nothing);
    EXPECT_TRUE(player.isFree());
    EXPECT_EQ(player.nextLook(), std::nullopt);
}

TEST_F(LoweredPlayerHomeTest, ALowVolumeThatWasJustToldMayComeYet)
{
    haveLow();
    pass(50ms);
    wantHome();
    EXPECT_EQ(answerAfter(49ms, 0.8), nothing);
    EXPECT_FALSE(player.isFree());
    EXPECT_EQ(answerAfter(1ms, 0.8), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerHomeTest, AStreamThatHasOpenedSinceIsToldHomeByADetourAtItsBeginAndForCertain)
{
    for (const VolumeLevels each : {VolumeLevels{0.8, 0.3}, VolumeLevels{1, 0.35}}) {
        levels = each;
        const Commands detour{levels.home < 1 ? 0.804 : 0.996, levels.home};
        player = {};
        haveOwed();
        play(false);
        pass(10s);
        play();
        const auto begin = now;
        EXPECT_EQ(answerAfter(10ms, levels.home), detour);
        EXPECT_EQ(answerAfter(100ms, levels.home), nothing);
        EXPECT_EQ(player.nextLook(), begin + 3s);
        now = begin + 2999ms;
        EXPECT_EQ(answerTo(levels.home), nothing);
        EXPECT_EQ(answerAfter(1ms, levels.home), detour);
        EXPECT_EQ(answerAfter(99ms, levels.home), nothing);
        EXPECT_FALSE(player.isFree());
        EXPECT_EQ(answerAfter(1ms, levels.home), nothing);
        EXPECT_TRUE(player.isFree());
    }
}

TEST_F(LoweredPlayerHomeTest, IsNotCertainBeforeItsTrackHasGoneOnForTwoSeconds)
{
    haveOwed();
    play(false);
    play();
    const auto begin = now;
    EXPECT_EQ(answerAfter(10ms, 0.8).size(), 2U);
    pass(1490ms);
    next("2");
    EXPECT_EQ(answerTo(0.8), nothing);
    EXPECT_EQ(player.nextLook(), begin + 3500ms);
    now = begin + 3499ms;
    EXPECT_EQ(answerTo(0.8), nothing);
    EXPECT_EQ(answerAfter(1ms, 0.8).size(), 2U);
}

TEST_F(LoweredPlayerHomeTest, ADetourIsForgottenWhenItIsToBeLow)
{
    haveOwed();
    play(false);
    play();
    player.see(look(0.8), now);
    player.want(true, now);
    EXPECT_EQ(commands(), Commands{0.3});
}

TEST_F(LoweredPlayerHomeTest, OneThatCutsOffIsToldALittleMoreThreeTimesAndThenBelieved)
{
    haveOwed();
    expectThreeTries(0.8 - 0.001, 0.804);
    EXPECT_EQ(answerAfter(50ms, 0.79), nothing);
    EXPECT_FALSE(player.isFree());
    EXPECT_EQ(answerAfter(50ms, 0.79), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerHomeTest, FullVolumeIsNotExceeded)
{
    levels = {1, 0.35};
    haveOwed();
    expectThreeTries(0.995, 1);
    EXPECT_EQ(answerAfter(100ms, 0.995), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerHomeTest, OneThatCutsOffHasItsTriesAgainOnceItIsCertain)
{
    haveLow();
    play(false);
    wantHome();
    pass(1s);
    play();
    const auto begin = now;
    expectThreeTries(0.79, 0.804);
    EXPECT_EQ(answerAfter(100ms, 0.79), nothing);
    now = begin + 3s;
    EXPECT_EQ(answerTo(0.79), (Commands{0.804, 0.8}));
    expectThreeTries(0.79, 0.804);
    EXPECT_EQ(answerAfter(100ms, 0.79), nothing);
    EXPECT_TRUE(player.isFree());
}

}  // namespace
}  // namespace sonvara::test
