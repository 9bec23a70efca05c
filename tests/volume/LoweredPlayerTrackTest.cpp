// A player that takes its volume back by itself when a track begins.
#include "LoweredPlayerFixture.h"

#include <string>

namespace sonvara::test {
namespace {

using LoweredPlayerTrackTest = LoweredPlayerFixture;

TEST_F(LoweredPlayerTrackTest, OneThatTakesItsVolumeBackWithinTwoSecondsOfATrackIsToldOnceMore)
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

TEST_F(LoweredPlayerTrackTest, OneThatTakesItsVolumeBackTwiceAndThenGoesLowIsBroughtHome)
{
    haveTakenItsVolumeBackTwice();
    EXPECT_FALSE(player.isLowered());
    EXPECT_EQ(answerAfter(50ms, 0.3), Commands{0.8}) << "as of the track before";
    EXPECT_EQ(answerAfter(100ms, 0.8), nothing);
    EXPECT_FALSE(player.isFree());
    EXPECT_EQ(answerAfter(2000ms, 0.8), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTrackTest, OneThatGoesLowByItselfHasItsThreeTriesToo)
{
    haveTakenItsVolumeBackTwice();
    expectThreeTries(0.3, 0.8);
    EXPECT_EQ(answerAfter(100ms, 0.3), nothing);
}

TEST_F(LoweredPlayerTrackTest, OneThatTakesItsVolumeBackWithAStreamIsToldOnceMore)
{
    haveObeyed();
    play(false);
    pass(10s);
    play();
    EXPECT_EQ(answerAfter(500ms, 0.8), Commands{0.3});
}

TEST_F(LoweredPlayerTrackTest, SoIsOneThatTellsNoTitles)
{
    track = "";
    haveObeyed();
    play(false);
    pass(10s);
    play();
    EXPECT_EQ(answerAfter(500ms, 0.8), Commands{0.3});
}

TEST_F(LoweredPlayerTrackTest, AnyOtherVolumeAtATracksBeginIsTheUsersHand)
{
    haveObeyed();
    next("2");
    EXPECT_EQ(answerAfter(10ms, 0.6), nothing);
    EXPECT_TRUE(player.isFree());
}

TEST_F(LoweredPlayerTrackTest, AThousandthIsAnotherVolume)
{
    levels = {0.5, 0.2};
    haveObeyed();
    next("2");
    EXPECT_EQ(answerAfter(10ms, 0.5011), nothing);
    EXPECT_FALSE(player.isLowered()) << "it was not put there by the player";
}

}  // namespace
}  // namespace sonvara::test
