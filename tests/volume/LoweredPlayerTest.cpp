// One player while it is low: each limit of time and of volume, and what it is told on either side of it.
#include "LoweredPlayerFixture.h"

#include <cmath>
#include <string>

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

TEST_F(LoweredPlayerTest, OneThatIsSilencedWhileItIsLowComesBackToItsVolumeAndNotLow)
{
    haveObeyed();
    EXPECT_EQ(answerAfter(1s, 0), nothing);
    EXPECT_FALSE(player.isLowered());
    EXPECT_FALSE(player.isReadable(look(0), now));
    player.want(false, now);
    EXPECT_EQ(answerAfter(10s, 0.01), nothing) << "its user has silenced it";
    EXPECT_EQ(answerAfter(10s, 0.3), Commands{0.8});
    EXPECT_EQ(answerAfter(100ms, 0.8), nothing);
    EXPECT_TRUE(player.isFree());
}

// The command before was obeyed late, and cut off: what had looked like obedience was still the low volume of that time.
TEST_F(LoweredPlayerTest, OneThatIsSeenAHundredthBelowHomeAfterAllIsBroughtHomeExactly)
{
    haveOwed();
    player.want(true, now);
    EXPECT_EQ(commands(), Commands{0.3});
    EXPECT_EQ(answerAfter(5ms, 0.3), nothing);
    EXPECT_EQ(answerAfter(100ms, 0.79), Commands{0.804});
    EXPECT_FALSE(player.isLowered());
}

TEST_F(LoweredPlayerTest, OneThatIsSilencedStaysSoWithTheNextTracksAndWhenItGoesOn)
{
    haveObeyed();
    EXPECT_EQ(answerAfter(1s, 0), nothing);
    for (const std::string title : {"2", "3"}) {
        next(title);
        EXPECT_EQ(answerAfter(150ms, 0), nothing) << title;
        EXPECT_EQ(answerAfter(100ms, 0.01), nothing) << title;
        pass(5s);
    }
    play(false);
    play();
    EXPECT_EQ(answerAfter(150ms, 0), nothing);
}

TEST_F(LoweredPlayerTest, OneThatIsSilencedAndTurnedUpIsInItsUsersHand)
{
    haveObeyed();
    EXPECT_EQ(answerAfter(1s, 0), nothing);
    EXPECT_EQ(answerAfter(10s, 0.011), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, IsReadableWhereItsUsersVolumeIsKnown)
{
    haveForLong();
    next("2");
    EXPECT_TRUE(player.isReadable(look(0), now)) << "its user has silenced it, and it is owed nothing";
    player.lower(levels, now);
    EXPECT_TRUE(player.isReadable(look(0), now)) << "levels are known";
    player.want(false, now);
    EXPECT_FALSE(player.isReadable(look(0.01), now));
    EXPECT_TRUE(player.isReadable(look(0.011), now));
    play(false);
    play();
    pass(2999ms);
    EXPECT_TRUE(player.isReadable(look(0), now)) << "it has no stream yet";
    pass(1ms);
    EXPECT_FALSE(player.isReadable(look(0), now));
}

TEST_F(LoweredPlayerTest, OneThatItsUserHadSilencedIsReadable)
{
    levels = {0, 0.12};
    haveOwed();
    EXPECT_TRUE(player.isReadable(look(0), now));
    EXPECT_EQ(answerAfter(100ms, 0), nothing);
    EXPECT_TRUE(player.isFree());
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
