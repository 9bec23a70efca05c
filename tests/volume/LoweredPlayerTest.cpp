// One player while it is low: each limit of time and of volume, and what it is told on either side of it.
#include "LoweredPlayerFixture.h"

#include <cmath>

namespace sonvara::test {
namespace {

using LoweredPlayerTest = LoweredPlayerFixture;

TEST_F(LoweredPlayerTest, OneThatObeysIsToldNoMoreAndNotLookedAt)
{
    haveObeyed();
    EXPECT_EQ(player.nextLook(), std::nullopt);
    EXPECT_EQ(answerAfter(1s, 0.2896), nothing);
    EXPECT_EQ(answerAfter(1s, 0.3054), nothing);
    EXPECT_TRUE(player.isLowered());
}

TEST_F(LoweredPlayerTest, ANewOneThatObeysIsNotLookedAtEither)
{
    play();
    pass(500ms);
    player.lower(levels, now);
    commands();
    EXPECT_EQ(answerAfter(200ms, 0.3), nothing);
    EXPECT_EQ(player.nextLook(), std::nullopt);
}

TEST_F(LoweredPlayerTest, AHundredthBelowOrHalfOfOneAboveIsTheUsersHand)
{
    for (const double volume : {0.3 - 0.0105, 0.3 + 0.0055}) {
        player = {};
        haveObeyed();
        player.see(look(volume), now);
        EXPECT_TRUE(player.isFree()) << volume;
    }
}

TEST_F(LoweredPlayerTest, TheUsersHandIsSeenATenthOfASecondAfterACommand)
{
    haveLow();
    EXPECT_EQ(answerAfter(99ms, 0.6), nothing);
    EXPECT_TRUE(player.isLowered());
    EXPECT_EQ(player.nextLook(), now + 1ms);
    EXPECT_EQ(answerAfter(1ms, 0.6), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, OneThatSwallowsTheCommandIsToldThreeTimesMore)
{
    haveLow();
    EXPECT_EQ(answerAfter(99ms, 0.8), nothing);
    EXPECT_EQ(answerAfter(1ms, 0.8), Commands{0.3});
    EXPECT_EQ(answerAfter(100ms, 0.8), Commands{0.3});
    EXPECT_EQ(answerAfter(100ms, 0.8), Commands{0.3});
    EXPECT_EQ(answerAfter(3s, 0.8), nothing);
    EXPECT_TRUE(player.isLowered());
}

TEST_F(LoweredPlayerTest, OnceLoweredAnewItMaySwallowTheCommandAgain)
{
    haveOwed();
    pass(100ms);
    player.want(true, now);
    EXPECT_EQ(commands(), Commands{0.3});
    EXPECT_EQ(answerAfter(100ms, 0.8), Commands{0.3});
}

TEST_F(LoweredPlayerTest, AtTheCubeOfEitherVolumeANewStreamIsToldAgain)
{
    play();
    pass(500ms);
    player.lower(levels, now);
    commands();
    for (const double root : {0.8, 0.8 - 0.009, 0.3 - 0.009})
        EXPECT_EQ(answerAfter(100ms, std::pow(root, 3)), Commands{0.3}) << root;
}

TEST_F(LoweredPlayerTest, TheCubeOfAVolumeIsTheUsersHandOnceTheStreamIsOpen)
{
    haveLow();
    EXPECT_EQ(answerAfter(100ms, std::pow(0.8, 3)), nothing);
    EXPECT_TRUE(player.isFree());
    player = {};
    haveOwed();
    EXPECT_EQ(answerAfter(100ms, std::pow(0.8, 3)), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, WhileItDoesNotPlayNothingIsBelieved)
{
    haveLow();
    play(false);
    EXPECT_EQ(answerAfter(1s, 0.6), nothing);
    EXPECT_TRUE(player.isLowered());
    wantHome();
    for (const double volume : {0.6, 0.8}) {
        EXPECT_EQ(answerAfter(1s, volume), nothing) << volume;
        EXPECT_FALSE(player.isFree()) << volume;
        EXPECT_EQ(player.nextLook(), std::nullopt) << volume;
    }
}

TEST_F(LoweredPlayerTest, OneThatStaysLowWithoutAStreamIsToldThreeTimesAndThenSeldom)
{
    haveLow();
    play(false);
    wantHome();
    expectThreeTries(0.3, 0.8);
    EXPECT_EQ(answerAfter(2499ms, 0.3), nothing);
    EXPECT_EQ(answerAfter(1ms, 0.3), Commands{0.8});
    play();
    expectThreeTries(0.3, 0.8);
    EXPECT_EQ(answerAfter(100ms, 0.3), nothing) << "the stream had three tries of its own";
}

TEST_F(LoweredPlayerTest, OneThatIsOwedItsVolumeFromBeforeHasAsManyTries)
{
    player.owe(levels);
    expectThreeTries(0.3, 0.8);
    EXPECT_EQ(answerAfter(100ms, 0.3), nothing);
}

TEST_F(LoweredPlayerTest, ALookThatHasBegunIsNotDueAnyMore)
{
    player.owe(levels);
    player.hear({}, {}, now);
    EXPECT_EQ(player.nextLook(), now);
    player.looksNow();
    EXPECT_EQ(player.nextLook(), std::nullopt);
}

}  // namespace
}  // namespace sonvara::test
