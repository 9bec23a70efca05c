// What a player tells before its stream is open, and when that may be.
#include "LoweredPlayerFixture.h"

namespace sonvara::test {
namespace {

using LoweredPlayerOpeningTest = LoweredPlayerFixture;

TEST_F(LoweredPlayerOpeningTest, SilenceAndFullVolumeAreDoubtedForThreeSeconds)
{
    play();
    pass(2999ms);
    EXPECT_TRUE(player.isSilence(0.01, now));
    EXPECT_FALSE(player.isSilence(0.011, now));
    EXPECT_TRUE(player.isOpening(1, now));
    pass(1ms);
    EXPECT_FALSE(player.isSilence(0, now));
    EXPECT_FALSE(player.isOpening(1, now));
}

// Strawberry on PipeWire: its new stream sounds as it was told, but it says 0 until it is told anew.
TEST_F(LoweredPlayerOpeningTest, OneThatFallsSilentWithATrackIsToldOnceMore)
{
    haveForLong();
    next("2");
    pass(30ms);
    player.lower(levels, now);
    EXPECT_EQ(commands(), Commands{0.3});
    EXPECT_EQ(answerAfter(99ms, 0), nothing) << "it may not have obeyed yet";
    EXPECT_EQ(player.nextLook(), now + 1ms);
    EXPECT_EQ(answerAfter(1ms, 0.01), Commands{0.3});
    EXPECT_EQ(answerAfter(100ms, 0.01), Commands{0.3}) << "230 ms after its begin";
    EXPECT_EQ(answerAfter(10ms, 0.3), nothing);
    EXPECT_TRUE(player.isLowered());
}

TEST_F(LoweredPlayerOpeningTest, SoIsOneThatFallsSilentWithItsFirstTrack)
{
    play();
    player.lower(levels, now);
    EXPECT_EQ(commands(), Commands{0.3});
    EXPECT_EQ(answerAfter(299ms, 0), Commands{0.3});
}

TEST_F(LoweredPlayerOpeningTest, OneThatIsSilencedLaterInATrackIsInItsUsersHand)
{
    haveObeyed();
    next("2");
    EXPECT_EQ(answerAfter(300ms, 0), nothing);
    EXPECT_FALSE(player.isLowered());
}

TEST_F(LoweredPlayerOpeningTest, SoIsOneThatIsOwedItsVolume)
{
    haveOwed();
    next("2");
    EXPECT_EQ(answerAfter(299ms, 0), Commands{0.8});
}

TEST_F(LoweredPlayerOpeningTest, OneThatIsOwedItsVolumeAndSilencedLaterInATrackIsInItsUsersHand)
{
    haveOwed();
    next("2");
    EXPECT_EQ(answerAfter(300ms, 0), nothing);
    EXPECT_EQ(player.nextLook(), now + 1700ms);
    EXPECT_EQ(answerAfter(1700ms, 0), nothing);
    EXPECT_EQ(player.nextLook(), std::nullopt);
}

TEST_F(LoweredPlayerOpeningTest, ANewOneThatIsOwedItsVolumeIsToldNothingWhileItIsSilent)
{
    player.owe(levels);
    play();
    EXPECT_EQ(answerAfter(200ms, 0), nothing);
    EXPECT_EQ(player.nextLook(), now + 2800ms);
}

TEST_F(LoweredPlayerOpeningTest, AFullVolumeMayMisleadForThreeTenthsOfASecond)
{
    EXPECT_TRUE(player.mayMislead(look(1), now)) << "it does not play yet";
    play();
    pass(299ms);
    EXPECT_TRUE(player.mayMislead(look(0.9995), now));
    EXPECT_FALSE(player.mayMislead(look(0.998), now));
    position = 2999ms;
    EXPECT_TRUE(player.mayMislead(look(1), now));
    position = 3000ms;
    EXPECT_FALSE(player.mayMislead(look(1), now));
    position = 0ms;
    pass(1ms);
    EXPECT_FALSE(player.mayMislead(look(1), now));
}

TEST_F(LoweredPlayerOpeningTest, AFullVolumeMisleadsNobodyAfterTheFirstStream)
{
    haveForLong();
    player.hear({}, {}, now);
    play(false);
    play();
    EXPECT_FALSE(player.mayMislead(look(1), now));
}

TEST_F(LoweredPlayerOpeningTest, OneThatIsFarIntoItsTrackWhenItIsFirstSeenHasOpenedItsStream)
{
    isPlaying = true;
    position = 2999ms;
    player.see(look(1), now);
    EXPECT_TRUE(player.isOpening(1, now));
    position = 3000ms;
    player.see(look(1), now);
    EXPECT_FALSE(player.isOpening(1, now));
    pass(3s);
    EXPECT_FALSE(player.isSilence(0, now)) << "it was seen to play for so long";
}

TEST_F(LoweredPlayerOpeningTest, OneThatWasSeenToBeginMayBeFarIntoItsTrackAndNew)
{
    play(false);
    play();
    position = 10s;
    player.see(look(1), now);
    EXPECT_TRUE(player.isOpening(1, now));
}

TEST_F(LoweredPlayerOpeningTest, AFullVolumeFarIntoATrackIsDoubtedUntilTheTrackGoesOn)
{
    player.owe(levels);
    isPlaying = true;
    position = 3000ms;
    EXPECT_EQ(answerTo(1), nothing);
    EXPECT_EQ(player.nextLook(), now + 100ms);
    EXPECT_TRUE(player.mayMislead(look(1), now));
    EXPECT_TRUE(player.isDoubtful(look(0.9995), now));
    EXPECT_FALSE(player.isDoubtful(look(0.998), now));
    position = 2999ms;
    EXPECT_FALSE(player.isDoubtful(look(1), now));
    position = 3000ms;
    EXPECT_EQ(answerAfter(500ms, 1), nothing) << "it stands still";
    EXPECT_FALSE(player.isFree());
    position = 3001ms;
    EXPECT_EQ(answerAfter(100ms, 1), nothing);
    EXPECT_TRUE(player.isFree()) << "it goes on: the user's hand";
}

TEST_F(LoweredPlayerOpeningTest, WhatGoesOnStaysBelieved)
{
    player.owe(levels);
    isPlaying = true;
    position = 5s;
    answerTo(0.3);
    position = 6s;
    answerAfter(1s, 0.3);
    position = 5s;
    EXPECT_FALSE(player.isDoubtful(look(1), now)) << "its user has wound it back";
}

TEST_F(LoweredPlayerOpeningTest, ADoubtEndsAfterThreeSecondsOfPlaying)
{
    player.owe(levels);
    isPlaying = true;
    position = 5s;
    EXPECT_EQ(answerTo(1), nothing);
    pass(2999ms);
    EXPECT_TRUE(player.isDoubtful(look(1), now));
    pass(1ms);
    EXPECT_FALSE(player.isDoubtful(look(1), now));
}

TEST_F(LoweredPlayerOpeningTest, OnlyWhatIsOwedIsDoubted)
{
    isPlaying = true;
    position = 5s;
    EXPECT_FALSE(player.isDoubtful(look(1), now));
    player.lower(levels, now);
    commands();
    EXPECT_FALSE(player.isDoubtful(look(1), now));
    player.owe(levels);
    EXPECT_TRUE(player.isDoubtful(look(1), now));
    isPlaying = false;
    EXPECT_FALSE(player.isDoubtful(look(1), now));
}

TEST_F(LoweredPlayerOpeningTest, AnotherVolumeAfterADoubtIsThatOfAStreamThatHasJustOpened)
{
    player.owe(levels);
    isPlaying = true;
    position = 5s;
    EXPECT_EQ(answerTo(1), nothing);
    EXPECT_EQ(answerAfter(100ms, 0.8), (Commands{0.804, 0.8}));
    EXPECT_TRUE(player.isOpening(1, now)) << "so it may be new";
}

TEST_F(LoweredPlayerOpeningTest, OneThatWasNeverInDoubtIsNotNew)
{
    player.owe(levels);
    isPlaying = true;
    position = 5s;
    EXPECT_EQ(answerTo(0.8), (Commands{0.804, 0.8}));
    position = 6s;
    answerAfter(1s, 0.8);
    EXPECT_FALSE(player.isOpening(1, now));
}

}  // namespace
}  // namespace sonvara::test
