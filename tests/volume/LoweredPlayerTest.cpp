// One player's states: each limit of time and of volume, and what it is told on either side of it.
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

TEST_F(LoweredPlayerTest, TheUsersHandIsSeenATenthOfASecondAfterTheWayHome)
{
    haveOwed();
    EXPECT_EQ(answerAfter(99ms, 0.6), nothing);
    EXPECT_FALSE(player.isFree());
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

TEST_F(LoweredPlayerTest, HasAsManyTriesOnTheWayHome)
{
    haveLow();
    expectThreeTries(0.8, 0.3);
    wantHome();
    expectThreeTries(0.3, 0.8);
    EXPECT_EQ(answerAfter(100ms, 0.3), nothing);
    EXPECT_EQ(player.nextLook(), std::nullopt);
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

TEST_F(LoweredPlayerTest, OneThatTakesItsVolumeBackWithinTwoSecondsOfATrackIsToldOnceMore)
{
    haveObeyed();
    for (const std::string title : {"2", "3"}) {
        next(title);
        EXPECT_EQ(answerAfter(1999ms, 0.8), Commands{0.3});
        EXPECT_EQ(answerAfter(100ms, 0.8), nothing) << "it has its way";
        EXPECT_TRUE(player.isLowered());
        EXPECT_EQ(answerAfter(100ms, 0.3), nothing);
    }
    next("4");
    EXPECT_EQ(answerAfter(2000ms, 0.8), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, OneThatTakesItsVolumeBackTwiceAndThenGoesLowIsBroughtHome)
{
    haveTakenItsVolumeBackTwice();
    EXPECT_FALSE(player.isLowered());
    EXPECT_EQ(answerAfter(50ms, 0.3), Commands{0.8}) << "as of the track before";
    EXPECT_EQ(answerAfter(100ms, 0.8), nothing);
    EXPECT_FALSE(player.isFree());
    EXPECT_EQ(answerAfter(2000ms, 0.8), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, OneThatGoesLowByItselfHasItsThreeTriesToo)
{
    haveTakenItsVolumeBackTwice();
    expectThreeTries(0.3, 0.8);
    EXPECT_EQ(answerAfter(100ms, 0.3), nothing);
}

TEST_F(LoweredPlayerTest, OneThatTakesItsVolumeBackWithAStreamIsToldOnceMore)
{
    haveObeyed();
    play(false);
    pass(10s);
    play();
    EXPECT_EQ(answerAfter(500ms, 0.8), Commands{0.3});
}

TEST_F(LoweredPlayerTest, SoIsOneThatTellsNoTitles)
{
    track = "";
    haveObeyed();
    play(false);
    pass(10s);
    play();
    EXPECT_EQ(answerAfter(500ms, 0.8), Commands{0.3});
}

TEST_F(LoweredPlayerTest, AnyOtherVolumeAtATracksBeginIsTheUsersHand)
{
    haveObeyed();
    next("2");
    EXPECT_EQ(answerAfter(10ms, 0.6), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, AThousandthIsAnotherVolume)
{
    levels = {0.5, 0.2};
    haveObeyed();
    next("2");
    EXPECT_EQ(answerAfter(10ms, 0.5011), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, SeenAtHomeItIsFreeAndNotLookedAt)
{
    haveOwed();
    EXPECT_EQ(answerAfter(10ms, 0.8 - 0.0009), nothing);
    EXPECT_TRUE(player.isFree());
    EXPECT_EQ(player.nextLook(), std::nullopt);
}

TEST_F(LoweredPlayerTest, ALowVolumeThatWasJustToldMayComeYet)
{
    haveLow();
    pass(50ms);
    wantHome();
    EXPECT_EQ(answerAfter(49ms, 0.8), nothing);
    EXPECT_FALSE(player.isFree());
    EXPECT_EQ(answerAfter(1ms, 0.8), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, AStreamThatHasOpenedSinceIsToldHomeByADetourAtItsBeginAndForCertain)
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

TEST_F(LoweredPlayerTest, IsNotCertainBeforeItsTrackHasGoneOnForTwoSeconds)
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

TEST_F(LoweredPlayerTest, ADetourIsForgottenWhenItIsToBeLow)
{
    haveOwed();
    play(false);
    play();
    player.see(look(0.8), now);
    player.want(true, now);
    EXPECT_EQ(commands(), Commands{0.3});
}

TEST_F(LoweredPlayerTest, OneThatCutsOffIsToldALittleMoreThreeTimesAndThenBelieved)
{
    haveOwed();
    expectThreeTries(0.8 - 0.001, 0.804);
    EXPECT_EQ(answerAfter(50ms, 0.79), nothing);
    EXPECT_FALSE(player.isFree());
    EXPECT_EQ(answerAfter(50ms, 0.79), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, FullVolumeIsNotExceeded)
{
    levels = {1, 0.35};
    haveOwed();
    expectThreeTries(0.995, 1);
    EXPECT_EQ(answerAfter(100ms, 0.995), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTest, OneThatCutsOffHasItsTriesAgainOnceItIsCertain)
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
